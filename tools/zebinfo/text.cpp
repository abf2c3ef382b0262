#include "tools/zebinfo/text.h"

#include <algorithm>
#include <cstdio>

#include "zebcomn/util/text_conversion.h"

namespace zebinfo {
namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool IsCharacter(wchar_t code_point) {
  const auto value = std::char_traits<wchar_t>::to_int_type(code_point);
  return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

bool IsControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7F;
}

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

std::string ToUtf8(const std::wstring& text) {
  std::wstring valid = text;
  std::replace_if(
      valid.begin(), valid.end(), [](wchar_t c) { return !IsCharacter(c); }, kReplacement);
  return quenty_com::pelu::tivmcomn_wide_to_ansi(valid);
}

std::string Printable(const std::string& text) {
  std::string printable;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool looks_escaped = byte == '\\' && i + 1 < text.size() && text[i + 1] == 'x';
    if (!IsControl(byte) && !looks_escaped) {
      printable += text[i];
      continue;
    }
    char escaped[5];
    std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned>(byte));
    printable += escaped;
  }
  return printable;
}

std::size_t DisplayWidth(const std::string& text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsContinuation));
}

std::string Quoted(const std::string& text) {
  return '"' + Printable(text) + '"';
}

}  // namespace zebinfo
