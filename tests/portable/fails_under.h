#ifndef ZEBCOMN_TESTS_PORTABLE_FAILS_UNDER_H_
#define ZEBCOMN_TESTS_PORTABLE_FAILS_UNDER_H_

#include <cerrno>

#include "tests/portable/interposed_calls.h"
#include "tests/support/error_slot.h"

namespace zebcomn_test {

/// Whether `operation` gives 0 when the `nth` call of its kind fails under it, and leaves `nErrno`
/// alone.
template <typename Operation>
bool FailsUnder(Call call, int nth, const Operation& operation) {
  ClearErrorSlot();
  const CallWatch watch(call, nth, EINVAL);
  const bool refused = operation() == 0;
  return refused && watch.Failed() && nErrno == kErrorLeftAlone;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_FAILS_UNDER_H_
