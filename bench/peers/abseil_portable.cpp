// Abseil.
#include <absl/synchronization/mutex.h>
#include <absl/time/clock.h>

#include "bench/support/operations.h"

namespace {

class Parts {
 public:
  void Lock() ABSL_NO_THREAD_SAFETY_ANALYSIS { mutex_.Lock(); }
  void Unlock() ABSL_NO_THREAD_SAFETY_ANALYSIS { mutex_.Unlock(); }
  void Broadcast() { cond_.SignalAll(); }
  void WaitOnce() ABSL_NO_THREAD_SAFETY_ANALYSIS { cond_.Wait(&mutex_); }

 private:
  absl::Mutex mutex_;
  absl::CondVar cond_;
};

int64_t TickCount() {
  return absl::GetCurrentTimeNanos() / 1'000'000;
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "abseil";
  bench::RegisterEvent<bench::HandMadeEvent<Parts>>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Parts>);
  Register("tick_count", kName, bench::Call<TickCount>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
