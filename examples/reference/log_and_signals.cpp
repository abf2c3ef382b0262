// A dedicated place takes the signals: SIGHUP has a callback, SIGTERM has none and so stops it.
#include <zebcomn/util/sighandler.h>
#include <zebcomn/util/system_log.h>

#include <unistd.h>

#include <iostream>

using namespace quenty_com::pelu;

namespace {
int reloads = 0;
void Reload() {
  ++reloads;
}
}  // namespace

int main() {
  SignalHandler handler;
  handler.addSignalToBlock(SIGHUP);  // before any other thread is started
  handler.addSignalToBlock(SIGTERM);
  handler.registerOnSignalCallback(SIGHUP, &Reload);

  kill(getpid(), SIGHUP);
  kill(getpid(), SIGTERM);
  handler();  // on a thread of its own, in an agent

  LogInSystemLog(PriorityInfo, "%d reload before the stop", reloads);
  std::cout << reloads << " reload before the stop\n";
  return reloads == 1 ? 0 : 1;
}
