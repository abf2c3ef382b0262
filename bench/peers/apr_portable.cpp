// The Apache Portable Runtime.
#include <apr_atomic.h>
#include <apr_dso.h>
#include <apr_general.h>
#include <apr_pools.h>
#include <apr_thread_cond.h>
#include <apr_thread_mutex.h>
#include <apr_thread_proc.h>
#include <apr_time.h>

#include "bench/support/operations.h"

namespace {

// Every object of APR comes from a pool; one pool for each object gives its memory back.
class Pool {
 public:
  Pool() {
    static const bool initialised = apr_initialize() == APR_SUCCESS;
    if (initialised) apr_pool_create(&pool_, nullptr);
  }
  ~Pool() { apr_pool_destroy(pool_); }
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;
  apr_pool_t* get() const { return pool_; }

 private:
  apr_pool_t* pool_ = nullptr;
};

class Parts {
 public:
  Parts() {
    apr_thread_mutex_create(&mutex_, APR_THREAD_MUTEX_DEFAULT, pool_.get());
    apr_thread_cond_create(&cond_, pool_.get());
  }
  void Lock() { apr_thread_mutex_lock(mutex_); }
  void Unlock() { apr_thread_mutex_unlock(mutex_); }
  void Broadcast() { apr_thread_cond_broadcast(cond_); }
  void WaitOnce() { apr_thread_cond_wait(cond_, mutex_); }

 private:
  Pool pool_;
  apr_thread_mutex_t* mutex_ = nullptr;
  apr_thread_cond_t* cond_ = nullptr;
};

struct Thread {
  static void* APR_THREAD_FUNC DoNothing(apr_thread_t* /*thread*/, void* /*data*/) {
    return nullptr;
  }
  static void Live() {
    const Pool pool;
    apr_thread_t* thread = nullptr;
    apr_status_t result = APR_SUCCESS;
    apr_thread_create(&thread, nullptr, DoNothing, nullptr, pool.get());
    apr_thread_join(&result, thread);
  }
};

class Slot {
 public:
  Slot() { apr_threadkey_private_create(&key_, nullptr, pool_.get()); }
  ~Slot() { apr_threadkey_private_delete(key_); }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  void Set(void* value) { apr_threadkey_private_set(value, key_); }
  void* Get() {
    void* value = nullptr;
    apr_threadkey_private_get(&value, key_);
    return value;
  }

 private:
  Pool pool_;
  apr_threadkey_t* key_ = nullptr;
};

struct Counter {
  apr_uint32_t Increment() { return apr_atomic_inc32(&value) + 1; }
  apr_uint32_t Exchange(apr_uint32_t next) { return apr_atomic_xchg32(&value, next); }
  apr_uint32_t value = 0;
};

apr_time_t TickCount() {
  return apr_time_as_msec(apr_time_now());
}

int LoadLookupFree() {
  const Pool pool;
  apr_dso_handle_t* module = nullptr;
  apr_dso_handle_sym_t answer = nullptr;
  apr_dso_load(&module, BENCH_LOADABLE, pool.get());
  apr_dso_sym(&answer, module, "Answer");
  const int got = reinterpret_cast<int (*)()>(answer)();
  apr_dso_unload(module);
  return got;
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "apr";
  bench::RegisterEvent<bench::HandMadeEvent<Parts>>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Parts>);
  Register("thread_life", kName, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kName, bench::SlotGet<Slot>);
  Register("tls_set", kName, bench::SlotSet<Slot>);
  Register("interlocked_increment", kName, bench::Increment<Counter>);
  Register("interlocked_exchange", kName, bench::Exchange<Counter>);
  Register("tick_count", kName, bench::Call<TickCount>);
  Register("library_load_lookup_free", kName, bench::Call<LoadLookupFree>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
