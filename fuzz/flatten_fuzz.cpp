// Any path against any base flattens as it does step by step. The input's first line is the base,
// the rest the path; an input of one line is a path against a fixed base.
#include <string>

#include "fuzz/fuzz_input.h"
#include "tests/util/flatten_step_by_step.h"
#include "zebcomn/util/filenameflattener.h"

namespace {

using zebcomn_fuzz::Require;
using zebcomn_test::FlattenStepByStep;
using zebcomn_test::kFails;

void CheckAgainst(const std::string& path, const std::string& base, const std::string& flat_base) {
  const std::string expected = flat_base == kFails ? kFails : FlattenStepByStep(path, flat_base);
  std::string flat = kFails;
  Require(FileNameFlattener(path, base).GetFlatPath(flat) == (flat != kFails));
  Require(flat == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input = zebcomn_fuzz::TextOf(data, size);
  CheckAgainst(input, "/base/dir", "/base/dir");
  CheckAgainst(input, "/.", "");
  if (input.find('\n') == std::string::npos) return 0;
  const auto [line, path] = zebcomn_fuzz::CutAt(input, '\n');
  // A relative base would bring the working directory in.
  const std::string base = "/" + line;
  if (base != "/") CheckAgainst(path, base, FlattenStepByStep(base, ""));
  return 0;
}
