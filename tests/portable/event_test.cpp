// Manual-reset events.
#include "zebcomn/portable/event.h"

#include <gtest/gtest.h>

#include "tests/portable/owned_handle.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::NewEvent;
using zebcomn_test::OwnedHandle;
using zebcomn_test::Poll;

TEST(CreateEvent, FillsTheRecord) {
  const OwnedHandle event(NewEvent());
  EXPECT_EQ(event.record()->pObject, nullptr);
  EXPECT_EQ(event.record()->nType, 1);
  EXPECT_EQ(event.record()->nRefCount, 1u);
  EXPECT_EQ(event.record()->bSignalled, 0);
}

TEST(CreateEvent, RefusesEveryOtherKindOfReset) {
  for (const BOOL manual_reset : {0, 2, -1}) {
    nErrno = 0;
    EXPECT_EQ(tivCreateEvent(nullptr, manual_reset, 0, nullptr), nullptr) << manual_reset;
    EXPECT_EQ(nErrno, 22) << manual_reset;
  }
}

TEST(CreateEvent, RefusesAName) {
  nErrno = 0;
  EXPECT_EQ(tivCreateEvent(nullptr, 1, 0, "x"), nullptr);
  EXPECT_EQ(nErrno, 22);
}

TEST(CreateEvent, AnEmptyNameCountsAsNone) {
  nErrno = 77;
  const OwnedHandle event(tivCreateEvent(nullptr, 1, 0, ""));
  EXPECT_NE(event.get(), nullptr);
  EXPECT_EQ(nErrno, 77);
}

TEST(CreateEvent, IgnoresTheAttributes) {
  int attributes = 0;
  const OwnedHandle event(tivCreateEvent(&attributes, 1, 1, nullptr));
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_SIGNALLED);
}

TEST(CreateEvent, OnlyInitialStateOneIsSignalled) {
  EXPECT_EQ(OwnedHandle(NewEvent(1)).record()->bSignalled, 1);
  for (const BOOL state : {0, 2, -1}) {
    EXPECT_EQ(OwnedHandle(NewEvent(state)).record()->bSignalled, 0) << state;
  }
}

TEST(SetEvent, StaysSetUntilReset) {
  const OwnedHandle event(NewEvent());
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(tivSetEvent(event.get()), TRUE);
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivResetEvent(event.get()), TRUE);
  EXPECT_EQ(Poll(event.get()), TIV_WAIT_TIMEOUT);
}

TEST(SetEvent, SettingTwiceIsAsSettingOnce) {
  const OwnedHandle event(NewEvent());
  EXPECT_EQ(tivSetEvent(event.get()), TRUE);
  EXPECT_EQ(tivSetEvent(event.get()), TRUE);
  EXPECT_EQ(tivResetEvent(event.get()), TRUE);
  EXPECT_EQ(tivResetEvent(event.get()), TRUE);
  EXPECT_EQ(event.record()->bSignalled, 0);
}

TEST(SetEvent, RefusesBothInvalidHandles) {
  for (HANDLE handle : {HANDLE{nullptr}, TIV_INVALID_HANDLE}) {
    nErrno = 0;
    EXPECT_EQ(tivSetEvent(handle), FALSE);
    EXPECT_EQ(nErrno, 22);
  }
}

TEST(SetEvent, TypeIsNotLookedAt) {
  const OwnedHandle mutex(tivCreateMutex(nullptr, 1, nullptr));
  EXPECT_EQ(tivSetEvent(mutex.get()), TRUE);
  EXPECT_EQ(mutex.record()->bSignalled, 1);
  EXPECT_EQ(tivResetEvent(mutex.get()), TRUE);
  EXPECT_EQ(mutex.record()->bSignalled, 0);
}

TEST(ResetEvent, RefusesNull) {
  nErrno = 0;
  EXPECT_EQ(tivResetEvent(nullptr), FALSE);
  EXPECT_EQ(nErrno, 22);
}

TEST(Event, SuccessLeavesTheErrorSlotAlone) {
  nErrno = 77;
  OwnedHandle event(NewEvent(1));
  tivSetEvent(event.get());
  tivResetEvent(event.get());
  event.Close();
  EXPECT_EQ(nErrno, 77);
}

}  // namespace
