// The shared/exclusive lock and the lists. The floor of a lock and its release is the four
// interlocked exchanges that such a pair is made of: the spin word is taken and given back twice.
#include <pthread.h>

#include <cstdint>

#include "bench/support/lock_operations.h"
#include "zebcomn/lists/ll.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/sll.h"
#include "zebcomn/lists/thread_attach.h"

namespace {

constexpr char kOurs[] = "zebcomn";
constexpr char kFloor[] = "floor";

/// Attaches the thread for as long as it uses a lock; the process stays attached.
class Attached {
 public:
  Attached() {
    static const auto process_attached = tiSO_ProcessAttach();
    benchmark::DoNotOptimize(process_attached);
    tiSO_ThreadAttach();
  }
  ~Attached() { tiSO_ThreadDetach(); }
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;
};

/// Exclusive and shared, the latter behind waiting writers.
class SeLock {
 public:
  using ForThread = Attached;
  SeLock() { tiSO_SELockCreate(&lock_); }
  void Exclusive() { tiSO_SELockExclusive(lock_, 1); }
  void EndExclusive() { tiSO_SELockRelease(lock_); }
  void Shared() { tiSO_SELockSharedWaitForExclusive(lock_, 1); }
  void EndShared() { tiSO_SELockRelease(lock_); }

 private:
  tiSO_SELock_t* lock_ = nullptr;
};

/// An interlocked exchange: under one mutex of the process, as described.
int32_t Exchange(int32_t& word, int32_t next) {
  static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_mutex_lock(&mutex);
  const int32_t previous = word;
  word = next;
  pthread_mutex_unlock(&mutex);
  return previous;
}

class FourExchanges {
 public:
  using ForThread = bench::NoPreparation;
  void Exclusive() { Twice(); }
  void EndExclusive() { Twice(); }
  void Shared() { Twice(); }
  void EndShared() { Twice(); }

 private:
  void Twice() {
    benchmark::DoNotOptimize(Exchange(word_, 1));
    benchmark::DoNotOptimize(Exchange(word_, 0));
  }
  int32_t word_ = 0;
};

/// The same exchanges, but each take of the spin word is repeated until the word was free, as
/// described: with several threads four exchanges are not enough. Nobody is kept out.
class SpinWord {
 public:
  using ForThread = bench::NoPreparation;
  void Exclusive() { Twice(); }
  void EndExclusive() { Twice(); }
  void Shared() { Twice(); }
  void EndShared() { Twice(); }

 private:
  void Twice() {
    while (Exchange(word_, 1) != 0) {
    }
    benchmark::DoNotOptimize(++count_);
    benchmark::DoNotOptimize(Exchange(word_, 0));
  }
  int32_t word_ = 0;
  int32_t count_ = 0;
};

class RwLock {
 public:
  using ForThread = bench::NoPreparation;
  void Exclusive() { pthread_rwlock_wrlock(&lock_); }
  void EndExclusive() { pthread_rwlock_unlock(&lock_); }
  void Shared() { pthread_rwlock_rdlock(&lock_); }
  void EndShared() { pthread_rwlock_unlock(&lock_); }

 private:
  pthread_rwlock_t lock_ = PTHREAD_RWLOCK_INITIALIZER;
};

/// The intrusive list without a lock.
class List {
 public:
  List() { tiLL_Init(&head_); }
  void Push() { tiLL_XInsertHead(&head_, &element_); }
  void* Pop() { return tiLL_XRemoveHead(&head_); }

 private:
  tiLL_head_t head_{};
  tiLL_element_t element_{};
};

/// What the calls of List come down to, without the calls; the link is written and read in memory.
class BareList {
 public:
  void Push() {
    element_.next = head_;
    head_ = &element_;
    benchmark::ClobberMemory();
  }
  void* Pop() {
    Element* first = head_;
    if (first != nullptr) head_ = first->next;
    return first;
  }

 private:
  struct Element {
    Element* next = nullptr;
  };
  Element element_;
  Element* head_ = nullptr;
};

/// The list with a lock of its own.
class LockedList {
 public:
  LockedList() { tiSLL_Create(&list_); }
  ~LockedList() { tiSLL_Release(list_); }
  LockedList(const LockedList&) = delete;
  LockedList& operator=(const LockedList&) = delete;
  void Push() { tiSLL_XInsertHead(list_, &element_); }
  void* Pop() { return tiSLL_XRemoveHead(list_); }

 private:
  const Attached attached_;
  tiSLL_t* list_ = nullptr;
  tiLL_element_t element_{};
};

/// Each of the two operations takes the lock exclusively, so eight exchanges.
class LockedBareList {
 public:
  void Push() {
    lock_.Exclusive();
    list_.Push();
    lock_.EndExclusive();
  }
  void* Pop() {
    lock_.Exclusive();
    void* first = list_.Pop();
    lock_.EndExclusive();
    return first;
  }

 private:
  FourExchanges lock_;
  BareList list_;
};

bool RegisterAll() {
  using bench::Register;
  bench::RegisterLock<SeLock>(kOurs);
  bench::RegisterLock<FourExchanges>(kFloor);
  bench::RegisterLock<SpinWord>("spin_word");
  bench::RegisterLock<RwLock>("pthread");
  Register("list_push_pop", kOurs, bench::PushPop<List>);
  Register("list_push_pop", kFloor, bench::PushPop<BareList>);
  Register("locked_list_push_pop", kOurs, bench::PushPop<LockedList>);
  Register("locked_list_push_pop", kFloor, bench::PushPop<LockedBareList>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
