// Any platform text against any list, cut from the input at its first line feed: the verdict is the
// one found step by step, wherever the C library's scanner has a defined answer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/util/platform_match_step_by_step.h"
#include "zebcomn/util/platform_match.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const size_t cut = input.find('\n');
  const std::string platform = input.substr(0, cut);
  const std::string list = cut == std::string::npos ? "" : input.substr(cut + 1);
  const uint32_t verdict = tivmcomn_IsPlatformMatch(platform.c_str(), list.c_str());
  if (zebcomn_test::HoldsALongNumber(platform) || zebcomn_test::HoldsALongNumber(list)) return 0;
  if (verdict != zebcomn_test::MatchStepByStep(platform.c_str(), list.c_str())) std::abort();
  return 0;
}
