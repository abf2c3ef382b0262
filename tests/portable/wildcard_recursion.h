#ifndef ZEBCOMN_TESTS_PORTABLE_WILDCARD_RECURSION_H_
#define ZEBCOMN_TESTS_PORTABLE_WILDCARD_RECURSION_H_

#include <cstddef>
#include <cstdint>

namespace zebcomn_test {

/// The rules of the matcher, spelled out as a plain recursion: 0 for a match, 1 for none. Its time
/// grows exponentially with the stars, so it gives up, with no answer worth anything, when `steps`
/// has come down to 0.
inline int32_t RecursiveMatch(const char* pattern, const char* name, size_t& steps) {
  if (steps == 0 || --steps == 0) return 1;
  if (pattern == nullptr || *pattern == '\0') return 0;
  for (; *pattern != '*'; ++pattern, ++name) {
    if (*pattern == '\0') return 0;
    if (*name == '\0') return 1;
    if (*pattern != '?' && *pattern != *name) return 1;
  }
  if (*name == '\0') return 0;
  for (; *name != '\0' && steps > 0; ++name) {
    if (RecursiveMatch(pattern + 1, name, steps) == 0) return 0;
  }
  return 1;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_WILDCARD_RECURSION_H_
