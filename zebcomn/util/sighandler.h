#ifndef ZEBCOMN_UTIL_SIGHANDLER_H_
#define ZEBCOMN_UTIL_SIGHANDLER_H_

/// \file
/// Signals without asynchronous handlers: a dedicated thread waits for them and runs a callback for
/// each. Beside it, one classic handler that only raises a flag.
///
/// The order of calls:
///   1. construct the `SignalHandler`;
///   2. call `addSignalToBlock` for every signal to be handled, on the thread that will later start
///      the others, so that they inherit the mask;
///   3. register the callbacks;
///   4. start a thread that runs `operator()`.
///
/// The callbacks are not locked: every registration is complete before its signal can arrive, or is
/// made from a callback. No operation reports a failure, and none touches `nErrno`.
///
/// \par Example
/// \include log_and_signals.cpp

#include <signal.h>

#include <map>

#include "zebcomn/export.h"

namespace quenty_com::pelu {

/// The signals that are waited for, and what to run for each.
class SignalHandler {
 public:
  /// No signal and no callback.
  ZEBCOMN_EXPORT SignalHandler();
  /// Leaves every signal mask as it is: the signals stay blocked where they were blocked.
  ZEBCOMN_EXPORT ~SignalHandler();
  /// Copies the signals and the callbacks.
  /// \param other what to copy.
  SignalHandler(const SignalHandler& other) = default;
  /// Copies the signals and the callbacks.
  /// \param other what to copy.
  /// \return this object.
  SignalHandler& operator=(const SignalHandler& other) = default;

  /// Adds `signo` to the signals that are waited for, and makes exactly these the calling thread's
  /// signal mask. The mask is replaced, not extended: whatever else the thread had blocked is
  /// unblocked.
  /// \param signo the signal's number.
  /// \return 0, also for a number that is no signal.
  ZEBCOMN_EXPORT int addSignalToBlock(int signo);

  /// Unblocks `signo` for the calling thread. It is still waited for by `operator()`.
  /// \param signo the signal's number.
  /// \return 0.
  ZEBCOMN_EXPORT int unblockSignal(int signo);

  /// Lets `callback` run whenever `signo` arrives. The first registration for a signal wins; later
  /// ones are ignored, as is a null `callback`.
  /// \param signo the signal's number.
  /// \param callback what to run.
  /// \return 0 in every case.
  ZEBCOMN_EXPORT int registerOnSignalCallback(int signo, void (*callback)());

  /// Waits for the added signals and runs their callbacks on the calling thread, one at a time.
  /// Returns when a signal without a callback arrives: the stop signal, which is logged as
  /// "Received signal to stop PELU". With no signal added it waits for ever.
  ZEBCOMN_EXPORT void operator()();

 private:
  friend struct SignalHandlerLayout;

  sigset_t signalSet;
  std::map<int, void (*)()> callbacks;
};

}  // namespace quenty_com::pelu

ZEBCOMN_BEGIN_C

/// 0 until `CatchSIGTERM` has run once, then 1. The handler stores with an atomic operation; a
/// thread that polls it reads with one: `__atomic_load_n(&bSigTermReceived, __ATOMIC_ACQUIRE)`.
ZEBCOMN_EXPORT extern int bSigTermReceived;

/// A signal handler for `sigaction` or `signal`: stores 1 in `bSigTermReceived`. The argument is
/// ignored. Safe at any moment, `errno` included.
/// \param signo ignored.
ZEBCOMN_EXPORT void CatchSIGTERM(int signo);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_SIGHANDLER_H_
