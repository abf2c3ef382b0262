#include "zebcomn/portable/wildcard.h"

#include <string_view>

#include "zebcomn/portable/text_search_internal.h"

namespace {

constexpr int32_t kMatch = 0;
constexpr int32_t kNoMatch = 1;

/// The part of a pattern up to its next "*" or its end.
std::string_view LeadingSegment(std::string_view pattern) {
  return pattern.substr(0, pattern.find('*'));
}

bool StartsWith(std::string_view name, std::string_view segment) {
  if (name.size() < segment.size()) return false;
  for (size_t i = 0; i < segment.size(); ++i) {
    if (segment[i] != '?' && segment[i] != name[i]) return false;
  }
  return true;
}

bool EndsWith(std::string_view name, std::string_view segment) {
  return name.size() >= segment.size() &&
         StartsWith(name.substr(name.size() - segment.size()), segment);
}

/// Takes off the name everything up to and including the first place where the segment fits; false
/// when it fits nowhere.
bool SkipPast(std::string_view& name, std::string_view segment) {
  if (segment.find('?') == std::string_view::npos) {
    const size_t place = zebcomn::FindText(name, segment);
    if (place == std::string_view::npos) return false;
    name.remove_prefix(place + segment.size());
    return true;
  }
  while (name.size() >= segment.size()) {
    if (StartsWith(name, segment)) {
      name.remove_prefix(segment.size());
      return true;
    }
    name.remove_prefix(1);
  }
  return false;
}

/// Matches the rest of a pattern, which is empty or begins with "*".
///
/// Taking the first place where each segment fits leaves the longest rest of the name for the
/// segments after it, so no later place can do better, with one exception: a segment that ends both
/// at a "*" and at the end of the name matches at once, and only its last place can do that.
bool MatchFromStar(std::string_view pattern, std::string_view name) {
  while (!pattern.empty()) {
    // Kept: at the end of the name a "*" matches with whatever follows it in the pattern.
    if (name.empty()) return true;
    pattern.remove_prefix(1);
    const std::string_view segment = LeadingSegment(pattern);
    pattern.remove_prefix(segment.size());
    if (!segment.empty() && !pattern.empty() && EndsWith(name, segment)) return true;
    if (!SkipPast(name, segment)) return false;
  }
  // Kept: the end of the pattern matches whatever remains of the name; callers search by prefix.
  return true;
}

}  // namespace

int32_t tivWildCardMatch(const char* pattern, const char* name) {
  if (pattern == nullptr || *pattern == '\0') return kMatch;
  if (name == nullptr) return kNoMatch;
  for (; *pattern != '*'; ++pattern, ++name) {
    // Kept: as in MatchFromStar(), the end of the pattern matches.
    if (*pattern == '\0') return kMatch;
    if (*name == '\0' || (*pattern != '?' && *pattern != *name)) return kNoMatch;
  }
  return MatchFromStar(pattern, name) ? kMatch : kNoMatch;
}
