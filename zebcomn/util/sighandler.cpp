#include "zebcomn/util/sighandler.h"

#include <cstddef>
#include <new>

#include "zebcomn/util/system_log.h"

int bSigTermReceived = 0;

void CatchSIGTERM(int) {
  __atomic_store_n(&bSigTermReceived, 1, __ATOMIC_RELEASE);
}

namespace quenty_com::pelu {

// A map is no standard-layout type, but both compilers give the offsets.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
/// Callers' object files hold the order of the members.
struct SignalHandlerLayout {
  static_assert(offsetof(SignalHandler, signalSet) == 0);
  static_assert(offsetof(SignalHandler, callbacks) == sizeof(sigset_t));
  static_assert(sizeof(void*) != 4 || (sizeof(sigset_t) == 128 && sizeof(SignalHandler) == 152));
};
#pragma GCC diagnostic pop

SignalHandler::SignalHandler() {
  sigemptyset(&signalSet);
}

SignalHandler::~SignalHandler() = default;

int SignalHandler::addSignalToBlock(int signo) {
  sigaddset(&signalSet, signo);
  // Kept: the mask is replaced, so that a handler's thread blocks what it waits for and no more.
  pthread_sigmask(SIG_SETMASK, &signalSet, nullptr);
  return 0;
}

int SignalHandler::unblockSignal(int signo) {
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signo);
  pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
  return 0;
}

int SignalHandler::registerOnSignalCallback(int signo, void (*callback)()) {
  if (callback == nullptr) return 0;
  try {
    // Kept: the first registration wins, so that a component cannot take another's signal over.
    callbacks.emplace(signo, callback);
  } catch (const std::bad_alloc&) {
    // Nothing is reported: the signal stays without a callback, as after any refused registration.
  }
  return 0;
}

void SignalHandler::operator()() {
  for (;;) {
    int signo = 0;
    sigwait(&signalSet, &signo);
    if (sigismember(&signalSet, signo) != 1) {
      LogInSystemLog(PriorityInfo, "PELU received unknown signal, ignoring signal...");
      continue;
    }
    const auto registered = callbacks.find(signo);
    if (registered == callbacks.end()) break;
    registered->second();
  }
  LogInSystemLog(PriorityInfo, "Received signal to stop PELU");
}

}  // namespace quenty_com::pelu
