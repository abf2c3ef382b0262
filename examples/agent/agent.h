#ifndef ZEBCOMN_EXAMPLES_AGENT_AGENT_H_
#define ZEBCOMN_EXAMPLES_AGENT_AGENT_H_

#include <memory>
#include <string>

#include "examples/agent/catalogue_worker.h"
#include "examples/agent/plug_in.h"
#include "examples/agent/signal_thread.h"

namespace example {

/// A small service: it holds a plug-in and the catalogue of this host's properties, renews both
/// when it is told to, and writes what it does to the system log.
class Agent {
 public:
  explicit Agent(std::string plug_in_path);

  /// Runs until a signal stops it. Returns the exit status of the process; throws what keeps the
  /// agent from starting.
  int Run();

 private:
  enum class Happening { kReloadAsked, kStopAsked, kCatalogueComplete };

  Happening Await();
  /// Loads the plug-in; why it cannot be used, or the empty text.
  std::string LoadPlugIn();
  void Reload();
  void LogCatalogue();

  SignalThread signals_;
  std::string plug_in_path_;
  std::unique_ptr<PlugIn> plug_in_;
  CatalogueWorker worker_;
};

}  // namespace example

#endif  // ZEBCOMN_EXAMPLES_AGENT_AGENT_H_
