// The ends of threads against closes, waits and slots.
#include <gtest/gtest.h>

#include "tests/portable/thread_end_scenarios.h"
#include "tests/reliability/schedule.h"

namespace {

using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::RunSchedules;
using zebcomn_test::WaitForEver;

TEST(ThreadSchedules, CloseAfterWait) {
  RunSchedules(400, zebcomn_test::CloseAfterWait);
}

TEST(ThreadSchedules, CloseOnFlag) {
  RunSchedules(400, zebcomn_test::CloseOnFlag);
}

TEST(ThreadSchedules, CloseWithoutWait) {
  RunSchedules(400, zebcomn_test::CloseWithoutWait);
}

TEST(ThreadSchedules, CloseAfterFlagSetByHand) {
  RunSchedules(400, zebcomn_test::CloseAfterFlagSetByHand);
}

TEST(ThreadSchedules, LastWaiterClosesTheEvent) {
  RunSchedules(200, zebcomn_test::LastWaiterClosesTheEvent);
}

TEST(ThreadSchedules, EndTogetherWithSlots) {
  RunSchedules(100, zebcomn_test::EndTogetherWithSlots);
}

// A waiter lets the closer go on only when it has seen the end, as a component does that collects
// its threads.
TEST(ThreadSchedules, SeveralWaitForOneThread) {
  RunSchedules(200, [] {
    struct Shared {
      HANDLE gate = NewEvent();
      HANDLE thread = nullptr;
    } shared;
    shared.thread = NewThread([](void* gate) -> DWORD { return WaitForEver(gate); }, shared.gate);
    const auto wait = [](void* argument) -> DWORD {
      EXPECT_EQ(WaitForEver(static_cast<Shared*>(argument)->thread), TIV_WAIT_SIGNALLED);
      return 0;
    };
    {
      const OwnedHandle first(NewThread(wait, &shared));
      const OwnedHandle second(NewThread(wait, &shared));
      EXPECT_EQ(tivSetEvent(shared.gate), TRUE);
      EXPECT_EQ(WaitForEver(first.get()), TIV_WAIT_SIGNALLED);
      EXPECT_EQ(WaitForEver(second.get()), TIV_WAIT_SIGNALLED);
    }
    EXPECT_EQ(tivCloseHandle(shared.thread), TRUE);
    EXPECT_EQ(tivCloseHandle(shared.gate), TRUE);
  });
}

}  // namespace
