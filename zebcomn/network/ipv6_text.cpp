#include "zebcomn/network/ipv6_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include "zebcomn/network/ipv6_text_internal.h"
#include "zebcomn/portable/text_search_internal.h"

namespace zebcomn {

bool TakeBracketsOff(std::string& text) {
  const size_t open = text.find('[');
  if (open == std::string::npos) return false;
  const size_t close = text.find(']', open);
  if (close == std::string::npos) return false;
  text.erase(close);
  text.erase(0, open + 1);
  return true;
}

void RemoveScope(std::string& text) {
  const size_t percent = text.find('%');
  if (percent != std::string::npos) text.erase(percent);
}

}  // namespace zebcomn

namespace {

constexpr unsigned int kColonsOfFullAddress = 7;
constexpr std::string_view kLiteralSuffix = ".ipv6-literal.net";

/// What a 32-bit strtoul gives in base 16 for the group at the front of `text`, which its colon
/// ends: numbers that do not fit are all ones, a minus sign negates.
uint32_t ParseGroup(std::string_view text) {
  // The usual group, digits that fit and nothing else, needs no copy.
  uint32_t plain = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, plain, 16);
  if (failure == std::errc() && stop == end) return plain;
  constexpr uint64_t kAllOnes = std::numeric_limits<uint32_t>::max();
  const std::string group(text);
  const char* digits = group.c_str() + std::strspn(group.c_str(), " \t\n\v\f\r");
  const bool negative = *digits == '-';
  // The sign is taken off here, because a wider number with one wraps into the 32 bits again.
  if (negative || *digits == '+') ++digits;
  if (std::isxdigit(static_cast<unsigned char>(*digits)) == 0) return 0;
  const uint64_t magnitude = std::strtoull(digits, nullptr, 16);
  if (magnitude > kAllOnes) return static_cast<uint32_t>(kAllOnes);
  return static_cast<uint32_t>(negative ? 0 - magnitude : magnitude);
}

/// Cuts the group before the next colon, or before the end, off the front of `rest`.
std::string_view TakeGroup(std::string_view& rest, bool& more) {
  const size_t colon = rest.find(':');
  const std::string_view group = rest.substr(0, colon);
  more = colon != std::string_view::npos;
  rest.remove_prefix(more ? colon + 1 : rest.size());
  return group;
}

void AppendHexGroup(std::string& text, uint32_t value) {
  std::array<char, 8> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
  text.append(digits.data(), end);
}

}  // namespace

uint16_t noOfOccurences(const std::string& text, char c, int cap) {
  constexpr uint16_t kFirstCapped = 8;
  // Kept: the counter has 16 bits, so 65536 occurrences count as none.
  const auto count = static_cast<uint16_t>(std::count(text.begin(), text.end(), c));
  return count < kFirstCapped ? count : static_cast<uint16_t>(cap);
}

namespace zebcomn {

std::string ExpandAddress(std::string address) {
  RemoveScope(address);
  const size_t gap = address.find("::");
  if (gap == std::string::npos) return address;
  const std::string left = address.substr(0, gap);
  const std::string right = address.substr(gap + 1);
  const unsigned int colons = noOfOccurences(left, ':', kColonsOfFullAddress) + 0U +
                              noOfOccurences(right, ':', kColonsOfFullAddress);
  std::string expanded = gap == 0 ? "0" : left;
  for (unsigned int have = colons; have < kColonsOfFullAddress; ++have) expanded += ":0";
  expanded += right;
  if (expanded.back() == ':') expanded += '0';
  return expanded;
}

std::string SubnetAddress(const std::string& address, const std::string& mask) {
  std::string_view address_rest = address;
  std::string_view mask_rest = mask;
  if (address_rest.empty() || mask_rest.empty()) return {};
  std::string subnet;
  for (bool more_address = true, more_mask = true; more_address && more_mask;) {
    const uint32_t group = ParseGroup(TakeGroup(address_rest, more_address));
    const uint32_t bits = ParseGroup(TakeGroup(mask_rest, more_mask));
    AppendHexGroup(subnet, group & bits);
    subnet += ':';
  }
  subnet.pop_back();
  return subnet;
}

}  // namespace zebcomn

std::string expandIPV6Address(std::string address) try {
  return zebcomn::ExpandAddress(std::move(address));
} catch (const std::bad_alloc&) {
  return {};
}

std::string calculateSubNetAddrForV6(const std::string& address, const std::string& mask) try {
  return zebcomn::SubnetAddress(address, mask);
} catch (const std::bad_alloc&) {
  return {};
}

std::string convertV6AddrToLiteralFormat(std::string address) try {
  if (address.find(kLiteralSuffix) != std::string::npos) return address;
  if (address.find(':') == std::string::npos) return address;
  zebcomn::TakeBracketsOff(address);
  std::replace(address.begin(), address.end(), ':', '-');
  // Kept: the scope is dropped, not written as the "s" part that the way back takes off.
  zebcomn::RemoveScope(address);
  address += kLiteralSuffix;
  return address;
} catch (const std::bad_alloc&) {
  return {};
}

std::string convertLiteralFormatToV6Addr(std::string literal) {
  zebcomn::TakeBracketsOff(literal);
  const size_t suffix = literal.find(kLiteralSuffix);
  if (suffix == std::string::npos) return literal;
  literal.erase(suffix);
  std::replace(literal.begin(), literal.end(), '-', ':');
  const size_t scope = literal.find('s');
  if (scope != std::string::npos) literal.erase(scope);
  return literal;
}

std::string::size_type findNthOccuranceOf(const std::string& text, const std::string& pattern,
                                          const unsigned int& n) {
  return zebcomn::FindNthText(text, pattern, n);
}
