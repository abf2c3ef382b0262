// Waits for events, mutexes and threads.
#include <sys/time.h>

#include <atomic>
#include <cerrno>
#include <thread>

#include "tests/portable/owned_handle.h"
#include "tests/reliability/sweep.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::Poll;
using zebcomn_test::RecordOf;
using zebcomn_test::Trial;
using zebcomn_test::WaitForEver;

ZEBCOMN_USE(WaitFailures, SignalledEvent, "tivWaitForSingleObject") {
  const OwnedHandle event(NewEvent(TRUE));
  DWORD result = TIV_WAIT_RESERVED;
  trial.Call([&] { result = WaitForEver(event.get()); });
  EXPECT_EQ(result, trial.Failed() ? TIV_WAIT_FAILED : TIV_WAIT_SIGNALLED);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(WaitForEver(event.get()), TIV_WAIT_SIGNALLED);
}

ZEBCOMN_USE(WaitFailures, FreeMutex, "tivWaitForSingleObject") {
  const OwnedHandle mutex(tivCreateMutex(nullptr, FALSE, nullptr));
  DWORD result = TIV_WAIT_RESERVED;
  trial.Call([&] { result = WaitForEver(mutex.get()); });
  EXPECT_EQ(result, trial.Failed() ? TIV_WAIT_FAILED : TIV_WAIT_SIGNALLED);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  const bool owned = !trial.FailedIn("pthread_mutex_lock");
  EXPECT_EQ(mutex.record()->bSignalled, owned ? 0 : 1);
  trial.Leaves({0, 0, owned ? 1 : 0}, "the mutex is owned");
  if (owned) {
    EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
  }
}

// Returns early enough in a second that a deadline of some milliseconds lies in it too, however
// long a busy machine keeps the processor away in between: one beyond it fails by description.
void AwaitRoomInTheSecond() {
  constexpr int kLatestMicrosecond = 300000;
  timeval now{};
  do {
    gettimeofday(&now, nullptr);
  } while (now.tv_usec > kLatestMicrosecond);
}

// Called after a wait with a time-out, which gave `result` without a failure.
void ExpectTimedResult(Trial& trial, HANDLE event, DWORD result) {
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  const bool timed_out = trial.FailedIn("pthread_cond_timedwait") && trial.error() == ETIMEDOUT;
  const bool fails = trial.FailedIn("pthread_mutex_lock") || trial.FailedIn("gettimeofday") ||
                     (trial.FailedIn("pthread_cond_timedwait") && !timed_out);
  EXPECT_EQ(result, fails ? TIV_WAIT_FAILED : TIV_WAIT_TIMEOUT);
  if (trial.FailedIn("gettimeofday")) {
    trial.Leaves({0, 0, 1}, "a clock that cannot be read leaves the record locked");
    EXPECT_EQ(pthread_mutex_unlock(&RecordOf(event)->mutex), 0);
  }
}

ZEBCOMN_USE(WaitFailures, TimeOut, "tivWaitForSingleObject") {
  const OwnedHandle event(NewEvent());
  DWORD result = TIV_WAIT_RESERVED;
  AwaitRoomInTheSecond();
  trial.Call([&] { result = tivWaitForSingleObject(event.get(), 1); });
  ExpectTimedResult(trial, event.get(), result);
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_TIMEOUT);
}

ZEBCOMN_USE(WaitFailures, OwnedMutexTimeOut, "tivWaitForSingleObject") {
  const OwnedHandle mutex(tivCreateMutex(nullptr, TRUE, nullptr));
  DWORD result = TIV_WAIT_RESERVED;
  AwaitRoomInTheSecond();
  trial.Call([&] { result = tivWaitForSingleObject(mutex.get(), 1); });
  ExpectTimedResult(trial, mutex.get(), result);
  EXPECT_EQ(mutex.record()->bSignalled, 0) << "owned as before";
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
}

// Wakes whoever waits for the record, for as long as it lives.
class Waker {
 public:
  explicit Waker(_tivHandleObject_t* record)
      : thread_([this, record] {
          while (!stops_) pthread_cond_broadcast(&record->cond);
        }) {}
  ~Waker() {
    stops_ = true;
    thread_.join();
  }
  Waker(const Waker&) = delete;
  Waker& operator=(const Waker&) = delete;

 private:
  std::atomic<bool> stops_{false};
  std::thread thread_;
};

ZEBCOMN_USE(WaitFailures, WithoutLimit, "tivWaitForSingleObject") {
  const OwnedHandle event(NewEvent());
  DWORD result = TIV_WAIT_RESERVED;
  {
    const Waker waker(event.record());
    trial.Call([&] { result = WaitForEver(event.get()); });
  }
  EXPECT_EQ(result, trial.Failed() ? TIV_WAIT_FAILED : TIV_WAIT_SIGNALLED);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// Nothing but the record's lock can fail in a look that does not wait.
ZEBCOMN_USE(WaitFailures, Look, "tivWaitForSingleObject") {
  const OwnedHandle event(NewEvent());
  DWORD result = TIV_WAIT_RESERVED;
  trial.Call([&] { result = Poll(event.get()); });
  EXPECT_EQ(result, trial.FailedIn("pthread_mutex_lock") ? TIV_WAIT_FAILED : TIV_WAIT_TIMEOUT);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(WaitFailures, WokenBeforeTheTimeOut, "tivWaitForSingleObject") {
  constexpr DWORD kLong = 600;
  const OwnedHandle event(NewEvent());
  DWORD result = TIV_WAIT_RESERVED;
  {
    const Waker waker(event.record());
    AwaitRoomInTheSecond();
    trial.Call([&] { result = tivWaitForSingleObject(event.get(), kLong); });
  }
  const bool timed_out = trial.FailedIn("pthread_cond_timedwait") && trial.error() == ETIMEDOUT;
  const DWORD failure = timed_out ? TIV_WAIT_TIMEOUT : TIV_WAIT_FAILED;
  EXPECT_EQ(result, trial.Failed() ? failure : TIV_WAIT_SIGNALLED);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  if (trial.FailedIn("gettimeofday")) {
    trial.Leaves({0, 0, 1}, "a clock that cannot be read leaves the record locked");
    EXPECT_EQ(pthread_mutex_unlock(&event.record()->mutex), 0);
  }
}

ZEBCOMN_USE(WaitFailures, SeveralHandles, "tivWaitForMultipleObjects") {
  const OwnedHandle first(NewEvent());
  const OwnedHandle second(NewEvent(TRUE));
  const HANDLE handles[] = {second.get(), first.get()};
  DWORD result = TIV_WAIT_RESERVED;
  trial.Call([&] { result = tivWaitForMultipleObjects(2, handles, FALSE, 20); });
  EXPECT_EQ(result, trial.Failed() ? TIV_WAIT_FAILED : TIV_WAIT_SIGNALLED);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(WaitFailures, SeveralHandlesTimeOut, "tivWaitForMultipleObjects") {
  const OwnedHandle event(NewEvent());
  const HANDLE handle = event.get();
  DWORD result = TIV_WAIT_RESERVED;
  AwaitRoomInTheSecond();
  trial.Call([&] { result = tivWaitForMultipleObjects(1, &handle, FALSE, 10); });
  ExpectTimedResult(trial, handle, result);
}

// Owned by another thread, which releases it as soon as a wait for it may have begun.
ZEBCOMN_USE(WaitFailures, MutexOfAnother, "tivWaitForSingleObject") {
  const OwnedHandle mutex(tivCreateMutex(nullptr, FALSE, nullptr));
  const OwnedHandle is_owned(NewEvent());
  std::thread owner([&] {
    EXPECT_EQ(WaitForEver(mutex.get()), TIV_WAIT_SIGNALLED);
    EXPECT_EQ(tivSetEvent(is_owned.get()), TRUE);
    EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
  });
  EXPECT_EQ(WaitForEver(is_owned.get()), TIV_WAIT_SIGNALLED);
  DWORD result = TIV_WAIT_RESERVED;
  trial.Call([&] { result = WaitForEver(mutex.get()); });
  owner.join();
  EXPECT_EQ(result, trial.Failed() ? TIV_WAIT_FAILED : TIV_WAIT_SIGNALLED);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  const bool owned = !trial.Failed() || trial.FailedIn("pthread_mutex_unlock");
  EXPECT_EQ(mutex.record()->bSignalled, owned ? 0 : 1);
  if (!owned) return;
  trial.Leaves({0, 0, 1}, "the mutex is owned");
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
}

DWORD EndAtOnce(void* /*parameter*/) {
  return 0;
}

ZEBCOMN_USE(WaitFailures, EndedThread, "tivWaitForSingleObject") {
  const OwnedHandle thread(NewThread(EndAtOnce, nullptr));
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
  DWORD result = TIV_WAIT_RESERVED;
  trial.Call([&] { result = WaitForEver(thread.get()); });
  EXPECT_EQ(result, trial.Failed() ? TIV_WAIT_FAILED : TIV_WAIT_SIGNALLED);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
}

}  // namespace
