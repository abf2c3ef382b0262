// Mutex handles.
#include "zebcomn/portable/mutex.h"

#include <gtest/gtest.h>

#include "tests/portable/owned_handle.h"
#include "zebcomn/portable/error.h"

namespace {

using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::Poll;
using zebcomn_test::WaitForEver;

HANDLE NewMutex(BOOL owned) {
  return tivCreateMutex(nullptr, owned, nullptr);
}

pthread_mutex_t* OwnershipLock(const OwnedHandle& mutex) {
  return static_cast<pthread_mutex_t*>(mutex.record()->pObject);
}

// Whether the ownership lock is free, as any thread sees it.
bool IsFree(const OwnedHandle& mutex) {
  if (pthread_mutex_trylock(OwnershipLock(mutex)) != 0) return false;
  pthread_mutex_unlock(OwnershipLock(mutex));
  return true;
}

TEST(CreateMutex, FillsTheRecordOfAFreeMutex) {
  const OwnedHandle mutex(NewMutex(0));
  EXPECT_EQ(mutex.record()->nType, 3);
  EXPECT_EQ(mutex.record()->nRefCount, 1u);
  EXPECT_EQ(mutex.record()->bSignalled, 1);
  EXPECT_TRUE(IsFree(mutex));
}

TEST(CreateMutex, OnlyInitialOwnerOneOwns) {
  const OwnedHandle owned(NewMutex(1));
  EXPECT_EQ(owned.record()->bSignalled, 0);
  EXPECT_FALSE(IsFree(owned));
  EXPECT_EQ(tivReleaseMutex(owned.get()), TRUE);
  for (const BOOL owner : {0, 2, -1}) {
    const OwnedHandle mutex(NewMutex(owner));
    EXPECT_EQ(mutex.record()->bSignalled, 1) << owner;
    EXPECT_TRUE(IsFree(mutex)) << owner;
  }
}

TEST(CreateMutex, NamesMakeNoDifference) {
  const OwnedHandle one(tivCreateMutex(nullptr, 1, "name"));
  const OwnedHandle other(tivCreateMutex(nullptr, 0, "name"));
  EXPECT_NE(one.get(), other.get());
  EXPECT_EQ(Poll(other.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(Poll(one.get()), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(tivReleaseMutex(one.get()), TRUE);
  EXPECT_EQ(tivReleaseMutex(other.get()), TRUE);
}

TEST(OpenMutex, IsNeverSupportedAndSaysNothing) {
  nErrno = 77;
  EXPECT_EQ(tivOpenMutex(0, 0, nullptr), nullptr);
  EXPECT_EQ(tivOpenMutex(0x1F0001, 1, "name"), nullptr);
  EXPECT_EQ(nErrno, 77);
}

TEST(ReleaseMutex, FreesAnOwnedMutex) {
  const OwnedHandle mutex(NewMutex(1));
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
  EXPECT_EQ(mutex.record()->bSignalled, 1);
  EXPECT_TRUE(IsFree(mutex));
}

TEST(ReleaseMutex, RefusesOtherHandles) {
  const OwnedHandle event(tivCreateEvent(nullptr, 1, 0, nullptr));
  nErrno = 0;
  EXPECT_EQ(tivReleaseMutex(event.get()), FALSE);
  EXPECT_EQ(nErrno, 22);
  EXPECT_EQ(event.record()->bSignalled, 0);
}

TEST(ReleaseMutex, NullFailsWithoutAReason) {
  nErrno = 77;
  EXPECT_EQ(tivReleaseMutex(nullptr), FALSE);
  EXPECT_EQ(nErrno, 77);
}

TEST(Mutex, WaitTakesOwnershipAndHasNoRecursion) {
  const OwnedHandle mutex(NewMutex(0));
  EXPECT_EQ(Poll(mutex.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(mutex.record()->bSignalled, 0);
  EXPECT_FALSE(IsFree(mutex));
  EXPECT_EQ(Poll(mutex.get()), TIV_WAIT_TIMEOUT);
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
}

TEST(Mutex, ReleaseLetsOneWaiterIn) {
  const OwnedHandle mutex(NewMutex(1));
  const OwnedHandle thread(NewThread(
      [](void* handle) -> DWORD {
        EXPECT_EQ(WaitForEver(handle), TIV_WAIT_SIGNALLED);
        EXPECT_EQ(tivReleaseMutex(handle), TRUE);
        return 0;
      },
      mutex.get()));
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
  EXPECT_EQ(WaitForEver(thread.get()), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(mutex.record()->bSignalled, 1);
}

TEST(Mutex, GuardsWhatItIsTakenFor) {
  struct Shared {
    HANDLE mutex;
    HANDLE turn[2];
    int count;
  } shared{NewMutex(0), {zebcomn_test::NewEvent(1), zebcomn_test::NewEvent(0)}, 0};
  // Two threads take turns, so that they never contend for the handle.
  static constexpr int kRounds = 200;
  struct Player {
    Shared* shared;
    int number;
  } players[2] = {{&shared, 0}, {&shared, 1}};
  const auto play = [](void* argument) -> DWORD {
    const auto* player = static_cast<Player*>(argument);
    Shared* game = player->shared;
    for (int round = 0; round < kRounds; ++round) {
      EXPECT_EQ(WaitForEver(game->turn[player->number]), TIV_WAIT_SIGNALLED);
      tivResetEvent(game->turn[player->number]);
      EXPECT_EQ(WaitForEver(game->mutex), TIV_WAIT_SIGNALLED);
      ++game->count;
      EXPECT_EQ(tivReleaseMutex(game->mutex), TRUE);
      tivSetEvent(game->turn[1 - player->number]);
    }
    return 0;
  };
  {
    const OwnedHandle one(NewThread(play, &players[0]));
    const OwnedHandle other(NewThread(play, &players[1]));
    WaitForEver(one.get());
    WaitForEver(other.get());
  }
  EXPECT_EQ(shared.count, 2 * kRounds);
  for (HANDLE handle : {shared.mutex, shared.turn[0], shared.turn[1]}) tivCloseHandle(handle);
}

}  // namespace
