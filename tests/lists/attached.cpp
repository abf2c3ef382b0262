#include "tests/lists/attached.h"

#include <sched.h>

#include <utility>

namespace zebcomn_test {
namespace {

/// What a queued request begins with.
struct QueuedRequest {
  tiLL_element_t link;
  uintptr_t thread;
};

std::vector<uintptr_t> Identities(const tiLL_head_t& queue) {
  std::vector<uintptr_t> identities;
  for (tiLL_element_t* link = queue.next; link != nullptr; link = link->next) {
    identities.push_back(reinterpret_cast<QueuedRequest*>(link)->thread);
  }
  return identities;
}

std::vector<tiSO_NotifyRecord_t*> Registrations(const tiLL_head_t& list) {
  std::vector<tiSO_NotifyRecord_t*> records;
  for (tiLL_element_t* link = list.next; link != nullptr; link = link->next) {
    records.push_back(reinterpret_cast<tiSO_NotifyRecord_t*>(link));
  }
  return records;
}

}  // namespace

AttachedTest::AttachedTest() {
  EXPECT_NE(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
  EXPECT_EQ(tiSO_ThreadAttach(), 1U);
}

AttachedTest::~AttachedTest() {
  EXPECT_EQ(tiSO_ThreadDetach(), 1);
  EXPECT_EQ(tiSO_ProcessDetach(), 1);
}

Worker::Worker(Kind kind) {
  thread_ = std::thread([this, kind] { Run(kind); });
  Finish();
}

Worker::~Worker() {
  Finish();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void Worker::Run(Kind kind) {
  if (kind == Kind::kAttached) {
    EXPECT_EQ(tiSO_ThreadAttach(), 1U);
  }
  identity_ = tiSO_GetThread();
  SetDone(FALSE);
  std::unique_lock<std::mutex> lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return ending_ || call_ != nullptr; });
    if (ending_) break;
    const std::function<BOOL()> call = std::exchange(call_, nullptr);
    lock.unlock();
    SetDone(call());
    lock.lock();
  }
  if (kind == Kind::kAttached) tiSO_ThreadDetach();
}

void Worker::SetDone(BOOL result) {
  const std::lock_guard<std::mutex> lock(mutex_);
  result_ = result;
  done_ = true;
  changed_.notify_all();
}

void Worker::Start(std::function<BOOL()> call) {
  const std::lock_guard<std::mutex> lock(mutex_);
  done_ = false;
  call_ = std::move(call);
  changed_.notify_all();
}

bool Worker::finished() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return done_;
}

BOOL Worker::Finish() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return done_; });
  return result_;
}

BOOL Worker::Call(std::function<BOOL()> call) {
  Start(std::move(call));
  return Finish();
}

LockView ViewOf(tiSO_SELock_t* lock) {
  tiSL_Get(&lock->spin_word);
  LockView view{lock->owner,
                lock->count,
                lock->state,
                lock->pid,
                Identities(lock->shared_waiters),
                Identities(lock->exclusive_waiters),
                Registrations(lock->notify_list)};
  tiSL_Release(&lock->spin_word);
  return view;
}

void StartAndQueue(Worker& worker, tiSO_SELock_t* lock, std::function<BOOL()> call) {
  const auto queued = [lock] {
    const LockView view = ViewOf(lock);
    return view.shared.size() + view.exclusive.size();
  };
  const size_t before = queued();
  worker.Start(std::move(call));
  while (queued() == before) {
    ASSERT_FALSE(worker.finished()) << "the request was to wait";
    sched_yield();
  }
}

}  // namespace zebcomn_test
