#include "examples/agent/catalogue_worker.h"

#include <new>

#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/wait.h"

namespace example {

CatalogueWorker::~CatalogueWorker() {
  Finish();
}

bool CatalogueWorker::Start() {
  Finish();
  thread_.reset(tivCreateThread(nullptr, 0, Collect, this, 0, nullptr));
  return thread_ != nullptr;
}

const quenty_com::pelu::sysprops::PropertyMap& CatalogueWorker::Finish() {
  if (thread_ != nullptr) tivWaitForSingleObject(thread_.get(), TIV_WAIT_INFINITE);
  thread_.reset();
  return catalogue_;
}

DWORD CatalogueWorker::Collect(void* worker) {
  auto& catalogue = static_cast<CatalogueWorker*>(worker)->catalogue_;
  try {
    quenty_com::pelu::sysprops::ISysProps properties;
    properties.GetAllSystemProperties(catalogue);
  } catch (const std::bad_alloc&) {
    catalogue.clear();
  }
  return 0;
}

}  // namespace example
