// Lines in the system log, taken from the socket that the C library sends them to.
#include "zebcomn/util/system_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <string>

#include "tests/support/command.h"
#include "tests/support/descriptors.h"
#include "tests/support/private_host.h"
#include "tests/support/system_log_receiver.h"

namespace {

using quenty_com::pelu::LogInSystemLog;
using quenty_com::pelu::SyslogPriority;
using quenty_com::pelu::vLogInSystemLog;
using ::testing::MatchesRegex;
using zebcomn_test::OpenDescriptorCount;
using zebcomn_test::PrivateHost;
using zebcomn_test::RunInPrivateHost;
using zebcomn_test::SystemLogReceiver;
using zebcomn_test::WhyNoPrivateHost;

constexpr const char* kDate = "[A-Z][a-z][a-z] [ 0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9] ";

/// A line of the log: its number is the facility `LOG_USER` (1 * 8) and the level together.
std::string Line(int level, const std::string& ident_and_text) {
  return "<" + std::to_string(LOG_USER | level) + ">" + kDate + ident_and_text;
}

unsigned LogAtLevel(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
unsigned LogAtLevel(int level, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const unsigned result = vLogInSystemLog(level, format, args);
  va_end(args);
  return result;
}

class SystemLog : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  }

  /// What arrives in the log when `log` has run: the lines, each with a "|" after it.
  static std::string Received(const std::function<void()>& log) {
    return RunInPrivateHost([&log](PrivateHost& host) {
      SystemLogReceiver receiver(host);
      log();
      std::string all;
      for (const std::string& line : receiver.Arrived()) all += line + "|";
      return all;
    });
  }
};

TEST_F(SystemLog, EveryPriorityHasItsLevelIdentAndFacility) {
  const struct {
    int priority;
    int level;
  } rows[] = {{0, LOG_CRIT}, {1, LOG_ERR},  {2, LOG_WARNING}, {3, LOG_INFO},
              {4, LOG_INFO}, {7, LOG_INFO}, {-1, LOG_INFO},   {1000, LOG_INFO}};
  for (const auto& row : rows) {
    const std::string seen =
        Received([&] { LogInSystemLog(static_cast<SyslogPriority>(row.priority), "text"); });
    EXPECT_THAT(seen, MatchesRegex(Line(row.level, "\\[PELU\\]: text\\|"))) << row.priority;
  }
}

TEST_F(SystemLog, PrioritiesHaveTheirNumbers) {
  EXPECT_EQ(quenty_com::pelu::PriorityCritical, 0);
  EXPECT_EQ(quenty_com::pelu::PriorityError, 1);
  EXPECT_EQ(quenty_com::pelu::PriorityWarning, 2);
  EXPECT_EQ(quenty_com::pelu::PriorityInfo, 3);
}

TEST_F(SystemLog, TextIsFormatted) {
  const std::string seen = Received([] {
    LogInSystemLog(quenty_com::pelu::PriorityError, "%s has %d of %5.1f%%", "disk", 7, 12.5);
  });
  EXPECT_THAT(seen, MatchesRegex(Line(LOG_ERR, "\\[PELU\\]: disk has 7 of  12\\.5%\\|")));
}

TEST_F(SystemLog, LevelOfTheSystemIsTakenAsItIs) {
  for (int level = LOG_EMERG; level <= LOG_DEBUG; ++level) {
    const std::string seen = Received([&] { LogAtLevel(level, "%d of %s", 3, "four"); });
    EXPECT_THAT(seen, MatchesRegex(Line(level, "\\[PELU\\]: 3 of four\\|"))) << level;
  }
}

TEST_F(SystemLog, LongLineStaysWhole) {
  const std::string text(9000, 'x');
  const std::string seen =
      Received([&] { LogInSystemLog(quenty_com::pelu::PriorityInfo, "%s", text.c_str()); });
  EXPECT_NE(seen.find("[PELU]: " + text + "|"), std::string::npos);
}

TEST_F(SystemLog, ReplacesAndClosesTheProgramsOwnSettings) {
  const std::string seen = Received([] {
    openlog("mine", LOG_PID, LOG_LOCAL0);
    syslog(LOG_INFO, "before");
    LogInSystemLog(quenty_com::pelu::PriorityInfo, "between");
    syslog(LOG_INFO, "after");
  });
  EXPECT_THAT(seen, MatchesRegex("<134>" + std::string(kDate) + "mine\\[[0-9]+\\]: before\\|" +
                                 Line(LOG_INFO, "\\[PELU\\]: between\\|") +
                                 Line(LOG_INFO, "[^ :]*[a-z_]+: after\\|")));
}

TEST_F(SystemLog, EveryCallReturnsOneAndLeavesNoDescriptor) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    SystemLogReceiver receiver(host);
    const int before = OpenDescriptorCount();
    const unsigned first = LogInSystemLog(quenty_com::pelu::PriorityInfo, "line");
    const unsigned second = LogAtLevel(LOG_ERR, "line");
    return std::to_string(first) + std::to_string(second) + " " +
           std::to_string(OpenDescriptorCount() - before);
  });
  EXPECT_EQ(seen, "11 0");
}

/// Runs `use` in a thread that is cancelled as soon as it can be; whether it was.
bool IsCancelledIn(void (*use)()) {
  const auto run = [](void* routine) -> void* {
    pthread_cancel(pthread_self());
    (*static_cast<void (**)()>(routine))();
    return nullptr;
  };
  pthread_t thread = 0;
  void* end = nullptr;
  if (pthread_create(&thread, nullptr, run, &use) != 0) return false;
  pthread_join(thread, &end);
  return end == PTHREAD_CANCELED;
}

TEST_F(SystemLog, CancelledLineLeavesTheLogClosed) {
  if (zebcomn_test::IsEmulated()) GTEST_SKIP() << "the emulator aborts in a cancelled thread";
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    SystemLogReceiver receiver(host);
    // The C library loads what it needs for a cancellation at the first one.
    IsCancelledIn([] { pthread_testcancel(); });
    const int before = OpenDescriptorCount();
    const auto log = [] { LogInSystemLog(quenty_com::pelu::PriorityInfo, "never sent"); };
    std::string result = IsCancelledIn(log) ? "cancelled " : "not cancelled ";
    result += std::to_string(OpenDescriptorCount() - before);
    syslog(LOG_INFO, "the program's own");
    for (const std::string& line : receiver.Arrived()) result += line;
    return result;
  });
  EXPECT_THAT(seen, MatchesRegex("cancelled 0<14>" + std::string(kDate) +
                                 "[^ :]*[a-z_]+: the program's own"));
}

TEST_F(SystemLog, WithoutAReceiverTheResultIsStillOne) {
  const std::string seen = RunInPrivateHost([](PrivateHost& host) {
    host.CoverDevices();
    unlink("/dev/console");
    return std::to_string(LogInSystemLog(quenty_com::pelu::PriorityInfo, "lost"));
  });
  EXPECT_EQ(seen, "1");
}

TEST_F(SystemLog, NullFormatWritesNothing) {
  const std::string seen = Received([] {
    // Through a plain pointer, which has no format to check.
    unsigned (*const log)(SyslogPriority, const char*, ...) = LogInSystemLog;
    if (log(quenty_com::pelu::PriorityInfo, nullptr) != 1) _exit(1);
  });
  EXPECT_EQ(seen, "");
}

}  // namespace
