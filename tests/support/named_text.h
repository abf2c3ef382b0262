#ifndef ZEBCOMN_TESTS_SUPPORT_NAMED_TEXT_H_
#define ZEBCOMN_TESTS_SUPPORT_NAMED_TEXT_H_

#include <gtest/gtest.h>

#include <cstddef>

namespace zebcomn_test {

/// A text constant of the interface, and the text that it must hold.
template <typename Text>
struct NamedText {
  const char* name;
  const Text* constant;
  Text expected;
};

template <typename Text, std::size_t Count>
void ExpectTexts(const NamedText<Text> (&rows)[Count]) {
  for (const NamedText<Text>& row : rows) EXPECT_EQ(*row.constant, row.expected) << row.name;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_NAMED_TEXT_H_
