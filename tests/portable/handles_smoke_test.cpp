// The calls of the layer together, as a caller uses them.
#include <gtest/gtest.h>

#include "zebcomn/zebcomn.h"

namespace {

DWORD SetGivenEvent(void* event) {
  return static_cast<DWORD>(tivSetEvent(event));
}

TEST(Handles, ThreadSetsAnEventAndEnds) {
  HANDLE event = tivCreateEvent(nullptr, 1, 0, nullptr);
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(tivWaitForSingleObject(event, 0), TIV_WAIT_TIMEOUT);
  HANDLE thread = tivCreateThread(nullptr, 0, SetGivenEvent, event, 0, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(tivWaitForSingleObject(event, TIV_WAIT_INFINITE), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivWaitForSingleObject(thread, TIV_WAIT_INFINITE), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivCloseHandle(thread), TRUE);
  EXPECT_EQ(tivCloseHandle(event), TRUE);
}

TEST(Handles, MutexIsTakenAndReleased) {
  HANDLE mutex = tivCreateMutex(nullptr, 1, nullptr);
  ASSERT_NE(mutex, nullptr);
  EXPECT_EQ(tivWaitForSingleObject(mutex, 0), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(tivReleaseMutex(mutex), TRUE);
  EXPECT_EQ(tivWaitForSingleObject(mutex, 0), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivReleaseMutex(mutex), TRUE);
  EXPECT_EQ(tivCloseHandle(mutex), TRUE);
}

TEST(Handles, SlotsAndCountersWork) {
  const DWORD slot = tivTlsAlloc();
  ASSERT_NE(slot, TIV_INVALID_DWORD);
  int value = 0;
  EXPECT_EQ(tivTlsSetValue(slot, &value), TRUE);
  EXPECT_EQ(tivTlsGetValue(slot), &value);
  EXPECT_EQ(tivTlsFree(slot), TRUE);
  LONG counter = 1;
  EXPECT_EQ(tivInterlockedIncrement(&counter), 2);
  EXPECT_EQ(tivInterlockedExchange(&counter, 7), 2);
  EXPECT_EQ(tivInterlockedDecrement(&counter), 6);
}

}  // namespace
