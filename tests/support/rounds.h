#ifndef ZEBCOMN_TESTS_SUPPORT_ROUNDS_H_
#define ZEBCOMN_TESTS_SUPPORT_ROUNDS_H_

#include "tests/support/command.h"

namespace zebcomn_test {

/// How often a random or loaded test goes round, where it would go round `natively` times on this
/// machine's own processor: fewer under a checker or an emulator, where a thread's step costs more.
constexpr int Rounds(int natively) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(ZEBCOMN_UNDER_VALGRIND)
  return natively / 8;
#else
  return IsEmulated() ? natively / 8 : natively;
#endif
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_ROUNDS_H_
