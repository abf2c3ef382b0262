// Signals taken on a dedicated thread. The system log and, where asked for, the wait itself are
// replaced by functions of this program.
#include "zebcomn/util/sighandler.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <semaphore.h>
#include <syslog.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <deque>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/failing_allocation.h"

namespace {

using quenty_com::pelu::SignalHandler;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using zebcomn_test::FailThrowingAllocation;
using zebcomn_test::TakeFailedAllocations;

/// Read before any test can have raised the flag.
const int kFlagAtStart = bSigTermReceived;

/// Lines logged by the handler's thread; the tests read them when that thread has ended.
std::vector<std::string> logged;

void Write(int level, const char* format, va_list args) __attribute__((format(printf, 2, 0)));
void Write(int level, const char* format, va_list args) {
  char text[256] = "";
  vsnprintf(text, sizeof text, format, args);
  logged.push_back(std::to_string(level) + " " + text);
}

/// What the replaced wait answers first: signal numbers, or 0 for a wait that fails.
std::deque<int> scripted_waits;

}  // namespace

extern "C" {
void openlog(const char*, int, int) {}
void closelog() {}
void vsyslog(int level, const char* format, va_list args) {
  Write(level, format, args);
}
/// What a fortified library calls.
void __vsyslog_chk(int level, int, const char* format, va_list args)
    __attribute__((format(printf, 3, 0)));
void __vsyslog_chk(int level, int, const char* format, va_list args) {
  Write(level, format, args);
}

int sigwait(const sigset_t* set, int* signo) {
  if (scripted_waits.empty()) {
    static const auto real =
        reinterpret_cast<int (*)(const sigset_t*, int*)>(dlsym(RTLD_NEXT, "sigwait"));
    return real(set, signo);
  }
  const int answer = scripted_waits.front();
  scripted_waits.pop_front();
  if (answer == 0) return EINVAL;
  *signo = answer;
  return 0;
}
}

namespace {

constexpr const char* kStopLine = "6 Received signal to stop PELU";
constexpr const char* kUnknownLine = "6 PELU received unknown signal, ignoring signal...";

std::vector<std::string> callbacks_run;
sem_t callback_ran;
pthread_t callback_thread;
SignalHandler* handler_of_callback = nullptr;

void Ran(const char* name) {
  callbacks_run.emplace_back(name);
  callback_thread = pthread_self();
  sem_post(&callback_ran);
}
void First() {
  Ran("first");
}
void Second() {
  Ran("second");
}
void RegistersForHangup() {
  handler_of_callback->registerOnSignalCallback(SIGHUP, Second);
  Ran("registers");
}

sigset_t Mask() {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return mask;
}

std::vector<int> Blocked() {
  const sigset_t mask = Mask();
  std::vector<int> blocked;
  for (int signo = 1; signo < SIGRTMIN; ++signo) {
    if (sigismember(&mask, signo) == 1) blocked.push_back(signo);
  }
  return blocked;
}

class SignalHandlerTest : public ::testing::Test {
 protected:
  SignalHandlerTest() : mask_(Mask()) {
    logged.clear();
    callbacks_run.clear();
    scripted_waits.clear();
    sem_init(&callback_ran, 0, 0);
  }
  ~SignalHandlerTest() override {
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
    sem_destroy(&callback_ran);
  }

  void Start() {
    thread_ = std::thread([this] { handler_(); });
  }
  void Send(int signo) { ASSERT_EQ(pthread_kill(thread_.native_handle(), signo), 0); }
  void SendAndAwaitCallback(int signo) {
    Send(signo);
    while (sem_wait(&callback_ran) != 0) {
    }
  }
  void StopWith(int signo) {
    Send(signo);
    thread_.join();
  }

  SignalHandler handler_;
  std::thread thread_;

 private:
  sigset_t mask_;
};

TEST_F(SignalHandlerTest, CallbackRunsEachTimeAndTheLoopContinues) {
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGUSR2);
  handler_.addSignalToBlock(SIGTERM);
  EXPECT_EQ(handler_.registerOnSignalCallback(SIGUSR1, First), 0);
  EXPECT_EQ(handler_.registerOnSignalCallback(SIGUSR2, Second), 0);
  Start();
  SendAndAwaitCallback(SIGUSR1);
  SendAndAwaitCallback(SIGUSR2);
  SendAndAwaitCallback(SIGUSR1);
  StopWith(SIGTERM);
  EXPECT_THAT(callbacks_run, ElementsAre("first", "second", "first"));
  EXPECT_THAT(logged, ElementsAre(kStopLine));
}

TEST_F(SignalHandlerTest, CallbacksRunOnTheWaitingThread) {
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGTERM);
  handler_.registerOnSignalCallback(SIGUSR1, First);
  Start();
  SendAndAwaitCallback(SIGUSR1);
  EXPECT_TRUE(pthread_equal(callback_thread, thread_.native_handle()));
  StopWith(SIGTERM);
}

TEST_F(SignalHandlerTest, SignalWithoutCallbackIsLoggedOnceAndEndsTheLoop) {
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGHUP);
  handler_.registerOnSignalCallback(SIGUSR1, First);
  Start();
  StopWith(SIGHUP);
  EXPECT_THAT(logged, ElementsAre(kStopLine));
  EXPECT_THAT(callbacks_run, IsEmpty());
}

TEST_F(SignalHandlerTest, FirstRegistrationWins) {
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGTERM);
  EXPECT_EQ(handler_.registerOnSignalCallback(SIGUSR1, First), 0);
  EXPECT_EQ(handler_.registerOnSignalCallback(SIGUSR1, Second), 0);
  Start();
  SendAndAwaitCallback(SIGUSR1);
  StopWith(SIGTERM);
  EXPECT_THAT(callbacks_run, ElementsAre("first"));
}

TEST_F(SignalHandlerTest, NullCallbackIsNotRegistered) {
  handler_.addSignalToBlock(SIGUSR1);
  EXPECT_EQ(handler_.registerOnSignalCallback(SIGUSR1, nullptr), 0);
  Start();
  StopWith(SIGUSR1);
  EXPECT_THAT(logged, ElementsAre(kStopLine));
}

TEST_F(SignalHandlerTest, RegistrationWithoutMemoryIsNotReported) {
  FailThrowingAllocation(1);
  const int result = handler_.registerOnSignalCallback(SIGUSR1, First);
  FailThrowingAllocation(0);
  EXPECT_EQ(TakeFailedAllocations(), 1);
  EXPECT_EQ(result, 0);
  handler_.addSignalToBlock(SIGUSR1);
  Start();
  StopWith(SIGUSR1);
  EXPECT_THAT(callbacks_run, IsEmpty());
}

TEST_F(SignalHandlerTest, CallbackMayRegisterAnother) {
  handler_of_callback = &handler_;
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGHUP);
  handler_.addSignalToBlock(SIGTERM);
  handler_.registerOnSignalCallback(SIGUSR1, RegistersForHangup);
  Start();
  SendAndAwaitCallback(SIGUSR1);
  SendAndAwaitCallback(SIGHUP);
  StopWith(SIGTERM);
  EXPECT_THAT(callbacks_run, ElementsAre("registers", "second"));
}

TEST_F(SignalHandlerTest, SignalSentToTheProcessArrives) {
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGTERM);
  handler_.registerOnSignalCallback(SIGUSR1, First);
  Start();
  kill(getpid(), SIGUSR1);
  while (sem_wait(&callback_ran) != 0) {
  }
  kill(getpid(), SIGTERM);
  thread_.join();
  EXPECT_THAT(callbacks_run, ElementsAre("first"));
}

TEST_F(SignalHandlerTest, AddingASignalReplacesTheMask) {
  sigset_t own;
  sigemptyset(&own);
  sigaddset(&own, SIGWINCH);
  pthread_sigmask(SIG_SETMASK, &own, nullptr);
  EXPECT_EQ(handler_.addSignalToBlock(SIGUSR1), 0);
  EXPECT_THAT(Blocked(), ElementsAre(SIGUSR1));
  EXPECT_EQ(handler_.addSignalToBlock(SIGUSR2), 0);
  EXPECT_THAT(Blocked(), ElementsAre(SIGUSR1, SIGUSR2));
}

TEST_F(SignalHandlerTest, NumbersThatAreNoSignalsAreIgnored) {
  for (const int signo : {0, -1, 1000}) {
    EXPECT_EQ(handler_.addSignalToBlock(signo), 0);
    EXPECT_EQ(handler_.unblockSignal(signo), 0);
  }
  EXPECT_THAT(Blocked(), IsEmpty());
}

TEST_F(SignalHandlerTest, UnblockedSignalIsStillWaitedFor) {
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGTERM);
  handler_.registerOnSignalCallback(SIGUSR1, First);
  Start();
  EXPECT_EQ(handler_.unblockSignal(SIGUSR1), 0);
  EXPECT_THAT(Blocked(), ElementsAre(SIGTERM));
  SendAndAwaitCallback(SIGUSR1);
  StopWith(SIGTERM);
  EXPECT_THAT(callbacks_run, ElementsAre("first"));
  handler_.addSignalToBlock(SIGHUP);
  EXPECT_THAT(Blocked(), ElementsAre(SIGHUP, SIGUSR1, SIGTERM));
}

TEST_F(SignalHandlerTest, DestructionRestoresNoMask) {
  {
    SignalHandler handler;
    handler.addSignalToBlock(SIGUSR1);
  }
  EXPECT_THAT(Blocked(), ElementsAre(SIGUSR1));
}

TEST_F(SignalHandlerTest, SignalOutsideTheSetIsLoggedAndIgnored) {
  handler_.addSignalToBlock(SIGTERM);
  handler_.registerOnSignalCallback(SIGUSR1, First);
  scripted_waits = {SIGUSR1, SIGUSR2, SIGTERM};
  handler_();
  EXPECT_THAT(logged, ElementsAre(kUnknownLine, kUnknownLine, kStopLine));
  EXPECT_THAT(callbacks_run, IsEmpty());
}

TEST_F(SignalHandlerTest, FailedWaitRepeatsNoSignal) {
  handler_.addSignalToBlock(SIGUSR1);
  handler_.addSignalToBlock(SIGTERM);
  handler_.registerOnSignalCallback(SIGUSR1, First);
  scripted_waits = {SIGUSR1, 0, SIGTERM};
  handler_();
  EXPECT_THAT(logged, ElementsAre(kUnknownLine, kStopLine));
  EXPECT_THAT(callbacks_run, ElementsAre("first"));
}

TEST(SignalHandlerLayoutTest, HoldsTheSetAndTheMapAndNothingElse) {
  EXPECT_EQ(sizeof(SignalHandler), sizeof(sigset_t) + sizeof(std::map<int, void (*)()>));
}

TEST(CatchSigtermTest, FlagIsZeroAtStart) {
  EXPECT_EQ(kFlagAtStart, 0);
}

TEST(CatchSigtermTest, RaisesTheFlagWhateverTheSignal) {
  for (const int signo : {SIGTERM, SIGINT, 0, -1}) {
    bSigTermReceived = 0;
    CatchSIGTERM(signo);
    EXPECT_EQ(bSigTermReceived, 1) << signo;
  }
}

TEST(CatchSigtermTest, RunsAsAnAsynchronousHandler) {
  bSigTermReceived = 0;
  struct sigaction previous {};
  struct sigaction wanted {};
  wanted.sa_handler = CatchSIGTERM;
  ASSERT_EQ(sigaction(SIGTERM, &wanted, &previous), 0);
  errno = 77;
  raise(SIGTERM);
  const int errno_after = errno;
  sigaction(SIGTERM, &previous, nullptr);
  EXPECT_EQ(__atomic_load_n(&bSigTermReceived, __ATOMIC_ACQUIRE), 1);
  EXPECT_EQ(errno_after, 77);
}

TEST(CatchSigtermTest, FlagMayBePolledWhileItIsRaised) {
  bSigTermReceived = 0;
  std::thread raiser([] { CatchSIGTERM(SIGTERM); });
  while (__atomic_load_n(&bSigTermReceived, __ATOMIC_ACQUIRE) == 0) std::this_thread::yield();
  raiser.join();
}

}  // namespace
