#include "zebcomn/portable/wait.h"

#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/wait_deadline_internal.h"

namespace {

bool IsWaitable(const _tivHandleObject_t* record) {
  return record->nType >= TIV_HANDLE_EVENT && record->nType <= TIV_HANDLE_MUTEX;
}

// Sleeps until a wake-up or the deadline: what the pthread call returned.
int Sleep(_tivHandleObject_t* record, DWORD milliseconds, const timeval& now) {
  if (milliseconds == TIV_WAIT_INFINITE) return pthread_cond_wait(&record->cond, &record->mutex);
  const timespec deadline = zebcomn::MakeWaitDeadline(now, milliseconds);
  return pthread_cond_timedwait(&record->cond, &record->mutex, &deadline);
}

// What a wait of a record that is not signalled can say besides a call's result.
constexpr DWORD kFailedAndStaysLocked = 0xFFFFFFFF;

// Waits for a record that is not signalled: TIV_WAIT_SIGNALLED to go on, kFailedAndStaysLocked, or
// the call's result. Not inlined, and without the caller's lock object: that keeps what a sleep
// needs off the way of the waits that need none.
[[gnu::noinline]] DWORD WaitForSignal(_tivHandleObject_t* record, DWORD milliseconds) {
  // The state decides already; a deadline that has passed needs no trip through the timer.
  if (milliseconds == 0) return TIV_WAIT_TIMEOUT;
  timeval now{};
  if (milliseconds != TIV_WAIT_INFINITE && gettimeofday(&now, nullptr) != 0) {
    // Kept: the record stays locked when the clock cannot be read.
    return kFailedAndStaysLocked;
  }
  // Kept: one wait only; a wake-up for any reason counts as signalled.
  const int error = Sleep(record, milliseconds, now);
  if (error == 0) return TIV_WAIT_SIGNALLED;
  return error == ETIMEDOUT ? TIV_WAIT_TIMEOUT : TIV_WAIT_FAILED;
}

// Kept: the ownership lock is taken with the record locked, so that threads which contend for one
// mutex handle can block each other, as the contract says.
bool TakeOwnership(_tivHandleObject_t* record) {
  if (pthread_mutex_lock(static_cast<pthread_mutex_t*>(record->pObject)) != 0) return false;
  zebcomn::StoreRelaxed(&record->bSignalled, 0);
  return true;
}

}  // namespace

DWORD tivWaitForSingleObject(HANDLE hHandle, DWORD dwMilliseconds) {
  _tivHandleObject_t* record = zebcomn::RecordOf(hHandle);
  if (record == nullptr || !IsWaitable(record)) {
    zebcomn::StoreError(EINVAL);
    return TIV_WAIT_FAILED;
  }
  zebcomn::HeldMutex lock(record->mutex);
  if (!lock.held()) return TIV_WAIT_FAILED;
  if (zebcomn::LoadAcquire(&record->bSignalled) != 1) {
    const DWORD result = WaitForSignal(record, dwMilliseconds);
    if (result == kFailedAndStaysLocked) {
      lock.Release();
      return TIV_WAIT_FAILED;
    }
    if (result != TIV_WAIT_SIGNALLED) return result;
  }
  if (record->nType == TIV_HANDLE_MUTEX && !TakeOwnership(record)) return TIV_WAIT_FAILED;
  return lock.Unlock() ? TIV_WAIT_SIGNALLED : TIV_WAIT_FAILED;
}
