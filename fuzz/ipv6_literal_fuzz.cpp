// The literal host-name form of an address, there and back, is what the steps give.
#include <string>

#include "fuzz/fuzz_input.h"
#include "zebcomn/network/ipv6_text.h"

namespace {

using namespace zebcomn_fuzz;

constexpr const char* kSuffix = ".ipv6-literal.net";

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string Replaced(std::string text, char from, char to) {
  for (char& c : text) {
    if (c == from) c = to;
  }
  return text;
}

/// What stands between the first "[" and the next "]"; the whole text without such a pair.
std::string BetweenBrackets(const std::string& text) {
  const std::string behind = Holds(text, "[") ? CutAt(text, '[').second : "";
  return Holds(behind, "]") ? CutAt(behind, ']').first : text;
}

std::string ToLiteralStepByStep(const std::string& address) {
  if (Holds(address, kSuffix) || !Holds(address, ":")) return address;
  return CutAt(Replaced(BetweenBrackets(address), ':', '-'), '%').first + kSuffix;
}

std::string FromLiteralStepByStep(const std::string& literal) {
  const std::string inside = BetweenBrackets(literal);
  if (!Holds(inside, kSuffix)) return inside;
  const std::string address = Replaced(inside.substr(0, inside.find(kSuffix)), '-', ':');
  return CutAt(address, 's').first;
}

/// Whether a text has nothing in it that one of the two ways drops or changes.
bool IsPlainAddress(const std::string& text) {
  return Holds(text, ":") &&
         text.find_first_not_of("0123456789abcdefABCDEF:.") == std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = TextOf(data, size);
  const std::string literal = convertV6AddrToLiteralFormat(text);
  Require(literal == ToLiteralStepByStep(text));
  Require(convertV6AddrToLiteralFormat(literal) == literal);
  Require(convertLiteralFormatToV6Addr(text) == FromLiteralStepByStep(text));
  Require(!IsPlainAddress(text) || convertLiteralFormatToV6Addr(literal) == text);
  return 0;
}
