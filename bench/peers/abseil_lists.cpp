// Abseil.
#include <absl/synchronization/mutex.h>

#include "bench/support/lock_operations.h"

namespace {

class Mutex {
 public:
  using ForThread = bench::NoPreparation;
  void Exclusive() ABSL_NO_THREAD_SAFETY_ANALYSIS { mutex_.Lock(); }
  void EndExclusive() ABSL_NO_THREAD_SAFETY_ANALYSIS { mutex_.Unlock(); }
  void Shared() ABSL_NO_THREAD_SAFETY_ANALYSIS { mutex_.ReaderLock(); }
  void EndShared() ABSL_NO_THREAD_SAFETY_ANALYSIS { mutex_.ReaderUnlock(); }

 private:
  absl::Mutex mutex_;
};

const bool g_registered = bench::RegisterLock<Mutex>("abseil");

}  // namespace
