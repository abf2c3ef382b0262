// What the session of docs/debugging.md looks at.
#include <sched.h>

#include <cstdio>

#include "zebcomn/lists/Linklist.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/sll.h"
#include "zebcomn/lists/sll2.h"
#include "zebcomn/lists/thread_attach.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/mutex.h"
#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/wait.h"

struct Task {
  tiLL_element_t link;
  int number;
};

struct Job {
  tiLL2_element_t link;
  int number;
};

struct Entry {
  void* previous;
  void* next;
  int number;
};

namespace {

DWORD WaitForLock(void* lock) {
  tiSO_ThreadAttach();
  tiSO_SELockExclusive(static_cast<tiSO_SELock_t*>(lock), TRUE);
  return 0;
}

DWORD Return(void*) {
  return 0;
}

// Looks at the queue with atomic loads: the other thread is about to enter it.
bool HasExclusiveWaiter(tiSO_SELock_t* lock) {
  return __atomic_load_n(&lock->exclusive_waiters.next, __ATOMIC_ACQUIRE) != nullptr;
}

// Where the session's breakpoint is.
extern "C" __attribute__((noinline)) void LookAt(HANDLE handle) {
  std::fflush(stdout);
  asm volatile("" : : "r"(handle));
}

}  // namespace

int main() {
  HANDLE event = tivCreateEvent(nullptr, TRUE, FALSE, nullptr);
  HANDLE ready = tivCreateEvent(nullptr, TRUE, TRUE, nullptr);
  HANDLE mutex = tivCreateMutex(nullptr, TRUE, nullptr);
  HANDLE file = tivCreateFileAW("/proc/self/stat", TIV_ACCESS_READ, 0, nullptr, TIV_OPEN_EXISTING,
                                TIV_FLAG_NORMAL, nullptr);
  HANDLE nothing = nullptr;
  HANDLE ended = tivCreateThread(nullptr, 0, Return, nullptr, 0, nullptr);
  tivWaitForSingleObject(ended, TIV_WAIT_INFINITE);

  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  tiSO_SELock_t* free_lock = nullptr;
  tiSO_SELockCreate(&free_lock);
  tiSO_SELock_t* lock = nullptr;
  tiSO_SELockCreate(&lock);
  tiSO_SELockExclusive(lock, TRUE);
  HANDLE worker = tivCreateThread(nullptr, 0, WaitForLock, lock, 0, nullptr);
  while (!HasExclusiveWaiter(lock)) sched_yield();

  Task tasks[2] = {{{nullptr}, 7}, {{nullptr}, 8}};
  tiSLL_t* queue = nullptr;
  tiSLL_Create(&queue);
  for (Task& task : tasks) tiSLL_XInsertHead(queue, &task.link);
  Job jobs[2] = {{{nullptr, nullptr}, 1}, {{nullptr, nullptr}, 2}};
  tiSLL2_t* backlog = nullptr;
  tiSLL2_Create(&backlog);
  for (Job& job : jobs) tiSLL2_XInsertTail(backlog, &job.link);
  Entry entry = {nullptr, nullptr, 42};
  void* counted = nullptr;
  LinkedList_Init(&counted);
  LinkedList_AddTail(counted, &entry);

  LookAt(event);
  // The worker waits on; it goes with the process.
  return ready != nothing && mutex != file && worker != free_lock ? 0 : 1;
}
