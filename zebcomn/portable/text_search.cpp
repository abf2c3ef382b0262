#include "zebcomn/portable/text_search_internal.h"

#include <cstdlib>

#include "zebcomn/portable/unique_memory_internal.h"

namespace zebcomn {
namespace {

constexpr size_t kNowhere = std::string_view::npos;

size_t FindNthPlaceByPlace(std::string_view text, std::string_view pattern, unsigned int n) {
  size_t place = kNowhere;
  for (unsigned int found = 0; found < n; ++found) {
    place = text.find(pattern, place + 1);
    if (place == kNowhere) break;
  }
  return place;
}

/// The search of Knuth, Morris and Pratt: `borders` tells for each length of a fitting beginning of
/// the pattern how much of it still fits when the text's next character does not.
class Matcher {
 public:
  Matcher(std::string_view pattern, size_t* borders) : pattern_(pattern), borders_(borders) {
    borders_[0] = 0;
    for (size_t i = 1; i < pattern_.size(); ++i) {
      Take(pattern_[i]);
      borders_[i] = fitting_;
    }
    fitting_ = 0;
  }

  /// Takes the next character; whether the pattern ends with it.
  bool Takes(char next) {
    if (fitting_ == pattern_.size()) fitting_ = borders_[fitting_ - 1];
    Take(next);
    return fitting_ == pattern_.size();
  }

 private:
  void Take(char next) {
    while (fitting_ > 0 && pattern_[fitting_] != next) fitting_ = borders_[fitting_ - 1];
    if (pattern_[fitting_] == next) ++fitting_;
  }

  std::string_view pattern_;
  size_t* borders_;
  size_t fitting_ = 0;
};

}  // namespace

size_t FindNthText(std::string_view text, std::string_view pattern, unsigned int n) {
  if (n == 0) return kNowhere;
  if (n == 1) return FindText(text, pattern);
  if (IsQuicklySearched(text, pattern) || pattern.size() > text.size()) {
    return FindNthPlaceByPlace(text, pattern, n);
  }
  const UniqueMemory<size_t> borders(
      static_cast<size_t*>(std::calloc(pattern.size(), sizeof(size_t))));
  if (borders == nullptr) return FindNthPlaceByPlace(text, pattern, n);
  Matcher matcher(pattern, borders.get());
  for (size_t i = 0; i < text.size(); ++i) {
    if (matcher.Takes(text[i]) && --n == 0) return i + 1 - pattern.size();
  }
  return kNowhere;
}

}  // namespace zebcomn
