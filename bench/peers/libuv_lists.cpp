// libuv.
#include <uv.h>

#include "bench/support/lock_operations.h"

namespace {

class RwLock {
 public:
  using ForThread = bench::NoPreparation;
  RwLock() { uv_rwlock_init(&lock_); }
  void Exclusive() { uv_rwlock_wrlock(&lock_); }
  void EndExclusive() { uv_rwlock_wrunlock(&lock_); }
  void Shared() { uv_rwlock_rdlock(&lock_); }
  void EndShared() { uv_rwlock_rdunlock(&lock_); }

 private:
  uv_rwlock_t lock_;
};

const bool g_registered = bench::RegisterLock<RwLock>("libuv");

}  // namespace
