#ifndef ZEBCOMN_TESTS_UTIL_FLATTEN_STEP_BY_STEP_H_
#define ZEBCOMN_TESTS_UTIL_FLATTEN_STEP_BY_STEP_H_

#include <string>

namespace zebcomn_test {

/// Stands for a path that does not flatten.
constexpr const char* kFails = "(fails)";

/// Flattens by editing the whole text, one step at a time: slow, and plain to see. What the library
/// gives in one pass has to be the same.
inline std::string FlattenStepByStep(std::string text, const std::string& base) {
  if (!text.empty() && text.back() == '/') text.pop_back();
  if (text.empty()) return base;
  if (text[0] != '/') text = base + "/" + text;
  text += "/";
  for (size_t p = 0; (p = text.find("/./")) != std::string::npos;) text.erase(p + 1, 2);
  for (size_t p = 0; (p = text.find("/../")) != std::string::npos;) {
    if (p == 0) return kFails;
    const size_t parent = text.rfind('/', p - 1);
    if (parent == std::string::npos) return kFails;
    text.erase(parent + 1, p + 4 - (parent + 1));
  }
  if (text.back() == '/') text.pop_back();
  return text;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_UTIL_FLATTEN_STEP_BY_STEP_H_
