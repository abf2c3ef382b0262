// Signals that arrive while the handler's thread is anywhere between two waits.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "tests/reliability/schedule.h"
#include "zebcomn/util/sighandler.h"

namespace {

using quenty_com::pelu::SignalHandler;
using zebcomn_test::RunSchedules;

std::atomic<int> g_first{0};
std::atomic<int> g_second{0};

void CountFirst() {
  ++g_first;
}
void CountSecond() {
  ++g_second;
}

/// Sends a signal again and again, each time when the one before has been told.
void SendAndAwait(pthread_t target, int signo, const std::atomic<int>& told) {
  constexpr int kTimes = 5;
  for (int time = 1; time <= kTimes; ++time) {
    EXPECT_EQ(pthread_kill(target, signo), 0);
    while (told < time) sched_yield();
    EXPECT_EQ(told, time) << "a signal is told once";
  }
}

TEST(SignalSchedules, NoSignalIsLostToldTwiceOrTakenForTheStop) {
  sigset_t before;
  pthread_sigmask(SIG_SETMASK, nullptr, &before);
  RunSchedules(200, [] {
    g_first = 0;
    g_second = 0;
    SignalHandler handler;
    for (const int signo : {SIGUSR1, SIGUSR2, SIGTERM}) handler.addSignalToBlock(signo);
    handler.registerOnSignalCallback(SIGUSR1, CountFirst);
    handler.registerOnSignalCallback(SIGUSR2, CountSecond);
    std::atomic<bool> stopped{false};
    std::thread waiting([&] {
      handler();
      stopped = true;
    });
    const pthread_t target = waiting.native_handle();
    std::thread other([&] { SendAndAwait(target, SIGUSR2, g_second); });
    SendAndAwait(target, SIGUSR1, g_first);
    other.join();
    EXPECT_FALSE(stopped);
    EXPECT_EQ(pthread_kill(target, SIGTERM), 0);
    waiting.join();
  });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

// The flag of the classic handler, raised on any thread, is seen by one that polls it, with what
// was written before it.
TEST(SignalSchedules, TheStopFlagCarriesWhatWasWrittenBefore) {
  RunSchedules(300, [] {
    __atomic_store_n(&bSigTermReceived, 0, __ATOMIC_RELEASE);
    int written = 0;
    std::thread raiser([&written] {
      written = 1;
      CatchSIGTERM(SIGTERM);
    });
    while (__atomic_load_n(&bSigTermReceived, __ATOMIC_ACQUIRE) == 0) sched_yield();
    EXPECT_EQ(written, 1);
    raiser.join();
  });
}

}  // namespace
