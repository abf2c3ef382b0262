// The subnet of an address (the input's first line) and a mask (the rest), group by group, and the
// n-th place of a pattern in a text, are what the steps give.
#include <cstdio>
#include <limits>
#include <string>

#include "fuzz/fuzz_input.h"
#include "zebcomn/network/ipv6_text.h"

namespace {

using namespace zebcomn_fuzz;

constexpr uint64_t kMost = std::numeric_limits<uint32_t>::max();

int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// A number in base 16 as `strtoul` reads it where a long has 32 bits.
uint32_t HexNumber(const std::string& group) {
  const char* at = group.c_str();
  while (*at == ' ' || (*at >= '\t' && *at <= '\r')) ++at;
  const bool negative = *at == '-';
  if (*at == '-' || *at == '+') ++at;
  if (at[0] == '0' && (at[1] == 'x' || at[1] == 'X') && DigitOf(at[2]) >= 0) at += 2;
  uint64_t number = 0;
  for (; DigitOf(*at) >= 0; ++at) {
    number = number * 16 + static_cast<uint64_t>(DigitOf(*at));
    if (number > kMost) return static_cast<uint32_t>(kMost);
  }
  return static_cast<uint32_t>(negative ? 0 - number : number);
}

std::string SubnetStepByStep(const std::string& address, const std::string& mask) {
  if (address.empty() || mask.empty()) return "";
  std::string a = address + ":";
  std::string m = mask + ":";
  std::string result;
  while (a.find(':') != std::string::npos && m.find(':') != std::string::npos) {
    const auto [group, rest_of_a] = CutAt(a, ':');
    const auto [bits, rest_of_m] = CutAt(m, ':');
    char digits[16];
    std::snprintf(digits, sizeof digits, "%x", HexNumber(group) & HexNumber(bits));
    result = result + digits + ":";
    a = std::string(rest_of_a);
    m = std::string(rest_of_m);
  }
  return result.substr(0, result.rfind(':'));
}

/// Looks at every place of the text for one where the pattern stands.
size_t NthPlace(const std::string& text, const std::string& pattern, unsigned int nth) {
  for (size_t at = 0; nth > 0 && at + pattern.size() <= text.size(); ++at) {
    if (text.compare(at, pattern.size(), pattern) == 0 && --nth == 0) return at;
  }
  return std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto [text, other] = CutAt(TextOf(data, size), '\n');
  Require(calculateSubNetAddrForV6(text, other) == SubnetStepByStep(text, other));
  for (unsigned int nth = 0; nth < 4; ++nth) {
    Require(findNthOccuranceOf(text, other, nth) == NthPlace(text, other, nth));
    Require(findNthOccuranceOf(text, ":", nth) == NthPlace(text, ":", nth));
  }
  return 0;
}
