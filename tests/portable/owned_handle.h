#ifndef ZEBCOMN_TESTS_PORTABLE_OWNED_HANDLE_H_
#define ZEBCOMN_TESTS_PORTABLE_OWNED_HANDLE_H_

#include <gtest/gtest.h>

#include "zebcomn/portable/event.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/mutex.h"
#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/wait.h"

namespace zebcomn_test {

inline _tivHandleObject_t* RecordOf(HANDLE handle) {
  return static_cast<_tivHandleObject_t*>(handle);
}

/// Closes its handle at the end of the scope and expects that to succeed.
class OwnedHandle {
 public:
  explicit OwnedHandle(HANDLE handle) : handle_(handle) {}
  ~OwnedHandle() { Close(); }
  OwnedHandle(const OwnedHandle&) = delete;
  OwnedHandle& operator=(const OwnedHandle&) = delete;

  HANDLE get() const { return handle_; }
  _tivHandleObject_t* record() const { return RecordOf(handle_); }

  void Close() {
    EXPECT_EQ(tivCloseHandle(handle_), TRUE);
    handle_ = nullptr;
  }

 private:
  HANDLE handle_;
};

inline HANDLE NewEvent(BOOL signalled = 0) {
  return tivCreateEvent(nullptr, 1, signalled, nullptr);
}

inline HANDLE NewThread(TivThreadRoutine routine, void* parameter) {
  return tivCreateThread(nullptr, 0, routine, parameter, 0, nullptr);
}

/// A wait without limit.
inline DWORD WaitForEver(HANDLE handle) {
  return tivWaitForSingleObject(handle, TIV_WAIT_INFINITE);
}

inline DWORD Poll(HANDLE handle) {
  return tivWaitForSingleObject(handle, 0);
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_OWNED_HANDLE_H_
