#ifndef ZEBCOMN_PORTABLE_TEXT_SEARCH_INTERNAL_H_
#define ZEBCOMN_PORTABLE_TEXT_SEARCH_INTERNAL_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zebcomn {

/// Whether comparing place by place is the quicker way.
inline bool IsQuicklySearched(std::string_view text, std::string_view pattern) {
  constexpr uint64_t kFewComparisons = 4096;
  return uint64_t{text.size()} * pattern.size() <= kFewComparisons;
}

/// Where `pattern` first occurs in `text`; npos when it does not. The C library's search takes a
/// time that only grows with the two lengths, however often the beginning of the pattern occurs in
/// the text.
inline size_t FindText(std::string_view text, std::string_view pattern) {
  if (IsQuicklySearched(text, pattern)) return text.find(pattern);
  const void* const place = memmem(text.data(), text.size(), pattern.data(), pattern.size());
  return place == nullptr ? std::string_view::npos
                          : static_cast<size_t>(static_cast<const char*>(place) - text.data());
}

/// Where `pattern` occurs in `text` for the `n`-th time, occurrences that overlap counted; npos
/// when it does not so often, and when `n` is 0. The time grows with the lengths and with `n`
/// alone, unless there is no memory for a table of the pattern.
size_t FindNthText(std::string_view text, std::string_view pattern, unsigned int n);

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_TEXT_SEARCH_INTERNAL_H_
