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

// How many bytes from here on are a control character, of one byte or, in UTF-8, of two, or look
// like one that was escaped.
std::size_t BytesToEscape(const std::string& text, std::size_t at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  const auto next = static_cast<unsigned char>(at + 1 < text.size() ? text[at + 1] : '\0');
  if (byte < 0x20 || byte == 0x7F) return 1;
  if (byte == '\\' && next == 'x') return 1;
  return byte == 0xC2 && next >= 0x80 && next <= 0x9F ? 2 : 0;
}

std::string Escaped(char byte) {
  char escaped[5];
  std::snprintf(escaped, sizeof escaped, "\\x%02x",
                static_cast<unsigned>(static_cast<unsigned char>(byte)));
  return escaped;
}

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

std::string ToUtf8(const std::wstring& text) {
  // Nearly every text is plain ASCII and needs no converter, which costs much to open.
  const auto is_ascii = [](wchar_t c) { return static_cast<unsigned long>(c) < 0x80; };
  if (std::all_of(text.begin(), text.end(), is_ascii)) return {text.begin(), text.end()};
  std::wstring valid = text;
  std::replace_if(
      valid.begin(), valid.end(), [](wchar_t c) { return !IsCharacter(c); }, kReplacement);
  return quenty_com::pelu::tivmcomn_wide_to_ansi(valid);
}

std::string Printable(const std::string& text) {
  std::string printable;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t to_escape = BytesToEscape(text, i);
    if (to_escape == 0) printable += text[i++];
    for (const std::size_t end = i + to_escape; i < end; ++i) printable += Escaped(text[i]);
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
