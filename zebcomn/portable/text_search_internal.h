#ifndef ZEBCOMN_PORTABLE_TEXT_SEARCH_INTERNAL_H_
#define ZEBCOMN_PORTABLE_TEXT_SEARCH_INTERNAL_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zebcomn {

/// Where `pattern` first occurs in `text`; npos when it does not. Comparing place by place is the
/// quicker way for short texts; the C library's search takes a time that only grows with the two
/// lengths, however often the beginning of the pattern occurs in the text.
inline size_t FindText(std::string_view text, std::string_view pattern) {
  constexpr uint64_t kFewComparisons = 4096;
  if (uint64_t{text.size()} * pattern.size() <= kFewComparisons) return text.find(pattern);
  const void* const place = memmem(text.data(), text.size(), pattern.data(), pattern.size());
  return place == nullptr ? std::string_view::npos
                          : static_cast<size_t>(static_cast<const char*>(place) - text.data());
}

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_TEXT_SEARCH_INTERNAL_H_
