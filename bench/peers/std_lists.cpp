// The C++ standard library. Its lists take memory for each element, which ours are part of.
#include <list>
#include <mutex>
#include <shared_mutex>

#include "bench/support/lock_operations.h"

namespace {

class SharedMutex {
 public:
  using ForThread = bench::NoPreparation;
  void Exclusive() { mutex_.lock(); }
  void EndExclusive() { mutex_.unlock(); }
  void Shared() { mutex_.lock_shared(); }
  void EndShared() { mutex_.unlock_shared(); }

 private:
  std::shared_mutex mutex_;
};

class List {
 public:
  void Push() { list_.push_front(this); }
  void* Pop() {
    void* first = list_.front();
    list_.pop_front();
    return first;
  }

 private:
  std::list<void*> list_;
};

class LockedList {
 public:
  void Push() {
    const std::lock_guard<std::mutex> lock(mutex_);
    list_.Push();
  }
  void* Pop() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return list_.Pop();
  }

 private:
  std::mutex mutex_;
  List list_;
};

bool RegisterAll() {
  constexpr char kName[] = "std";
  bench::RegisterLock<SharedMutex>(kName);
  bench::Register("list_push_pop", kName, bench::PushPop<List>);
  bench::Register("locked_list_push_pop", kName, bench::PushPop<LockedList>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
