// Waits on several real handles.
#include <gtest/gtest.h>

#include "tests/portable/owned_handle.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;

// A slice that begins in the last 10 ms of a second fails; callers ask again.
DWORD WaitForSeveral(DWORD count, const HANDLE* handles) {
  for (;;) {
    nErrno = 0;
    const DWORD result = tivWaitForMultipleObjects(count, handles, 0, TIV_WAIT_INFINITE);
    if (result != TIV_WAIT_FAILED || nErrno != 0) return result;
  }
}

TEST(WaitForHandles, ThirdOfThreeGivesFour) {
  const OwnedHandle events[] = {OwnedHandle(NewEvent()), OwnedHandle(NewEvent()),
                                OwnedHandle(NewEvent(1))};
  const HANDLE handles[] = {events[0].get(), events[1].get(), events[2].get()};
  EXPECT_EQ(WaitForSeveral(3, handles), 4u);
}

TEST(WaitForHandles, FirstOfSeveralSignalledWins) {
  const OwnedHandle events[] = {OwnedHandle(NewEvent(1)), OwnedHandle(NewEvent(1))};
  const HANDLE handles[] = {events[0].get(), events[1].get()};
  EXPECT_EQ(WaitForSeveral(2, handles), 2u);
}

TEST(WaitForHandles, EventThreadAndMutexAreMixed) {
  const OwnedHandle event(NewEvent());
  const OwnedHandle thread(NewThread(
      [](void* handle) -> DWORD {
        zebcomn_test::WaitForEver(handle);
        return 0;
      },
      event.get()));
  const OwnedHandle mutex(tivCreateMutex(nullptr, 0, nullptr));
  const HANDLE handles[] = {event.get(), thread.get(), mutex.get()};
  EXPECT_EQ(WaitForSeveral(3, handles), 4u);
  EXPECT_EQ(mutex.record()->bSignalled, 0) << "the wait has taken it";
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
  EXPECT_EQ(tivSetEvent(event.get()), TRUE);
  EXPECT_EQ(WaitForSeveral(1, &handles[1]), 2u);
}

TEST(WaitForHandles, FileAmongThemFails) {
  const OwnedHandle event(NewEvent());
  const OwnedHandle other(NewEvent());
  other.record()->nType = TIV_HANDLE_FILE;
  const HANDLE handles[] = {event.get(), other.get()};
  EXPECT_EQ(WaitForSeveral(2, handles), 0u);
  EXPECT_EQ(nErrno, 22);
  other.record()->nType = TIV_HANDLE_EVENT;
}

}  // namespace
