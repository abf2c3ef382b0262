#include "examples/agent/signal_thread.h"

#include <signal.h>
#include <unistd.h>

#include "zebcomn/portable/event.h"
#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/wait.h"

namespace example {
namespace {

/// The event for the callback, which is given no argument.
HANDLE event_of_callback = nullptr;

void AskForReload() {
  tivSetEvent(event_of_callback);
}

DWORD WaitForSignals(void* handler) {
  (*static_cast<quenty_com::pelu::SignalHandler*>(handler))();
  return 0;
}

}  // namespace

SignalThread::SignalThread() : reload_asked_(tivCreateEvent(nullptr, TRUE, FALSE, nullptr)) {
  event_of_callback = reload_asked_.get();
  for (const int signo : {SIGHUP, SIGTERM, SIGINT}) handler_.addSignalToBlock(signo);
  handler_.registerOnSignalCallback(SIGHUP, AskForReload);
}

SignalThread::~SignalThread() {
  if (thread_ == nullptr) return;
  if (tivWaitForSingleObject(thread_.get(), 0) == TIV_WAIT_TIMEOUT) kill(getpid(), SIGTERM);
  tivWaitForSingleObject(thread_.get(), TIV_WAIT_INFINITE);
}

bool SignalThread::Start() {
  if (reload_asked_ == nullptr) return false;
  thread_.reset(tivCreateThread(nullptr, 0, WaitForSignals, &handler_, 0, nullptr));
  return thread_ != nullptr;
}

}  // namespace example
