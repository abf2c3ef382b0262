// The IPv6 text functions never fail, whatever they are given, and never grow a text beyond what an
// address may need. The input's first line is one text, the rest another.
#include <arpa/inet.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "zebcomn/network/ipv6_text.h"
#include "zebcomn/network/network_util.h"

namespace {

constexpr size_t kAddedAtMost = 32;

void Require(bool condition) {
  if (!condition) std::abort();
}

/// An address that the C library accepts means the same after it was expanded.
void CheckExpansion(const std::string& text) {
  const std::string expanded = expandIPV6Address(text);
  Require(expanded.size() <= text.size() + kAddedAtMost);
  in6_addr before{};
  in6_addr after{};
  const bool plain = text.find_first_of(std::string(".\0", 2)) == std::string::npos;
  if (!plain || inet_pton(AF_INET6, text.c_str(), &before) != 1) return;
  Require(inet_pton(AF_INET6, expanded.c_str(), &after) == 1);
  Require(std::memcmp(&before, &after, sizeof before) == 0);
  Require(std::count(expanded.begin(), expanded.end(), ':') == 7);
  Require(expandIPV6Address(expanded) == expanded);
}

void CheckLiteralForms(const std::string& text) {
  const std::string literal = convertV6AddrToLiteralFormat(text);
  Require(literal.size() <= text.size() + kAddedAtMost);
  Require(convertV6AddrToLiteralFormat(literal) == literal);
  Require(convertLiteralFormatToV6Addr(text).size() <= text.size());
}

void CheckBrackets(const std::string& text) {
  ANetworkUtil util;
  const std::string bare = util.formatV6addr(text, false);
  Require(bare.size() <= text.size());
  Require(bare.find('%') == std::string::npos);
  const std::string kept = util.formatV6addr(text, true);
  Require(kept == bare || kept == "[" + bare + "]");
}

void CheckPairs(const std::string& text, const std::string& other) {
  const std::string subnet = calculateSubNetAddrForV6(text, other);
  const auto groups = [](const std::string& each) {
    return std::count(each.begin(), each.end(), ':');
  };
  Require(subnet.empty() == (text.empty() || other.empty()));
  if (!subnet.empty()) Require(groups(subnet) == std::min(groups(text), groups(other)));
  for (unsigned int nth = 0; nth < 4; ++nth) {
    const size_t at = findNthOccuranceOf(text, other, nth);
    Require(at == std::string::npos || text.compare(at, other.size(), other) == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(data, data + size);
  const size_t line = std::min(input.find('\n'), size);
  const std::string text = input.substr(0, line);
  const std::string other = line < size ? input.substr(line + 1) : std::string();
  CheckExpansion(text);
  CheckLiteralForms(text);
  CheckBrackets(text);
  CheckPairs(text, other);
  Require(noOfOccurences(text, ':', 7) <= 7);
  return 0;
}
