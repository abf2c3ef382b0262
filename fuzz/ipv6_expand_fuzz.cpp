// Expanding an address, and taking its scope and brackets off, give what the steps give; an address
// that the C library accepts keeps its meaning.
#include <arpa/inet.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "fuzz/fuzz_input.h"
#include "zebcomn/network/ipv6_text.h"
#include "zebcomn/network/network_util.h"

namespace {

using namespace zebcomn_fuzz;

constexpr size_t kColons = 7;

size_t Colons(const std::string& text) {
  return static_cast<size_t>(std::count(text.begin(), text.end(), ':'));
}

std::string WithoutScope(const std::string& text) {
  return CutAt(text, '%').first;
}

/// Writes the first gap out, group by group; an address with too many colons gets no group.
std::string ExpandStepByStep(const std::string& address) {
  const std::string bare = WithoutScope(address);
  const size_t gap = bare.find("::");
  if (gap == std::string::npos) return bare;
  const std::string left = bare.substr(0, gap);
  const std::string right = bare.substr(gap + 1);
  std::string result = left;
  const size_t have = std::min(Colons(left), kColons) + std::min(Colons(right), kColons);
  for (size_t n = have; n < kColons; ++n) result += ":0";
  result += right;
  if (gap == 0) result = "0" + result;
  if (!result.empty() && result.back() == ':') result += "0";
  return result;
}

void CheckMeaning(const std::string& text, const std::string& expanded) {
  in6_addr before{};
  in6_addr after{};
  const bool plain = text.find_first_of(std::string(".\0", 2)) == std::string::npos;
  if (!plain || inet_pton(AF_INET6, text.c_str(), &before) != 1) return;
  Require(inet_pton(AF_INET6, expanded.c_str(), &after) == 1);
  Require(std::memcmp(&before, &after, sizeof before) == 0);
  Require(Colons(expanded) == kColons);
}

void CheckBrackets(const std::string& text) {
  std::string inside = text;
  bool bracketed = false;
  const size_t open = text.find('[');
  if (open != std::string::npos) {
    const size_t close = text.find(']', open);
    bracketed = close != std::string::npos;
    if (bracketed) inside = text.substr(open + 1, close - open - 1);
  }
  const std::string bare = WithoutScope(inside);
  ANetworkUtil util;
  Require(util.formatV6addr(text, false) == bare);
  Require(util.formatV6addr(text, true) == (bracketed ? "[" + bare + "]" : bare));
}

void CheckCount(const std::string& text) {
  const size_t count = Colons(text) % 0x10000;
  Require(noOfOccurences(text, ':', 7) == (count < 8 ? count : 7));
  Require(noOfOccurences(text, ':', 99) == (count < 8 ? count : 99));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = TextOf(data, size);
  const std::string expanded = expandIPV6Address(text);
  Require(expanded == ExpandStepByStep(text));
  Require(text.find("::", text.find("::") + 1) != std::string::npos ||
          expandIPV6Address(expanded) == expanded);
  CheckMeaning(text, expanded);
  CheckBrackets(text);
  CheckCount(text);
  return 0;
}
