// The records of the lock and of the lists, read through the pointers that callers get and with the
// layout that the agent's components were built with, which is written down here once more.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>

#include "tests/lists/attached.h"
#include "tests/support/seen_as.h"
#include "zebcomn/lists/Linklist.h"
#include "zebcomn/lists/sll.h"
#include "zebcomn/lists/sll2.h"

namespace {

using zebcomn_test::OwnLock;
using zebcomn_test::SeenAs;
using zebcomn_test::Worker;

struct LockRecord {
  int32_t spin_word;
  uintptr_t owner;
  uint32_t count;
  void* shared_waiters;
  void* exclusive_waiters;
  void* notify_list;
  int32_t process;
  int32_t state;
};

struct WaiterRecord {
  void* next;
  uintptr_t thread;
  int32_t process;
  int32_t waiting;
};

struct NotifyRecord {
  void* next;
  tiSO_NotifyCallback_t callback;
  uintptr_t first;
  uintptr_t second;
};

class LockRecordLayout : public zebcomn_test::AttachedTest {
 protected:
  /// The lock as it stands while nobody can change it, its spin word as it was before that.
  LockRecord Lock() {
    tiSL_Get(&lock_->spin_word);
    auto record = SeenAs<LockRecord>(lock_);
    tiSL_Release(&lock_->spin_word);
    EXPECT_EQ(record.spin_word, 1) << "taken through the record's address";
    return record;
  }

  OwnLock lock_;
};

TEST_F(LockRecordLayout, FreshLockIsFree) {
  const LockRecord record = Lock();
  EXPECT_EQ(record.owner, UINTPTR_MAX);
  EXPECT_EQ(record.count, 0U);
  EXPECT_EQ(record.shared_waiters, nullptr);
  EXPECT_EQ(record.exclusive_waiters, nullptr);
  EXPECT_EQ(record.notify_list, nullptr);
  EXPECT_EQ(record.process, 0);
  EXPECT_EQ(record.state, 1);
}

TEST_F(LockRecordLayout, ShowsOwnerAndTheOneWhoWaits) {
  ASSERT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
  ASSERT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
  Worker worker(Worker::Kind::kAttached);
  tiSO_SELock_t* lock = lock_;
  zebcomn_test::StartAndQueue(worker, lock, [lock] { return tiSO_SELockExclusive(lock, 1); });

  const LockRecord record = Lock();
  EXPECT_EQ(record.owner, tiSO_GetThread());
  EXPECT_EQ(record.count, 2U);
  EXPECT_EQ(record.shared_waiters, nullptr);
  EXPECT_EQ(record.process, getpid());
  EXPECT_EQ(record.state, 2);
  ASSERT_NE(record.exclusive_waiters, nullptr);
  const auto waiter = SeenAs<WaiterRecord>(record.exclusive_waiters);
  EXPECT_EQ(waiter.next, nullptr);
  EXPECT_EQ(waiter.thread, worker.identity());
  EXPECT_EQ(waiter.process, getpid());
  EXPECT_EQ(waiter.waiting, 1);

  tiSO_SELockRelease(lock_);
  tiSO_SELockRelease(lock_);
  EXPECT_EQ(worker.Finish(), 1);
  EXPECT_EQ(worker.Call([lock] {
    tiSO_SELockRelease(lock);
    return TRUE;
  }),
            TRUE);
}

uint32_t Accept(uintptr_t, uint32_t, uintptr_t, uint32_t) {
  return 0;
}

TEST_F(LockRecordLayout, ShowsTheSharedWaiterAndTheRegistration) {
  ASSERT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
  tiSO_SELock_t* lock = lock_;
  Worker client(Worker::Kind::kAttached);
  EXPECT_EQ(client.Call([lock] { return tiSO_SELockExclusiveNotify(lock, Accept, 11, 22); }), 0);
  Worker reader(Worker::Kind::kAttached);
  zebcomn_test::StartAndQueue(reader, lock,
                              [lock] { return tiSO_SELockSharedStarveExclusive(lock, 1); });

  const LockRecord record = Lock();
  ASSERT_NE(record.shared_waiters, nullptr);
  EXPECT_EQ(SeenAs<WaiterRecord>(record.shared_waiters).thread, reader.identity());
  EXPECT_EQ(record.exclusive_waiters, nullptr);
  ASSERT_NE(record.notify_list, nullptr);
  const auto registration = SeenAs<NotifyRecord>(record.notify_list);
  EXPECT_EQ(registration.next, nullptr);
  EXPECT_EQ(registration.callback, Accept);
  EXPECT_EQ(registration.first, 11U);
  EXPECT_EQ(registration.second, 22U);

  tiSO_SELockRelease(lock_);
  EXPECT_EQ(reader.Finish(), 1);
}

class ListRecordLayout : public zebcomn_test::AttachedTest {};

TEST_F(ListRecordLayout, SingleListIsAHeadAndItsLock) {
  struct {
    void* head;
    void* lock;
  } record;
  tiSLL_t* list = nullptr;
  ASSERT_EQ(tiSLL_Create(&list), 0U);
  tiLL_element_t last{};
  tiLL_element_t first{};
  tiSLL_XInsertHead(list, &last);
  tiSLL_XInsertHead(list, &first);
  std::memcpy(&record, list, sizeof record);
  EXPECT_EQ(record.head, &first);
  EXPECT_EQ(SeenAs<void*>(&first), &last);
  EXPECT_EQ(SeenAs<void*>(&last), nullptr);
  EXPECT_EQ(SeenAs<LockRecord>(record.lock).owner, UINTPTR_MAX);
  tiSLL_Release(list);
}

TEST_F(ListRecordLayout, DoubleListIsTwoSentinelsAndItsLock) {
  struct Links {
    void* next;
    void* previous;
  };
  struct Record {
    Links head;
    Links tail;
    void* lock;
  };
  tiSLL2_t* list = nullptr;
  ASSERT_EQ(tiSLL2_Create(&list), 0U);
  tiLL2_element_t first{};
  tiLL2_element_t last{};
  tiSLL2_XInsertHead(list, &first);
  tiSLL2_XInsertTail(list, &last);
  const auto record = SeenAs<Record>(list);
  auto* head = reinterpret_cast<char*>(list);
  auto* tail = head + sizeof(Links);
  EXPECT_EQ(record.head.next, &first);
  EXPECT_EQ(record.head.previous, head) << "the start is its own predecessor";
  EXPECT_EQ(record.tail.next, tail) << "the end is its own successor";
  EXPECT_EQ(record.tail.previous, &last);
  EXPECT_EQ(SeenAs<Links>(&first).next, &last);
  EXPECT_EQ(SeenAs<Links>(&last).previous, &first);
  EXPECT_EQ(SeenAs<LockRecord>(record.lock).owner, UINTPTR_MAX);
  tiSLL2_Release(list);
}

TEST(CountedListLayout, IsTailHeadAndCount) {
  struct Record {
    void* tail;
    void* head;
    uint32_t count;
  };
  struct Element {
    void* previous;
    void* next;
  };
  Element first{};
  Element last{};
  void* list = nullptr;
  ASSERT_EQ(LinkedList_Init(&list), TRUE);
  EXPECT_EQ(LinkedList_AddTail(list, &first), TRUE);
  EXPECT_EQ(LinkedList_AddTail(list, &last), TRUE);
  const auto record = SeenAs<Record>(list);
  EXPECT_EQ(record.tail, &last);
  EXPECT_EQ(record.head, &first);
  EXPECT_EQ(record.count, 2U);
  EXPECT_EQ(first.previous, nullptr);
  EXPECT_EQ(first.next, &last);
  EXPECT_EQ(last.previous, &first);
  EXPECT_EQ(last.next, nullptr);
  LinkedList_RemoveTail(list);
  LinkedList_RemoveTail(list);
  LinkedList_End(&list);
}

}  // namespace
