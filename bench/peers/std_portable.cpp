// The C++ standard library.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "bench/support/operations.h"

namespace {

class Parts {
 public:
  void Lock() { mutex_.lock(); }
  void Unlock() { mutex_.unlock(); }
  void Broadcast() { cond_.notify_all(); }
  void WaitOnce() {
    std::unique_lock<std::mutex> lock(mutex_, std::adopt_lock);
    cond_.wait(lock);
    lock.release();
  }

 private:
  std::mutex mutex_;
  std::condition_variable cond_;
};

struct Thread {
  static void Live() {
    std::thread([] {}).join();
  }
};

class Slot {
 public:
  void Set(void* value) { value_ = value; }
  void* Get() { return value_; }

 private:
  static thread_local void* value_;
};
thread_local void* Slot::value_ = nullptr;

struct Counter {
  int Increment() { return ++value; }
  int Exchange(int next) { return value.exchange(next); }
  std::atomic<int> value{0};
};

int64_t TickCount() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "std";
  bench::RegisterEvent<bench::HandMadeEvent<Parts>>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Parts>);
  Register("thread_life", kName, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kName, bench::SlotGet<Slot>);
  Register("tls_set", kName, bench::SlotSet<Slot>);
  Register("interlocked_increment", kName, bench::Increment<Counter>);
  Register("interlocked_exchange", kName, bench::Exchange<Counter>);
  Register("tick_count", kName, bench::Call<TickCount>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
