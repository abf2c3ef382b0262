// Any path against any base flattens as it does step by step.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/util/flatten_step_by_step.h"
#include "zebcomn/util/filenameflattener.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string path(reinterpret_cast<const char*>(data), size);
  for (const std::string base : {"/base/dir", "/."}) {
    const std::string expected =
        zebcomn_test::FlattenStepByStep(path, base == "/." ? std::string() : base);
    std::string flat = zebcomn_test::kFails;
    FileNameFlattener(path, base).GetFlatPath(flat);
    if (flat != expected) std::abort();
  }
  return 0;
}
