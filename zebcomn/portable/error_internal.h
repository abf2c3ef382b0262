#ifndef ZEBCOMN_PORTABLE_ERROR_INTERNAL_H_
#define ZEBCOMN_PORTABLE_ERROR_INTERNAL_H_

#include <cerrno>

#include "zebcomn/portable/error.h"
#include "zebcomn/portable/plain_atomic_internal.h"

namespace zebcomn {

/// Stores `error`, a C `errno` number, in `nErrno`.
inline void StoreError(int32_t error) {
  StoreRelaxed(&nErrno, error);
}

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_ERROR_INTERNAL_H_
