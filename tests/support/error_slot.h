#ifndef ZEBCOMN_TESTS_SUPPORT_ERROR_SLOT_H_
#define ZEBCOMN_TESTS_SUPPORT_ERROR_SLOT_H_

#include "zebcomn/portable/error.h"

namespace zebcomn_test {

/// A value of `nErrno` that the library never stores.
constexpr int32_t kErrorLeftAlone = 9999;

/// The error slot over one call: it holds `kErrorLeftAlone` until the library stores something.
inline void ClearErrorSlot() {
  nErrno = kErrorLeftAlone;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_ERROR_SLOT_H_
