// The shared/exclusive lock, the identities of threads, and the lists.
#include <cerrno>
#include <cstdlib>

#include "tests/reliability/attached_lock.h"
#include "tests/reliability/sweep.h"
#include "zebcomn/lists/Linklist.h"
#include "zebcomn/lists/ll.h"
#include "zebcomn/lists/ll2.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/sll.h"
#include "zebcomn/lists/sll2.h"
#include "zebcomn/lists/spin_lock.h"
#include "zebcomn/lists/thread_attach.h"

namespace {

using zebcomn_test::Attached;
using zebcomn_test::AttachedLock;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::Trial;

ZEBCOMN_USE(AttachFailures, Process, "tiSO_ProcessAttach", "tiSO_ProcessDetach") {
  DWORD slot = 0;
  BOOL freed = FALSE;
  trial.Call([&] { slot = tiSO_ProcessAttach(); });
  const bool refused = trial.FailedIn("malloc") || trial.FailedIn("pthread_key_create");
  EXPECT_EQ(slot == TIV_INVALID_DWORD, refused);
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? ENOMEM : kErrorLeftAlone);
  trial.Call([&] { freed = tiSO_ProcessDetach(); });
  EXPECT_EQ(freed, refused || trial.FailedIn("pthread_key_delete") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), refused ? EINVAL : kErrorLeftAlone);
  EXPECT_EQ(tiSO_tls_index, TIV_INVALID_DWORD);
}

ZEBCOMN_USE(AttachFailures, Attach, "tiSO_ThreadAttach") {
  EXPECT_NE(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
  uintptr_t attached = 0;
  trial.Call([&] { attached = tiSO_ThreadAttach(); });
  const bool refused = trial.FailedIn("malloc") || trial.FailedIn("pthread_cond_init") ||
                       trial.FailedIn("pthread_mutex_init") ||
                       trial.FailedIn("pthread_setspecific");
  EXPECT_EQ(attached, refused ? 0U : 1U);
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? ENOMEM : kErrorLeftAlone);
  EXPECT_EQ(tiSO_GetThread() == TISO_NO_THREAD, refused);
  EXPECT_EQ(tiSO_ThreadDetach(), TRUE);
  EXPECT_EQ(tiSO_ProcessDetach(), TRUE);
}

ZEBCOMN_USE(AttachFailures, Detach, "tiSO_ThreadDetach") {
  EXPECT_NE(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
  const auto event = reinterpret_cast<HANDLE>(tiSO_GetThread());
  BOOL detached = FALSE;
  trial.Call([&] { detached = tiSO_ThreadDetach(); });
  EXPECT_EQ(detached, trial.FailedIn("pthread_setspecific") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  // Only the record's own lock can keep the close from freeing it.
  if (trial.FailedIn("pthread_mutex_lock", 2) || trial.FailedIn("pthread_mutex_unlock", 1)) {
    std::free(event);
  }
  EXPECT_EQ(tiSO_ThreadAttachX(), TRUE);
  EXPECT_EQ(tiSO_ProcessDetach(), TRUE);
}

ZEBCOMN_USE(AttachFailures, MarkNotAttached, "tiSO_ThreadAttachX") {
  EXPECT_NE(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
  BOOL marked = FALSE;
  trial.Call([&] { marked = tiSO_ThreadAttachX(); });
  EXPECT_EQ(marked, trial.FailedIn("pthread_setspecific") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tiSO_ProcessDetach(), TRUE);
}

ZEBCOMN_USE_WITHOUT_CALLS(AttachFailures, Identity, "tiSO_GetThread", "tiSO_DbgGetThread",
                          "tiSO_ThreadDetachX") {
  const Attached attached;
  trial.Call([] {
    EXPECT_EQ(tiSO_GetThread(), tiSO_DbgGetThread());
    tiSO_ThreadDetachX();
  });
}

ZEBCOMN_USE(SpinFailures, GetAndRelease, "tiSL_Get", "tiSL_Release") {
  LONG word = 0;
  trial.Call([&] { tiSL_Get(&word); });
  EXPECT_EQ(word, 1);
  trial.Call([&] { tiSL_Release(&word); });
  EXPECT_EQ(word, 0);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(SeLockFailures, Creation, "tiSO_SELockCreate", "tiSO_Release") {
  auto* lock = reinterpret_cast<tiSO_SELock_t*>(&trial);  // It is set to null first.
  uint32_t status = 77;
  trial.Call([&] { status = tiSO_SELockCreate(&lock); });
  EXPECT_EQ(status, trial.Failed() ? ZEBCOMN_STATUS_FAILURE : ZEBCOMN_STATUS_OK);
  EXPECT_EQ(lock == nullptr, trial.Failed());
  trial.Call([&] { tiSO_Release(lock); });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// A failing call underneath never changes what the lock does.
ZEBCOMN_USE(SeLockFailures, Grants, "tiSO_SELock", "tiSO_SELockExclusive",
            "tiSO_SELockSharedStarveExclusive", "tiSO_SELockSharedWaitForExclusive",
            "tiSO_SELockExclusiveToShared", "tiSO_SELockRelease") {
  const AttachedLock lock;
  trial.Call([&] {
    EXPECT_EQ(tiSO_SELock(lock.get(), TRUE, TRUE), TRUE);
    EXPECT_EQ(tiSO_SELockExclusive(lock.get(), TRUE), TRUE);
    EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock.get(), TRUE), TRUE);
    EXPECT_EQ(tiSO_SELockSharedWaitForExclusive(lock.get(), TRUE), TRUE);
    tiSO_SELockExclusiveToShared(lock.get());
    EXPECT_EQ(tiSO_SELockExclusive(lock.get(), FALSE), FALSE) << "held shared";
    for (int i = 0; i < 4; ++i) tiSO_SELockRelease(lock.get());
  });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

uint32_t Accept(uintptr_t /*first*/, uint32_t /*event*/, uintptr_t /*second*/,
                uint32_t /*reserved*/) {
  return 0;
}

// A client that cannot be registered would wait for ever.
ZEBCOMN_ENDING_USE(SeLockFailures, Registration, "malloc", "tiSO_SELockExclusiveNotify") {
  const AttachedLock lock;
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock.get(), FALSE), TRUE);
  BOOL granted = TRUE;
  trial.Call([&] { granted = tiSO_SELockExclusiveNotify(lock.get(), Accept, 1, 2); });
  EXPECT_EQ(granted, FALSE);
  EXPECT_NE(lock.get()->notify_list.next, nullptr);
  tiSO_SELockRelease(lock.get());
  EXPECT_EQ(lock.get()->notify_list.next, nullptr) << "told that the lock is free";
}

ZEBCOMN_USE(SeLockFailures, NotificationOfAFreeLock, "tiSO_SELockExclusiveNotify") {
  const AttachedLock lock;
  BOOL granted = FALSE;
  trial.Call([&] { granted = tiSO_SELockExclusiveNotify(lock.get(), Accept, 1, 2); });
  EXPECT_EQ(granted, TRUE);
  EXPECT_EQ(lock.get()->owner, tiSO_GetThread());
  EXPECT_EQ(lock.get()->notify_list.next, nullptr);
  tiSO_SELockRelease(lock.get());
}

ZEBCOMN_USE(SeLockFailures, Withdrawal, "tiSO_SELockExclusiveUnnotify") {
  const AttachedLock lock;
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock.get(), FALSE), TRUE);
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock.get(), Accept, 1, 2), FALSE);
  void* record = lock.get()->notify_list.next;
  BOOL withdrawn = FALSE;
  trial.Call([&] { withdrawn = tiSO_SELockExclusiveUnnotify(lock.get(), Accept, 1, 2); });
  EXPECT_EQ(withdrawn, TRUE);
  std::free(record);  // It is the caller's now.
  tiSO_SELockRelease(lock.get());
}

uint32_t Decline(uintptr_t /*first*/, uint32_t /*event*/, uintptr_t /*second*/,
                 uint32_t /*reserved*/) {
  return 1;
}

// A client that declines stays registered: at a withdrawal, and when the lock is free.
ZEBCOMN_USE(SeLockFailures, ClientThatDeclines, "tiSO_SELockExclusiveUnnotify",
            "tiSO_SELockRelease", "tiSO_Release") {
  const Attached attached;
  tiSO_SELock_t* lock = nullptr;
  EXPECT_EQ(tiSO_SELockCreate(&lock), ZEBCOMN_STATUS_OK);
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock, FALSE), TRUE);
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock, Decline, 1, 2), FALSE);
  const void* const record = lock->notify_list.next;
  BOOL withdrawn = 77;
  trial.Call([&] { withdrawn = tiSO_SELockExclusiveUnnotify(lock, Decline, 1, 2); });
  trial.Call([&] { tiSO_SELockRelease(lock); });
  EXPECT_EQ(withdrawn, FALSE);
  EXPECT_EQ(lock->count, 0U);
  EXPECT_EQ(lock->notify_list.next, record);
  trial.Call([&] { tiSO_Release(lock); });
}

uint32_t AcceptAndCount(uintptr_t count, uint32_t /*event*/, uintptr_t /*second*/,
                        uint32_t /*reserved*/) {
  ++*reinterpret_cast<int*>(count);
  return 0;
}

ZEBCOMN_USE(SeLockFailures, ReleaseThatTellsAClient, "tiSO_SELockRelease") {
  const AttachedLock lock;
  int told = 0;
  const auto count = reinterpret_cast<uintptr_t>(&told);
  EXPECT_EQ(tiSO_SELockSharedStarveExclusive(lock.get(), FALSE), TRUE);
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock.get(), AcceptAndCount, count, 0), FALSE);
  trial.Call([&] { tiSO_SELockRelease(lock.get()); });
  EXPECT_EQ(told, 1);
  EXPECT_EQ(lock.get()->notify_list.next, nullptr);
}

// Success with a null list is what callers test for.
template <typename List, typename Create, typename Release>
void CreateAndRelease(Trial& trial, Create create, Release release) {
  const Attached attached;
  auto* list = reinterpret_cast<List*>(&trial);
  uint32_t status = 77;
  trial.Call([&] { status = create(&list); });
  EXPECT_EQ(list == nullptr, trial.Failed());
  const bool told = trial.FailedIn("malloc", 1);
  EXPECT_EQ(status, told ? ZEBCOMN_STATUS_FAILURE : ZEBCOMN_STATUS_OK);
  trial.Call([&] { release(list); });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ListFailures, CreateSll, "tiSLL_Create", "tiSLL_Release") {
  CreateAndRelease<tiSLL_t>(trial, tiSLL_Create, tiSLL_Release);
}

ZEBCOMN_USE(ListFailures, CreateSll2, "tiSLL2_Create", "tiSLL2_Release") {
  CreateAndRelease<tiSLL2_t>(trial, tiSLL2_Create, tiSLL2_Release);
}

template <typename List, typename Init, typename Uninit>
void InitAndUninit(Trial& trial, Init init, Uninit uninit) {
  const Attached attached;
  List list = {};
  uint32_t status = 77;
  trial.Call([&] { status = init(&list); });
  EXPECT_EQ(status, trial.FailedIn("malloc") ? ZEBCOMN_STATUS_FAILURE : ZEBCOMN_STATUS_OK);
  trial.Call([&] { uninit(&list); });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ListFailures, InitSll, "tiSLL_Init", "tiSLL_Uninit") {
  InitAndUninit<tiSLL_t>(trial, tiSLL_Init, tiSLL_Uninit);
}

ZEBCOMN_USE(ListFailures, InitSll2, "tiSLL2_Init", "tiSLL2_Uninit") {
  InitAndUninit<tiSLL2_t>(trial, tiSLL2_Init, tiSLL2_Uninit);
}

ZEBCOMN_USE(ListFailures, UseSll, "tiSLL_XInsertHead", "tiSLL_XRemoveHead", "tiSLL_XGetHead",
            "tiSLL_LockRelease", "tiSLL_IsEmpty") {
  const Attached attached;
  tiSLL_t list = {};
  EXPECT_EQ(tiSLL_Init(&list), ZEBCOMN_STATUS_OK);
  tiLL_element_t element = {nullptr};
  trial.Call([&] {
    tiSLL_XInsertHead(&list, &element);
    EXPECT_EQ(tiSLL_IsEmpty(&list), FALSE);
    EXPECT_EQ(tiSLL_XGetHead(&list, TRUE, TRUE), &element);
    tiSLL_LockRelease(&list);
    EXPECT_EQ(tiSLL_XRemoveHead(&list), &element);
  });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  tiSLL_Uninit(&list);
}

ZEBCOMN_USE(ListFailures, UseSll2, "tiSLL2_XInsertHead", "tiSLL2_XInsertTail", "tiSLL2_XRemoveHead",
            "tiSLL2_XRemoveTail", "tiSLL2_XGetHead", "tiSLL2_LockRelease", "tiSLL2_IsEmpty") {
  const Attached attached;
  tiSLL2_t list = {};
  EXPECT_EQ(tiSLL2_Init(&list), ZEBCOMN_STATUS_OK);
  tiLL2_element_t first = {nullptr, nullptr};
  tiLL2_element_t last = {nullptr, nullptr};
  trial.Call([&] {
    tiSLL2_XInsertHead(&list, &first);
    tiSLL2_XInsertTail(&list, &last);
    EXPECT_EQ(tiSLL2_IsEmpty(&list), FALSE);
    EXPECT_EQ(tiSLL2_XGetHead(&list, TRUE, TRUE), &first);
    tiSLL2_LockRelease(&list);
    EXPECT_EQ(tiSLL2_XRemoveTail(&list), &last);
    EXPECT_EQ(tiSLL2_XRemoveHead(&list), &first);
  });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  tiSLL2_Uninit(&list);
}

// Held shared by the thread itself, a list refuses an exclusive walk that does not wait.
ZEBCOMN_USE(ListFailures, RefusedWalks, "tiSLL_XGetHead", "tiSLL2_XGetHead") {
  const Attached attached;
  tiSLL_t list = {};
  tiSLL2_t list2 = {};
  EXPECT_EQ(tiSLL_Init(&list), ZEBCOMN_STATUS_OK);
  EXPECT_EQ(tiSLL2_Init(&list2), ZEBCOMN_STATUS_OK);
  EXPECT_EQ(tiSLL_XGetHead(&list, FALSE, FALSE), nullptr);
  EXPECT_EQ(tiSLL2_XGetHead(&list2, FALSE, FALSE), &list2.tail);
  trial.Call([&] {
    EXPECT_EQ(tiSLL_XGetHead(&list, TRUE, FALSE), TISLL_LOCK_REFUSED);
    EXPECT_EQ(tiSLL2_XGetHead(&list2, TRUE, FALSE), nullptr);
  });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  tiSLL_LockRelease(&list);
  tiSLL2_LockRelease(&list2);
  tiSLL_Uninit(&list);
  tiSLL2_Uninit(&list2);
}

// Its elements are the caller's.
ZEBCOMN_USE(ListFailures, UninitOfAFilledSll2, "tiSLL2_Uninit") {
  const Attached attached;
  tiSLL2_t list = {};
  EXPECT_EQ(tiSLL2_Init(&list), ZEBCOMN_STATUS_OK);
  tiLL2_element_t elements[2] = {};
  for (tiLL2_element_t& element : elements) tiSLL2_XInsertTail(&list, &element);
  trial.Call([&] { tiSLL2_Uninit(&list); });
  EXPECT_EQ(list.head.next, &list.tail);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(ListFailures, IntrusiveLists, "tiLL_Init", "tiLL_IsEmpty",
                          "tiLL_XInsertHead", "tiLL_XRemoveHead", "tiLL_XGetStart", "tiLL_XGetNext",
                          "tiLL_XIsEnd", "tiLL_XRemove", "tiLL2_XGetNext", "tiLL2_XGetPrev",
                          "tiLL2_XIsEnd", "tiLL2_XRemove") {
  tiLL_head_t head = {nullptr};
  tiLL_element_t element = {nullptr};
  tiLL2_element_t lone = {nullptr, nullptr};
  trial.Call([&] {
    tiLL_Init(&head);
    tiLL_XInsertHead(&head, &element);
    EXPECT_EQ(tiLL_IsEmpty(&head), FALSE);
    EXPECT_EQ(tiLL_XGetNext(tiLL_XGetStart(&head)), &element);
    EXPECT_EQ(tiLL_XIsEnd(&element), FALSE);
    tiLL_XRemove(&head, &element);
    EXPECT_EQ(tiLL_XRemoveHead(&head), nullptr);
    EXPECT_EQ(tiLL2_XGetNext(&lone), nullptr);
    EXPECT_EQ(tiLL2_XGetPrev(&lone), nullptr);
    EXPECT_EQ(tiLL2_XIsEnd(&lone), FALSE);
    tiLL2_XRemove(&lone);
  });
}

ZEBCOMN_USE(CountedListFailures, InitAndEnd, "LinkedList_Init", "LinkedList_End") {
  void* const nothing = &trial;
  void* list = nothing;
  BOOL made = FALSE;
  trial.Call([&] { made = LinkedList_Init(&list); });
  EXPECT_EQ(made, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(list == nothing, trial.Failed()) << "left alone without memory";
  if (made == FALSE) return;
  trial.Call([&] { LinkedList_End(&list); });
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(CountedListFailures, Elements, "LinkedList_AddHead", "LinkedList_AddTail",
                          "LinkedList_GetCount", "LinkedList_PeekAt", "LinkedList_RemoveAt",
                          "LinkedList_RemoveTail") {
  void* list = nullptr;
  EXPECT_EQ(LinkedList_Init(&list), TRUE);
  void* elements[3][2] = {};
  trial.Call([&] {
    EXPECT_EQ(LinkedList_AddHead(list, elements[0]), TRUE);
    EXPECT_EQ(LinkedList_AddTail(list, elements[1]), TRUE);
    EXPECT_EQ(LinkedList_AddTail(list, elements[2]), TRUE);
    EXPECT_EQ(LinkedList_GetCount(list), 3U);
    EXPECT_EQ(LinkedList_PeekAt(list, 1), elements[1]);
    EXPECT_EQ(LinkedList_RemoveAt(list, 0), elements[0]);
    EXPECT_EQ(LinkedList_RemoveTail(list), elements[2]);
  });
  LinkedList_End(&list);
}

}  // namespace
