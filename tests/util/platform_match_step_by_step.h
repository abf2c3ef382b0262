#ifndef ZEBCOMN_TESTS_UTIL_PLATFORM_MATCH_STEP_BY_STEP_H_
#define ZEBCOMN_TESTS_UTIL_PLATFORM_MATCH_STEP_BY_STEP_H_

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace zebcomn_test {

constexpr uint32_t kMatch = 0;
constexpr uint32_t kOtherVersion = 1;
constexpr uint32_t kNoName = 0x80000008u;

/// The verdict found step by step in the C library's own terms, for numbers within 32 bits.
inline uint32_t MatchStepByStep(const char* platform, const char* list_text) {
  char local[260] = {};
  char list[260] = {};
  size_t n = 0;
  for (const char* p = platform; *p != 0 && n < 259; ++p) {
    if (*p != 32) local[n++] = *p;
  }
  n = 0;
  for (const char* p = list_text; *p != 0 && n < 259; ++p) {
    if (*p != 32) list[n++] = *p;
  }
  const auto number = [](const int(&v)[3]) {
    return v[0] * (int64_t{1} << 32) + v[1] * (int64_t{1} << 16) + v[2];
  };
  int version[3] = {0, 0, 0};
  const char* colon = std::strchr(local, ':');
  // NOLINTBEGIN(cert-err34-c): a number that is missing keeps its value.
  if (colon != nullptr) std::sscanf(colon, ":%d:%d:%d", &version[0], &version[1], &version[2]);
  int low[3] = {0, 0, 0};
  int high[3] = {65535, -1, 65535};
  bool named = false;
  char* rest = nullptr;
  for (char* entry = strtok_r(list, "|", &rest); entry != nullptr;
       entry = strtok_r(nullptr, "|", &rest)) {
    char* range = std::strchr(entry, ':');
    if (range != nullptr) *range++ = '\0';
    if (std::strstr(local, entry) == nullptr) continue;
    named = true;
    if (range == nullptr) return kMatch;
    std::sscanf(range, "%d:%d:%d", &low[0], &low[1], &low[2]);
    const char* dash = std::strchr(range, '-');
    if (dash != nullptr) std::sscanf(dash + 1, "%d:%d:%d", &high[0], &high[1], &high[2]);
    if (number(low) <= number(version) && number(version) <= number(high)) return kMatch;
  }
  // NOLINTEND(cert-err34-c)
  return named ? kOtherVersion : kNoName;
}

/// Whether a text holds a number that might not fit into 32 bits: the C library's scanner has no
/// defined answer for it.
inline bool HoldsALongNumber(const std::string& text) {
  int digits = 0;
  for (const char c : text) {
    if (c == ' ') continue;
    digits = c >= '0' && c <= '9' ? digits + 1 : 0;
    if (digits > 9) return true;
  }
  return false;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_UTIL_PLATFORM_MATCH_STEP_BY_STEP_H_
