// POCO.
#include <Poco/RWLock.h>

#include "bench/support/lock_operations.h"

namespace {

class RwLock {
 public:
  using ForThread = bench::NoPreparation;
  void Exclusive() { lock_.writeLock(); }
  void EndExclusive() { lock_.unlock(); }
  void Shared() { lock_.readLock(); }
  void EndShared() { lock_.unlock(); }

 private:
  Poco::RWLock lock_;
};

const bool g_registered = bench::RegisterLock<RwLock>("poco");

}  // namespace
