#ifndef ZEBCOMN_EXAMPLES_AGENT_SIGNAL_THREAD_H_
#define ZEBCOMN_EXAMPLES_AGENT_SIGNAL_THREAD_H_

#include "examples/agent/unique_handle.h"
#include "zebcomn/util/sighandler.h"

namespace example {

/// Takes the agent's signals: SIGHUP asks for a reload; SIGTERM and SIGINT, which have no callback,
/// end the thread. There is one such object in a process.
class SignalThread {
 public:
  /// Blocks the signals in the calling thread, and so in every thread that it starts afterwards.
  SignalThread();

  /// Stops the thread if it is still running, by the signal that ends it.
  ~SignalThread();
  SignalThread(const SignalThread&) = delete;
  SignalThread& operator=(const SignalThread&) = delete;

  bool Start();

  /// An event that SIGHUP sets; the agent resets it.
  HANDLE reload_asked() const { return reload_asked_.get(); }
  /// The thread, which is signalled when the agent is to stop.
  HANDLE thread() const { return thread_.get(); }

 private:
  quenty_com::pelu::SignalHandler handler_;
  UniqueHandle reload_asked_;
  UniqueHandle thread_;
};

}  // namespace example

#endif  // ZEBCOMN_EXAMPLES_AGENT_SIGNAL_THREAD_H_
