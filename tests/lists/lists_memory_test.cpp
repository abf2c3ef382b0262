// What each call does when memory, or a thread call under it, is exhausted.
#include <gtest/gtest.h>

#include <cerrno>

#include "tests/lists/attached.h"
#include "tests/portable/interposed_calls.h"
#include "zebcomn/lists/Linklist.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/sll.h"
#include "zebcomn/lists/sll2.h"
#include "zebcomn/lists/thread_attach.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/portable/tls.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::Call;
using zebcomn_test::CallWatch;
using zebcomn_test::OwnLock;

constexpr uint32_t kFailure = 0x80000008U;

template <typename Object>
Object* Junk() {
  return reinterpret_cast<Object*>(&errno);
}

/// What a creating call answered and stored when its `nth` allocation failed.
template <typename Object>
struct Creation {
  Creation(uint32_t (*create)(Object**), int nth) {
    const CallWatch watch(Call::kMalloc, nth, ENOMEM);
    answer = create(&object);
    failed = watch.Failed();
    unfreed = watch.UnfreedBlocks();
  }

  uint32_t answer = 0;
  Object* object = Junk<Object>();
  bool failed = false;
  int unfreed = -1;
};

template <typename Object>
void ExpectNothing(const Creation<Object>& creation, uint32_t answer) {
  EXPECT_TRUE(creation.failed);
  EXPECT_EQ(creation.answer, answer);
  EXPECT_EQ(creation.object, nullptr);
  EXPECT_EQ(creation.unfreed, 0);
}

using ListsFaults = AttachedTest;

class ListsMemory : public ListsFaults {
 protected:
  void SetUp() override {
    if (!zebcomn_test::kAllocationIsInterposed) GTEST_SKIP() << "the sanitizer owns malloc()";
  }
};

TEST_F(ListsMemory, ALockThatCannotBeHadGivesFailureAndNull) {
  ExpectNothing(Creation<tiSO_SELock_t>(tiSO_SELockCreate, 1), kFailure);
}

TEST_F(ListsMemory, AListRecordThatCannotBeHadGivesFailureAndANullList) {
  ExpectNothing(Creation<tiSLL_t>(tiSLL_Create, 1), kFailure);
  ExpectNothing(Creation<tiSLL2_t>(tiSLL2_Create, 1), kFailure);
}

TEST_F(ListsMemory, AListsLockThatCannotBeHadGivesSuccessAndANullList) {
  ExpectNothing(Creation<tiSLL_t>(tiSLL_Create, 2), 0);
  ExpectNothing(Creation<tiSLL2_t>(tiSLL2_Create, 2), 0);
}

TEST_F(ListsMemory, InitWithoutMemoryForTheLockFailsAndTheListStaysEmpty) {
  tiSLL_t list{};
  tiSLL2_t list2{};
  {
    const CallWatch watch(Call::kMalloc, 1, ENOMEM);
    EXPECT_EQ(tiSLL_Init(&list), kFailure);
  }
  {
    const CallWatch watch(Call::kMalloc, 1, ENOMEM);
    EXPECT_EQ(tiSLL2_Init(&list2), kFailure);
  }
  EXPECT_EQ(list.lock, nullptr);
  EXPECT_EQ(list2.lock, nullptr);
  EXPECT_EQ(tiSLL_IsEmpty(&list), 1);
  EXPECT_EQ(tiSLL2_IsEmpty(&list2), 1);
}

TEST_F(ListsMemory, ACountedListThatCannotBeHadLeavesTheHandleAlone) {
  void* list = Junk<void>();
  const CallWatch watch(Call::kMalloc, 1, ENOMEM);
  EXPECT_EQ(LinkedList_Init(&list), 0);
  EXPECT_EQ(list, Junk<void>());
}

uint32_t Accept(uintptr_t, uint32_t, uintptr_t, uint32_t) {
  return 0;
}

TEST_F(ListsMemory, AFreedLockLeavesNothingBehind) {
  const CallWatch watch;
  tiSO_SELock_t* lock = nullptr;
  EXPECT_EQ(tiSO_SELockCreate(&lock), 0U);
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock, 1), 1);
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock, Accept, 1, 2), 0);
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock, Accept, 1, 3), 0);
  EXPECT_EQ(watch.UnfreedBlocks(), 3);
  tiSO_Release(lock);
  EXPECT_EQ(watch.UnfreedBlocks(), 0);
}

TEST_F(ListsMemory, ARegistrationThatCannotBeHadEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "fast");
  OwnLock lock;
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock, 1), 1);
  EXPECT_EXIT(
      {
        const CallWatch watch(Call::kMalloc, 1, ENOMEM);
        tiSO_SELockExclusiveNotify(lock, Accept, 1, 2);
      },
      testing::KilledBySignal(SIGABRT), "");
  EXPECT_EQ(lock->notify_list.next, nullptr);
  tiSO_SELockRelease(lock);
}

TEST_F(ListsMemory, ADetachedThreadLeavesNoEventBehind) {
  tiSO_ThreadDetach();
  const CallWatch watch;
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
  EXPECT_EQ(watch.UnfreedBlocks(), 1);
  EXPECT_EQ(tiSO_ThreadDetach(), 1);
  EXPECT_EQ(watch.UnfreedBlocks(), 0);
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
}

TEST_F(ListsMemory, AnEventThatCannotBeHadLeavesTheThreadNotAttached) {
  tiSO_ThreadDetach();
  nErrno = 0;
  {
    const CallWatch watch(Call::kMalloc, 1, ENOMEM);
    EXPECT_EQ(tiSO_ThreadAttach(), 0U);
    EXPECT_TRUE(watch.Failed());
  }
  EXPECT_EQ(nErrno, ENOMEM);
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
}

TEST_F(ListsFaults, AnIdentityThatCannotBeStoredLeavesNoEventBehind) {
  tiSO_ThreadDetach();
  nErrno = 77;
  {
    const CallWatch watch(Call::kSetspecific, 1, ENOMEM);
    EXPECT_EQ(tiSO_ThreadAttach(), 0U);
    EXPECT_TRUE(watch.Failed());
    EXPECT_EQ(watch.UnfreedBlocks(), 0);
  }
  EXPECT_EQ(nErrno, 77);
  EXPECT_EQ(tiSO_GetThread(), TISO_NO_THREAD);
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
}

TEST(ListsFaultsOfTheSlot, KeyThatCannotBeDeletedFailsTheDetachOfTheProcess) {
  const DWORD slot = tiSO_ProcessAttach();
  const pthread_key_t key = *pTlsKeyTable[slot];
  nErrno = 77;
  {
    const CallWatch watch(Call::kKeyDelete, 1, EINVAL);
    EXPECT_EQ(tiSO_ProcessDetach(), 0);
    EXPECT_TRUE(watch.Failed());
  }
  EXPECT_EQ(nErrno, 77);
  EXPECT_EQ(tiSO_tls_index, TIV_INVALID_DWORD);
  EXPECT_EQ(pTlsKeyTable[slot], nullptr) << "the slot is free all the same";
  EXPECT_EQ(pthread_key_delete(key), 0);
}

}  // namespace
