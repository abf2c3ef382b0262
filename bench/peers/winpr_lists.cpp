// WinPR: its interlocked list, the one kind of list without a pool behind it.
#include <winpr/collections.h>
#include <winpr/crt.h>
#include <winpr/interlocked.h>

#include "bench/support/lock_operations.h"

namespace {

class InterlockedList {
 public:
  InterlockedList()
      : head_(static_cast<WINPR_PSLIST_HEADER>(_aligned_malloc(sizeof(*head_), kAlignment))),
        entry_(static_cast<WINPR_PSLIST_ENTRY>(_aligned_malloc(sizeof(*entry_), kAlignment))) {
    InitializeSListHead(head_);
  }
  ~InterlockedList() {
    _aligned_free(entry_);
    _aligned_free(head_);
  }
  InterlockedList(const InterlockedList&) = delete;
  InterlockedList& operator=(const InterlockedList&) = delete;
  void Push() { InterlockedPushEntrySList(head_, entry_); }
  void* Pop() { return InterlockedPopEntrySList(head_); }

 private:
  static constexpr size_t kAlignment = 16;
  WINPR_PSLIST_HEADER head_;
  WINPR_PSLIST_ENTRY entry_;
};

class Queue {
 public:
  Queue() : queue_(Queue_New(TRUE, -1, -1)) {}
  ~Queue() { Queue_Free(queue_); }
  Queue(const Queue&) = delete;
  Queue& operator=(const Queue&) = delete;
  void Push() { Queue_Enqueue(queue_, this); }
  void* Pop() { return Queue_Dequeue(queue_); }

 private:
  wQueue* queue_;
};

const auto* const g_list =
    bench::Register("list_push_pop", "winpr", bench::PushPop<InterlockedList>);
const auto* const g_queue = bench::Register("locked_list_push_pop", "winpr", bench::PushPop<Queue>);

}  // namespace
