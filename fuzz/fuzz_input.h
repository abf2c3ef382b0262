#ifndef ZEBCOMN_FUZZ_FUZZ_INPUT_H_
#define ZEBCOMN_FUZZ_FUZZ_INPUT_H_

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

/// \file
/// What the fuzz targets share: how an input is taken apart, and how a finding is told.

namespace zebcomn_fuzz {

/// Ends the process, which the fuzzer takes for a finding, unless the condition holds.
inline void Require(bool condition) {
  if (!condition) std::abort();
}

inline std::string TextOf(const uint8_t* data, size_t size) {
  return size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data), size);
}

/// What a C string with this text holds: all of it up to the first NUL.
inline std::string UpToNul(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

/// What stands before the first separator, and what stands after it: nothing without a separator.
inline std::pair<std::string, std::string> CutAt(const std::string& text, char separator) {
  const size_t at = text.find(separator);
  if (at == std::string::npos) return {text, std::string()};
  return {text.substr(0, at), text.substr(at + 1)};
}

/// The lines of a text, without their newlines; a last one without a newline counts if it holds
/// anything.
inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

/// Takes the last byte off a text, so that what stands in front of it can be written by hand; 0 for
/// the empty text.
inline uint8_t TakeLastByte(std::string& text) {
  if (text.empty()) return 0;
  const auto last = static_cast<uint8_t>(text.back());
  text.pop_back();
  return last;
}

}  // namespace zebcomn_fuzz

#endif  // ZEBCOMN_FUZZ_FUZZ_INPUT_H_
