// The ends of many threads against closes, waits and slots, at full speed.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/portable/thread_end_scenarios.h"
#include "tests/support/rounds.h"

namespace {

using zebcomn_test::Rounds;

// Runs `scenario` over and over on two threads at once.
void Stress(int rounds, void (*scenario)()) {
  const auto run = [&] {
    for (int i = 0; i < rounds; ++i) scenario();
  };
  std::thread other(run);
  run();
  other.join();
}

TEST(ThreadStress, CloseAfterWait) {
  Stress(Rounds(4000), zebcomn_test::CloseAfterWait);
}

TEST(ThreadStress, CloseOnFlag) {
  Stress(Rounds(4000), zebcomn_test::CloseOnFlag);
}

TEST(ThreadStress, CloseWithoutWait) {
  Stress(Rounds(4000), zebcomn_test::CloseWithoutWait);
}

TEST(ThreadStress, CloseAfterFlagSetByHand) {
  Stress(Rounds(4000), zebcomn_test::CloseAfterFlagSetByHand);
}

TEST(ThreadStress, EndTogetherWithSlots) {
  Stress(Rounds(1000), zebcomn_test::EndTogetherWithSlots);
}

TEST(ThreadStress, LastWaiterClosesTheEvent) {
  Stress(Rounds(1000), zebcomn_test::LastWaiterClosesTheEvent);
}

TEST(ThreadStress, ManyWaitersOnOneEvent) {
  constexpr int kWaiters = 40;
  const zebcomn_test::OwnedHandle gate(zebcomn_test::NewEvent());
  std::vector<HANDLE> threads;
  for (int i = 0; i < kWaiters; ++i) {
    threads.push_back(zebcomn_test::NewThread(
        [](void* handle) -> DWORD {
          EXPECT_EQ(zebcomn_test::WaitForEver(handle), TIV_WAIT_SIGNALLED);
          return 0;
        },
        gate.get()));
  }
  EXPECT_EQ(tivSetEvent(gate.get()), TRUE);
  for (HANDLE thread : threads) {
    EXPECT_EQ(zebcomn_test::WaitForEver(thread), TIV_WAIT_SIGNALLED);
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
  }
}

TEST(ThreadStress, WaitersSeeWhatTheThreadWrote) {
  for (int i = 0; i < Rounds(2000); ++i) {
    int written = 0;
    HANDLE thread = zebcomn_test::NewThread(
        [](void* argument) -> DWORD {
          *static_cast<int*>(argument) = 1;
          return 0;
        },
        &written);
    EXPECT_EQ(zebcomn_test::WaitForEver(thread), TIV_WAIT_SIGNALLED);
    EXPECT_EQ(written, 1);
    EXPECT_EQ(tivCloseHandle(thread), TRUE);
  }
}

}  // namespace
