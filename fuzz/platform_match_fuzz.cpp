// Any platform text (the input's first line) against any list (the rest): the verdict is the one
// found step by step, wherever the C library's scanner has a defined answer.
#include "zebcomn/util/platform_match.h"

#include <string>

#include "fuzz/fuzz_input.h"
#include "tests/util/platform_match_step_by_step.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto [platform, list] = zebcomn_fuzz::CutAt(zebcomn_fuzz::TextOf(data, size), '\n');
  const uint32_t verdict = tivmcomn_IsPlatformMatch(platform.c_str(), list.c_str());
  if (zebcomn_test::HoldsALongNumber(platform) || zebcomn_test::HoldsALongNumber(list)) return 0;
  zebcomn_fuzz::Require(verdict == zebcomn_test::MatchStepByStep(platform.c_str(), list.c_str()));
  return 0;
}
