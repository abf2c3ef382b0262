// The Apache Portable Runtime.
#include <apr_general.h>
#include <apr_pools.h>
#include <apr_thread_rwlock.h>

#include "bench/support/lock_operations.h"

namespace {

class RwLock {
 public:
  using ForThread = bench::NoPreparation;
  RwLock() {
    apr_pool_t* pool = nullptr;
    apr_initialize();
    apr_pool_create(&pool, nullptr);
    apr_thread_rwlock_create(&lock_, pool);
  }
  void Exclusive() { apr_thread_rwlock_wrlock(lock_); }
  void EndExclusive() { apr_thread_rwlock_unlock(lock_); }
  void Shared() { apr_thread_rwlock_rdlock(lock_); }
  void EndShared() { apr_thread_rwlock_unlock(lock_); }

 private:
  apr_thread_rwlock_t* lock_ = nullptr;
};

const bool g_registered = bench::RegisterLock<RwLock>("apr");

}  // namespace
