#include "zebcomn/util/string_helpers.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <cwchar>

char* tivmcomn_chop_semicolon(char* str) {
  if (str == nullptr) return nullptr;
  char* const semicolon = std::strchr(str, ';');
  if (semicolon != nullptr) *semicolon = '\0';
  return semicolon;
}

uint32_t tivmcomn_append_backslash_check(char* path) {
  if (path == nullptr) return 0;
  const std::size_t length = std::strlen(path);
  if (length == 0 || path[length - 1] != '/') {
    path[length + 1] = '\0';
    path[length] = '/';
  }
  // Kept: the length from before the change, so a slash that was added is not counted.
  return static_cast<uint32_t>(length);
}

namespace quenty_com::pelu {
namespace {

constexpr std::size_t kNarrowNumberCapacity = 31;
constexpr std::size_t kWideNumberCapacity = 32;

bool IsSpace(char byte) {
  return std::isspace(static_cast<unsigned char>(byte)) != 0;
}

std::string MapBytes(const std::string& text, int (*map)(int)) {
  std::string mapped;
  mapped.reserve(text.length());
  for (const char byte : text) {
    mapped += static_cast<char>(map(static_cast<unsigned char>(byte)));
  }
  return mapped;
}

}  // namespace

std::string tivmcomn_convert_to_upper(const std::string& text) {
  return MapBytes(text, std::toupper);
}

std::string tivmcomn_convert_to_lower(const std::string& text) {
  return MapBytes(text, std::tolower);
}

std::string tivmcomn_strip_leading_whitespace(const std::string& text) {
  std::size_t begin = 0;
  while (begin < text.length() && IsSpace(text[begin])) ++begin;
  return text.substr(begin);
}

std::string tivmcomn_strip_trailing_whitespace(const std::string& text) {
  std::size_t end = text.length();
  while (end > 0 && IsSpace(text[end - 1])) --end;
  return text.substr(0, end);
}

std::string tivmcomn_long_to_ansi_string(const long& value) {
  char buffer[kNarrowNumberCapacity];
  std::snprintf(buffer, sizeof buffer, "%ld", value);
  return buffer;
}

std::wstring tivmcomn_long_to_wide_string(const long& value) {
  wchar_t buffer[kWideNumberCapacity];
  std::swprintf(buffer, kWideNumberCapacity, L"%ld", value);
  return buffer;
}

}  // namespace quenty_com::pelu
