// The singly linked list with its own lock: set-up, elements, walks, null arguments.
#include "zebcomn/lists/sll.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/lists/attached.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::StartAndQueue;
using zebcomn_test::ViewOf;
using zebcomn_test::Worker;

struct Element {
  tiLL_element_t link;
  char name;
};

class Sll : public AttachedTest {
 protected:
  Sll() {
    EXPECT_EQ(tiSLL_Create(&list_), 0U);
    EXPECT_NE(list_, nullptr);
  }
  ~Sll() override { tiSLL_Release(list_); }

  void InsertAll() {
    for (Element* element : {&c_, &b_, &a_}) tiSLL_XInsertHead(list_, &element->link);
  }

  std::string Names() {
    std::string names;
    for (tiLL_element_t* link = tiSLL_XGetHead(list_, 0, 1); tiLL_XIsEnd(link) == 0;
         link = tiLL_XGetNext(link)) {
      names += reinterpret_cast<Element*>(link)->name;
    }
    tiSLL_LockRelease(list_);
    return names;
  }

  void ExpectUnlocked() { EXPECT_EQ(list_->lock->count, 0U); }

  tiSLL_t* list_ = nullptr;
  Element a_{{nullptr}, 'A'};
  Element b_{{nullptr}, 'B'};
  Element c_{{nullptr}, 'C'};
  Worker other_;
};

TEST_F(Sll, CreateMakesAnEmptyUnlockedList) {
  EXPECT_EQ(list_->head.next, nullptr);
  EXPECT_EQ(list_->lock->state, 1);
  EXPECT_EQ(tiSLL_IsEmpty(list_), 1);
  ExpectUnlocked();
}

TEST_F(Sll, InitMakesARecordOfTheCallersEmpty) {
  tiSLL_t list{{&a_.link}, nullptr};
  EXPECT_EQ(tiSLL_Init(&list), 0U);
  EXPECT_EQ(tiSLL_IsEmpty(&list), 1);
  tiSLL_XInsertHead(&list, &b_.link);
  EXPECT_EQ(tiSLL_IsEmpty(&list), 0);
  tiSLL_Uninit(&list);
  EXPECT_EQ(list.head.next, &b_.link) << "elements are left alone";
}

TEST_F(Sll, AListWhoseLockIsGoneTakesAndGivesNothing) {
  tiSLL_t list{{nullptr}, nullptr};
  tiSLL_XInsertHead(&list, &a_.link);
  EXPECT_EQ(list.head.next, nullptr);
  EXPECT_EQ(tiSLL_XRemoveHead(&list), nullptr);
  EXPECT_EQ(tiSLL_IsEmpty(&list), 1);
  EXPECT_EQ(tiSLL_XGetHead(&list, 1, 1), TISLL_LOCK_REFUSED);
  tiSLL_LockRelease(&list);
  tiSLL_Uninit(&list);
}

TEST_F(Sll, ElementsComeOutNewestFirst) {
  InsertAll();
  EXPECT_EQ(tiSLL_IsEmpty(list_), 0);
  EXPECT_EQ(Names(), "ABC");
  EXPECT_EQ(tiSLL_XRemoveHead(list_), &a_.link);
  EXPECT_EQ(tiSLL_XRemoveHead(list_), &b_.link);
  EXPECT_EQ(tiSLL_XRemoveHead(list_), &c_.link);
  EXPECT_EQ(tiSLL_XRemoveHead(list_), nullptr);
  EXPECT_EQ(tiSLL_IsEmpty(list_), 1);
  ExpectUnlocked();
}

TEST_F(Sll, NullRecordsGiveTheNeutralResults) {
  nErrno = 0;
  EXPECT_EQ(tiSLL_Create(nullptr), 0x80000008U);
  EXPECT_EQ(tiSLL_Init(nullptr), 0x80000008U);
  tiSLL_Uninit(nullptr);
  tiSLL_Release(nullptr);
  tiSLL_XInsertHead(nullptr, &a_.link);
  EXPECT_EQ(tiSLL_XRemoveHead(nullptr), nullptr);
  EXPECT_EQ(tiSLL_XGetHead(nullptr, 1, 1), nullptr);
  tiSLL_LockRelease(nullptr);
  EXPECT_EQ(tiSLL_IsEmpty(nullptr), 1);
  EXPECT_EQ(nErrno, 0);
}

TEST_F(Sll, GetHeadOfAnEmptyListGivesNullWithTheLockHeld) {
  EXPECT_EQ(tiSLL_XGetHead(list_, 1, 0), nullptr);
  EXPECT_EQ(list_->lock->count, 1U);
  EXPECT_EQ(list_->lock->owner, tiSO_GetThread());
  tiSLL_LockRelease(list_);
  ExpectUnlocked();
}

TEST_F(Sll, GetHeadTakesTheLockAsTheFlagSays) {
  InsertAll();
  EXPECT_EQ(tiSLL_XGetHead(list_, 0, 0), &a_.link);
  EXPECT_EQ(list_->lock->owner, TISO_NO_THREAD);
  EXPECT_EQ(list_->lock->count, 1U);
  tiSLL_LockRelease(list_);
  EXPECT_EQ(tiSLL_XGetHead(list_, 1, 0), &a_.link);
  EXPECT_EQ(list_->lock->owner, tiSO_GetThread());
  tiSLL_LockRelease(list_);
}

TEST_F(Sll, ARefusedLockGivesAllOnes) {
  EXPECT_EQ(tiSLL_XGetHead(list_, 1, 1), nullptr);
  for (BOOL exclusive : {0, 1}) {
    tiLL_element_t* head = nullptr;
    other_.Call([&] {
      head = tiSLL_XGetHead(list_, exclusive, 0);
      return 1;
    });
    EXPECT_EQ(reinterpret_cast<intptr_t>(head), -1);
    EXPECT_EQ(head, TISLL_LOCK_REFUSED);
  }
  EXPECT_EQ(list_->lock->count, 1U);
  tiSLL_LockRelease(list_);
}

TEST_F(Sll, TheWalkingThreadMayChangeTheListInAnExclusiveWalk) {
  InsertAll();
  EXPECT_EQ(tiSLL_XGetHead(list_, 1, 1), &a_.link);
  EXPECT_EQ(tiSLL_XRemoveHead(list_), &a_.link);
  tiSLL_XInsertHead(list_, &a_.link);
  EXPECT_EQ(tiSLL_IsEmpty(list_), 0);
  EXPECT_EQ(list_->lock->count, 1U);
  tiSLL_LockRelease(list_);
  EXPECT_EQ(Names(), "ABC");
}

TEST_F(Sll, ChangesOfOthersWaitForTheEndOfAWalk) {
  InsertAll();
  for (BOOL exclusive : {0, 1}) {
    EXPECT_EQ(tiSLL_XGetHead(list_, exclusive, 1), &a_.link);
    tiLL_element_t* removed = nullptr;
    StartAndQueue(other_, list_->lock, [&] {
      removed = tiSLL_XRemoveHead(list_);
      return 1;
    });
    EXPECT_EQ(list_->head.next, &a_.link);
    tiSLL_LockRelease(list_);
    other_.Finish();
    EXPECT_EQ(removed, &a_.link);
    tiSLL_XInsertHead(list_, removed);
  }
}

TEST_F(Sll, EveryChangeAsksForTheLockExclusively) {
  const std::function<BOOL()> changes[] = {
      [this] { return tiSLL_XInsertHead(list_, &a_.link), 1; },
      [this] { return tiSLL_XRemoveHead(list_) == &a_.link ? 1 : 0; },
  };
  for (const std::function<BOOL()>& change : changes) {
    tiSLL_XGetHead(list_, 0, 1);
    StartAndQueue(other_, list_->lock, change);
    EXPECT_EQ(ViewOf(list_->lock).exclusive, (std::vector<uintptr_t>{other_.identity()}));
    tiSLL_LockRelease(list_);
    EXPECT_EQ(other_.Finish(), 1);
    ExpectUnlocked();
  }
}

TEST_F(Sll, SharedWalksAndLooksStandBehindQueuedChanges) {
  InsertAll();
  Worker third;
  EXPECT_EQ(tiSLL_XGetHead(list_, 0, 1), &a_.link);
  StartAndQueue(other_, list_->lock, [this] { return tiSLL_XRemoveHead(list_) != nullptr; });
  EXPECT_EQ(tiSLL_XGetHead(list_, 0, 0), TISLL_LOCK_REFUSED);
  StartAndQueue(third, list_->lock, [this] { return tiSLL_IsEmpty(list_); });
  tiSLL_LockRelease(list_);
  EXPECT_EQ(other_.Finish(), 1);
  EXPECT_EQ(third.Finish(), 0);
  ExpectUnlocked();
}

TEST_F(Sll, IsEmptyWaitsForAnExclusiveWalk) {
  EXPECT_EQ(tiSLL_XGetHead(list_, 1, 1), nullptr);
  StartAndQueue(other_, list_->lock, [this] { return tiSLL_IsEmpty(list_); });
  tiSLL_XInsertHead(list_, &a_.link);
  tiSLL_LockRelease(list_);
  EXPECT_EQ(other_.Finish(), 0);
}

TEST_F(Sll, AThreadThatIsNotAttachedFindsAnOwnedListEmptyAndUnchanged) {
  InsertAll();
  Worker stranger(Worker::Kind::kNotAttached);
  EXPECT_EQ(tiSLL_XGetHead(list_, 1, 1), &a_.link);
  Element d{{nullptr}, 'D'};
  stranger.Call([&] {
    tiSLL_XInsertHead(list_, &d.link);
    EXPECT_EQ(tiSLL_XRemoveHead(list_), nullptr);
    return 1;
  });
  EXPECT_EQ(stranger.Call([this] { return tiSLL_IsEmpty(list_); }), 1);
  EXPECT_EQ(list_->lock->count, 1U) << "nobody else's grant was given back";
  tiSLL_LockRelease(list_);
  EXPECT_EQ(Names(), "ABC");
}

}  // namespace
