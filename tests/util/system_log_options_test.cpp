// The calls behind a line in the system log: opened, written and closed each time.
#include <gtest/gtest.h>
#include <pthread.h>
#include <syslog.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "zebcomn/util/system_log.h"

namespace {

std::vector<std::string> calls;

// The calls, one after the other, in which the thread may be cancelled.
std::string cancellable;

void NoteCancellation(const char* call) {
  int state = PTHREAD_CANCEL_DISABLE;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
  pthread_setcancelstate(state, nullptr);
  if (state == PTHREAD_CANCEL_ENABLE) cancellable += std::string(call) + " ";
}

void Write(int level, const char* format, va_list args) __attribute__((format(printf, 2, 0)));
void Write(int level, const char* format, va_list args) {
  NoteCancellation("vsyslog");
  char text[256] = "";
  vsnprintf(text, sizeof text, format, args);
  calls.push_back("vsyslog " + std::to_string(level) + " " + text);
}

}  // namespace

extern "C" {
void openlog(const char* ident, int options, int facility) {
  NoteCancellation("openlog");
  calls.push_back("openlog " + std::string(ident) + " " + std::to_string(options) + " " +
                  std::to_string(facility));
  errno = EPROTOTYPE;  // As a log behind a stream leaves it.
}
void closelog() {
  NoteCancellation("closelog");
  calls.emplace_back("closelog");
}
void vsyslog(int level, const char* format, va_list args) {
  Write(level, format, args);
}
/// What a fortified library calls.
void __vsyslog_chk(int level, int, const char* format, va_list args)
    __attribute__((format(printf, 3, 0)));
void __vsyslog_chk(int level, int, const char* format, va_list args) {
  Write(level, format, args);
}
}

namespace {

TEST(SystemLogOptions, LogIsOpenedAndClosedAroundEveryLine) {
  using namespace quenty_com::pelu;
  calls.clear();
  LogInSystemLog(PriorityWarning, "first %d", 1);
  LogInSystemLog(PriorityInfo, "second");
  const std::string opened =
      "openlog [PELU] " + std::to_string(LOG_CONS | LOG_NDELAY) + " " + std::to_string(LOG_USER);
  EXPECT_EQ(calls, (std::vector<std::string>{opened, "vsyslog 4 first 1", "closelog", opened,
                                             "vsyslog 6 second", "closelog"}));
}

// A cancellation in the opening or the closing would lose a descriptor, or end the process.
TEST(SystemLogOptions, ThreadMayBeCancelledInTheLineAlone) {
  cancellable.clear();
  quenty_com::pelu::LogInSystemLog(quenty_com::pelu::PriorityInfo, "line");
  EXPECT_EQ(cancellable, "vsyslog ");
  NoteCancellation("afterwards");
  EXPECT_EQ(cancellable, "vsyslog afterwards ");
}

TEST(SystemLogOptions, ReasonInTheFormatIsTheCallers) {
  using namespace quenty_com::pelu;
  calls.clear();
  // Through a plain pointer: "%m" is no part of the language's own formats.
  unsigned (*const log)(SyslogPriority, const char*, ...) = LogInSystemLog;
  errno = ENOSPC;
  log(PriorityError, "cannot write: %m");
  EXPECT_EQ(calls.at(1), std::string("vsyslog 3 cannot write: ") + std::strerror(ENOSPC));
}

}  // namespace
