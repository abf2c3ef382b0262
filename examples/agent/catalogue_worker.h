#ifndef ZEBCOMN_EXAMPLES_AGENT_CATALOGUE_WORKER_H_
#define ZEBCOMN_EXAMPLES_AGENT_CATALOGUE_WORKER_H_

#include "examples/agent/unique_handle.h"
#include "zebcomn/sysprops/sysprops.h"

namespace example {

/// Collects the catalogue of system properties on a thread of its own, so that a name server that
/// does not answer holds nobody up.
class CatalogueWorker {
 public:
  CatalogueWorker() = default;
  /// Waits for a collection that is under way.
  ~CatalogueWorker();
  CatalogueWorker(const CatalogueWorker&) = delete;
  CatalogueWorker& operator=(const CatalogueWorker&) = delete;

  /// Starts a collection, after the one that is under way.
  bool Start();
  bool is_running() const { return thread_ != nullptr; }
  /// The thread of the collection that is under way: signalled when the catalogue is complete.
  HANDLE thread() const { return thread_.get(); }
  /// Waits for the end of the collection that is under way, if any, and gives the catalogue; it is
  /// empty when memory was short.
  const quenty_com::pelu::sysprops::PropertyMap& Finish();

 private:
  static DWORD Collect(void* worker);

  UniqueHandle thread_;
  quenty_com::pelu::sysprops::PropertyMap catalogue_;
};

}  // namespace example

#endif  // ZEBCOMN_EXAMPLES_AGENT_CATALOGUE_WORKER_H_
