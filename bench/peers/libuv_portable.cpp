// libuv.
#include <uv.h>

#include "bench/support/operations.h"

namespace {

class Parts {
 public:
  Parts() {
    uv_mutex_init(&mutex_);
    uv_cond_init(&cond_);
  }
  ~Parts() {
    uv_cond_destroy(&cond_);
    uv_mutex_destroy(&mutex_);
  }
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;
  void Lock() { uv_mutex_lock(&mutex_); }
  void Unlock() { uv_mutex_unlock(&mutex_); }
  void Broadcast() { uv_cond_broadcast(&cond_); }
  void WaitOnce() { uv_cond_wait(&cond_, &mutex_); }

 private:
  uv_mutex_t mutex_;
  uv_cond_t cond_;
};

struct Thread {
  static void DoNothing(void* /*data*/) {}
  static void Live() {
    uv_thread_t thread;
    uv_thread_create(&thread, DoNothing, nullptr);
    uv_thread_join(&thread);
  }
};

class Slot {
 public:
  Slot() { uv_key_create(&key_); }
  ~Slot() { uv_key_delete(&key_); }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  void Set(void* value) { uv_key_set(&key_, value); }
  void* Get() { return uv_key_get(&key_); }

 private:
  uv_key_t key_;
};

uint64_t TickCount() {
  return uv_hrtime() / 1'000'000;
}

int LoadLookupFree() {
  uv_lib_t library;
  void* answer = nullptr;
  uv_dlopen(BENCH_LOADABLE, &library);
  uv_dlsym(&library, "Answer", &answer);
  const int got = reinterpret_cast<int (*)()>(answer)();
  uv_dlclose(&library);
  return got;
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "libuv";
  bench::RegisterEvent<bench::HandMadeEvent<Parts>>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Parts>);
  Register("thread_life", kName, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kName, bench::SlotGet<Slot>);
  Register("tls_set", kName, bench::SlotSet<Slot>);
  Register("tick_count", kName, bench::Call<TickCount>);
  Register("library_load_lookup_free", kName, bench::Call<LoadLookupFree>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
