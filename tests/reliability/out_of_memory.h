#ifndef ZEBCOMN_TESTS_RELIABILITY_OUT_OF_MEMORY_H_
#define ZEBCOMN_TESTS_RELIABILITY_OUT_OF_MEMORY_H_

#include <new>

#include "tests/reliability/sweep.h"

namespace zebcomn_test {

/// Runs `call` armed, for a function that may report a lack of memory as std::bad_alloc. It is
/// expected to throw only where `operator new` failed.
/// \return whether `call` came to its end.
template <typename Function>
bool CallOrBadAlloc(Trial& trial, Function&& call) {
  bool done = false;
  try {
    trial.Call([&] {
      call();
      done = true;
    });
  } catch (const std::bad_alloc&) {
    EXPECT_TRUE(trial.FailedIn("operator new"));
  }
  return done;
}

/// The same for a function that is expected to throw wherever `operator new` failed.
template <typename Function>
bool CallThatMayThrow(Trial& trial, Function&& call) {
  const bool done = CallOrBadAlloc(trial, call);
  EXPECT_EQ(done, !trial.FailedIn("operator new"));
  return done;
}

/// Whether the run failed a call without which no text can be converted to another encoding.
inline bool FailedInConversion(const Trial& trial) {
  return trial.FailedInAllocation() || trial.FailedIn("iconv_open") || trial.FailedIn("iconv");
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_RELIABILITY_OUT_OF_MEMORY_H_
