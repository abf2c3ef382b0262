// Boost.
#include <boost/intrusive/slist.hpp>
#include <boost/thread/shared_mutex.hpp>

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
  boost::shared_mutex mutex_;
};

class List {
 public:
  void Push() {
    list_.push_front(element_);
    benchmark::ClobberMemory();
  }
  void* Pop() {
    Element& first = list_.front();
    list_.pop_front();
    return &first;
  }

 private:
  struct Element : boost::intrusive::slist_base_hook<> {};
  Element element_;
  boost::intrusive::slist<Element> list_;
};

const bool g_registered = bench::RegisterLock<SharedMutex>("boost");
const auto* const g_list = bench::Register("list_push_pop", "boost", bench::PushPop<List>);

}  // namespace
