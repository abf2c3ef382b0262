// Any pattern (the input's first line) against any name (the rest) gives what the plain recursion
// gives, wherever that comes to an end in a reasonable time.
#include "zebcomn/portable/wildcard.h"

#include <string>

#include "fuzz/fuzz_input.h"
#include "tests/portable/wildcard_recursion.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kReasonableSteps = 2000;
  const auto [pattern, name] = zebcomn_fuzz::CutAt(zebcomn_fuzz::TextOf(data, size), '\n');
  const int32_t result = tivWildCardMatch(pattern.c_str(), name.c_str());
  size_t steps = kReasonableSteps;
  const int32_t expected = zebcomn_test::RecursiveMatch(pattern.c_str(), name.c_str(), steps);
  zebcomn_fuzz::Require(result == 0 || result == 1);
  zebcomn_fuzz::Require(steps == 0 || result == expected);
  return 0;
}
