// The doubly linked list with its own lock: sentinels, both ends, walks, null arguments.
#include "zebcomn/lists/sll2.h"

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
  tiLL2_element_t links;
  char name;
};

class Sll2 : public AttachedTest {
 protected:
  Sll2() {
    EXPECT_EQ(tiSLL2_Create(&list_), 0U);
    EXPECT_NE(list_, nullptr);
  }
  ~Sll2() override { tiSLL2_Release(list_); }

  void InsertAll() {
    for (Element* element : {&a_, &b_, &c_}) tiSLL2_XInsertTail(list_, &element->links);
  }

  /// The names forwards, checked against those backwards.
  std::string Names() {
    std::string forwards;
    std::string backwards;
    for (tiLL2_element_t* links = tiSLL2_XGetHead(list_, 0, 1); tiLL2_XIsEnd(links) == 0;
         links = tiLL2_XGetNext(links)) {
      forwards += reinterpret_cast<Element*>(links)->name;
    }
    for (tiLL2_element_t* links = tiLL2_XGetPrev(&list_->tail); links != &list_->head;
         links = tiLL2_XGetPrev(links)) {
      backwards.insert(backwards.begin(), reinterpret_cast<Element*>(links)->name);
    }
    tiSLL2_LockRelease(list_);
    EXPECT_EQ(forwards, backwards);
    return forwards;
  }

  tiSLL2_t* list_ = nullptr;
  Element a_{{nullptr, nullptr}, 'A'};
  Element b_{{nullptr, nullptr}, 'B'};
  Element c_{{nullptr, nullptr}, 'C'};
  Worker other_;
};

TEST_F(Sll2, CreateLaysTheSentinelsOut) {
  EXPECT_EQ(list_->head.next, &list_->tail);
  EXPECT_EQ(list_->head.previous, &list_->head);
  EXPECT_EQ(list_->tail.next, &list_->tail);
  EXPECT_EQ(list_->tail.previous, &list_->head);
  EXPECT_EQ(list_->lock->count, 0U);
}

TEST_F(Sll2, AnEmptyListGivesNullAtBothEnds) {
  EXPECT_EQ(tiSLL2_IsEmpty(list_), 1);
  EXPECT_EQ(tiSLL2_XRemoveHead(list_), nullptr);
  EXPECT_EQ(tiSLL2_XRemoveTail(list_), nullptr);
  EXPECT_EQ(tiSLL2_IsEmpty(list_), 1);
  EXPECT_EQ(list_->lock->count, 0U);
}

TEST_F(Sll2, ElementsInsertedAtTheTailComeOutInOrderFromTheHead) {
  InsertAll();
  EXPECT_EQ(Names(), "ABC");
  EXPECT_EQ(tiSLL2_IsEmpty(list_), 0);
  EXPECT_EQ(tiSLL2_XRemoveHead(list_), &a_.links);
  EXPECT_EQ(tiSLL2_XRemoveHead(list_), &b_.links);
  EXPECT_EQ(tiSLL2_XRemoveHead(list_), &c_.links);
  EXPECT_EQ(tiSLL2_XRemoveHead(list_), nullptr);
}

TEST_F(Sll2, ElementsInsertedAtTheTailComeOutTurnedFromTheTail) {
  InsertAll();
  EXPECT_EQ(tiSLL2_XRemoveTail(list_), &c_.links);
  EXPECT_EQ(tiSLL2_XRemoveTail(list_), &b_.links);
  EXPECT_EQ(tiSLL2_XRemoveTail(list_), &a_.links);
  EXPECT_EQ(tiSLL2_XRemoveTail(list_), nullptr);
}

TEST_F(Sll2, ElementsInsertedAtTheHeadStandInTurnedOrder) {
  for (Element* element : {&a_, &b_, &c_}) tiSLL2_XInsertHead(list_, &element->links);
  EXPECT_EQ(Names(), "CBA");
  EXPECT_EQ(c_.links.previous, &list_->head);
  EXPECT_EQ(a_.links.next, &list_->tail);
}

TEST_F(Sll2, ARemovedElementKeepsItsLinks) {
  InsertAll();
  EXPECT_EQ(tiSLL2_XRemoveHead(list_), &a_.links);
  EXPECT_EQ(a_.links.next, &b_.links);
  EXPECT_EQ(a_.links.previous, &list_->head);
}

TEST_F(Sll2, AWalkMayTakeElementsOut) {
  InsertAll();
  EXPECT_EQ(tiSLL2_XGetHead(list_, 1, 1), &a_.links);
  tiLL2_XRemove(&b_.links);
  EXPECT_EQ(tiSLL2_XRemoveTail(list_), &c_.links);
  tiSLL2_LockRelease(list_);
  EXPECT_EQ(Names(), "A");
}

TEST_F(Sll2, InitAndUninitServeARecordOfTheCallers) {
  tiSLL2_t list{};
  EXPECT_EQ(tiSLL2_Init(&list), 0U);
  tiSLL2_XInsertTail(&list, &a_.links);
  tiSLL2_XInsertTail(&list, &b_.links);
  tiSLL2_Uninit(&list);
  EXPECT_EQ(list.head.next, &list.tail) << "every element has been taken out";
  EXPECT_EQ(b_.links.previous, &list.head) << "one after the other, from the head";
  EXPECT_EQ(list.lock, nullptr);
}

TEST_F(Sll2, AListWhoseLockIsGoneTakesAndGivesNothing) {
  tiSLL2_t list{};
  ASSERT_EQ(tiSLL2_Init(&list), 0U);
  tiSLL2_Uninit(&list);
  tiSLL2_XInsertHead(&list, &a_.links);
  tiSLL2_XInsertTail(&list, &a_.links);
  EXPECT_EQ(list.head.next, &list.tail);
  EXPECT_EQ(tiSLL2_XRemoveHead(&list), nullptr);
  EXPECT_EQ(tiSLL2_XRemoveTail(&list), nullptr);
  EXPECT_EQ(tiSLL2_XGetHead(&list, 1, 1), nullptr);
  EXPECT_EQ(tiSLL2_IsEmpty(&list), 1);
  tiSLL2_Uninit(&list);
}

TEST_F(Sll2, NullRecordsAndElementsGiveTheNeutralResults) {
  nErrno = 0;
  EXPECT_EQ(tiSLL2_Create(nullptr), 0x80000008U);
  EXPECT_EQ(tiSLL2_Init(nullptr), 0x80000008U);
  tiSLL2_Uninit(nullptr);
  tiSLL2_Release(nullptr);
  tiSLL2_XInsertHead(nullptr, &a_.links);
  tiSLL2_XInsertTail(nullptr, &a_.links);
  tiSLL2_XInsertHead(list_, nullptr);
  tiSLL2_XInsertTail(list_, nullptr);
  EXPECT_EQ(tiSLL2_XRemoveHead(nullptr), nullptr);
  EXPECT_EQ(tiSLL2_XRemoveTail(nullptr), nullptr);
  EXPECT_EQ(tiSLL2_XGetHead(nullptr, 1, 1), nullptr);
  tiSLL2_LockRelease(nullptr);
  EXPECT_EQ(tiSLL2_IsEmpty(nullptr), 1);
  EXPECT_EQ(nErrno, 0);
  EXPECT_EQ(Names(), "");
}

TEST_F(Sll2, GetHeadOfAnEmptyListGivesTheTailSentinelWithTheLockHeld) {
  EXPECT_EQ(tiSLL2_XGetHead(list_, 1, 0), &list_->tail);
  EXPECT_EQ(tiLL2_XIsEnd(&list_->tail), 1);
  EXPECT_EQ(list_->lock->owner, tiSO_GetThread());
  tiSLL2_LockRelease(list_);
  EXPECT_EQ(tiSLL2_XGetHead(list_, 0, 0), &list_->tail);
  EXPECT_EQ(list_->lock->owner, TISO_NO_THREAD);
  EXPECT_EQ(list_->lock->count, 1U);
  tiSLL2_LockRelease(list_);
}

TEST_F(Sll2, ARefusedLockGivesNull) {
  InsertAll();
  EXPECT_EQ(tiSLL2_XGetHead(list_, 1, 1), &a_.links);
  for (BOOL exclusive : {0, 1}) {
    tiLL2_element_t* head = &a_.links;
    other_.Call([&] {
      head = tiSLL2_XGetHead(list_, exclusive, 0);
      return 1;
    });
    EXPECT_EQ(head, nullptr);
  }
  EXPECT_EQ(list_->lock->count, 1U);
  tiSLL2_LockRelease(list_);
}

TEST_F(Sll2, ChangesOfOthersWaitForTheEndOfAWalk) {
  EXPECT_EQ(tiSLL2_XGetHead(list_, 0, 1), &list_->tail);
  StartAndQueue(other_, list_->lock, [this] {
    tiSLL2_XInsertTail(list_, &a_.links);
    return 1;
  });
  EXPECT_EQ(list_->head.next, &list_->tail);
  tiSLL2_LockRelease(list_);
  other_.Finish();
  EXPECT_EQ(Names(), "A");
}

TEST_F(Sll2, EveryChangeAsksForTheLockExclusively) {
  const std::function<BOOL()> changes[] = {
      [this] { return tiSLL2_XInsertHead(list_, &a_.links), 1; },
      [this] { return tiSLL2_XInsertTail(list_, &b_.links), 1; },
      [this] { return tiSLL2_XRemoveHead(list_) == &a_.links ? 1 : 0; },
      [this] { return tiSLL2_XRemoveTail(list_) == &b_.links ? 1 : 0; },
  };
  for (const std::function<BOOL()>& change : changes) {
    tiSLL2_XGetHead(list_, 0, 1);
    StartAndQueue(other_, list_->lock, change);
    EXPECT_EQ(ViewOf(list_->lock).exclusive, (std::vector<uintptr_t>{other_.identity()}));
    tiSLL2_LockRelease(list_);
    EXPECT_EQ(other_.Finish(), 1);
    EXPECT_EQ(list_->lock->count, 0U);
  }
}

TEST_F(Sll2, SharedWalksAndLooksStandBehindQueuedChanges) {
  InsertAll();
  Worker third;
  EXPECT_EQ(tiSLL2_XGetHead(list_, 0, 1), &a_.links);
  StartAndQueue(other_, list_->lock, [this] { return tiSLL2_XRemoveHead(list_) != nullptr; });
  EXPECT_EQ(tiSLL2_XGetHead(list_, 0, 0), nullptr);
  StartAndQueue(third, list_->lock, [this] { return tiSLL2_IsEmpty(list_); });
  tiSLL2_LockRelease(list_);
  EXPECT_EQ(other_.Finish(), 1);
  EXPECT_EQ(third.Finish(), 0);
  EXPECT_EQ(list_->lock->count, 0U);
}

TEST_F(Sll2, IsEmptyWaitsForAnExclusiveWalk) {
  EXPECT_EQ(tiSLL2_XGetHead(list_, 1, 1), &list_->tail);
  StartAndQueue(other_, list_->lock, [this] { return tiSLL2_IsEmpty(list_); });
  tiSLL2_XInsertHead(list_, &a_.links);
  tiSLL2_LockRelease(list_);
  EXPECT_EQ(other_.Finish(), 0);
}

TEST_F(Sll2, AThreadThatIsNotAttachedFindsAnOwnedListEmptyAndUnchanged) {
  InsertAll();
  Worker stranger(Worker::Kind::kNotAttached);
  EXPECT_EQ(tiSLL2_XGetHead(list_, 1, 1), &a_.links);
  Element d{{nullptr, nullptr}, 'D'};
  stranger.Call([&] {
    tiSLL2_XInsertHead(list_, &d.links);
    tiSLL2_XInsertTail(list_, &d.links);
    EXPECT_EQ(tiSLL2_XRemoveHead(list_), nullptr);
    EXPECT_EQ(tiSLL2_XRemoveTail(list_), nullptr);
    return 1;
  });
  EXPECT_EQ(stranger.Call([this] { return tiSLL2_IsEmpty(list_); }), 1);
  EXPECT_EQ(list_->lock->count, 1U) << "nobody else's grant was given back";
  tiSLL2_LockRelease(list_);
  EXPECT_EQ(Names(), "ABC");
}

}  // namespace
