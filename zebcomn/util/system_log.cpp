#include "zebcomn/util/system_log.h"

#include <syslog.h>

#include <cerrno>

#include "zebcomn/portable/cancellation_internal.h"

namespace quenty_com::pelu {
namespace {

constexpr const char* kIdent = "[PELU]";
constexpr unsigned kLogged = 1;

int LevelOf(SyslogPriority priority) {
  switch (priority) {
    case PriorityCritical:
      return LOG_CRIT;
    case PriorityError:
      return LOG_ERR;
    case PriorityWarning:
      return LOG_WARNING;
    case PriorityInfo:
      break;
  }
  return LOG_INFO;
}

/// Owns the log while it is open. A thread may be cancelled in a line, but not while it opens or
/// closes the log: the C library would keep a descriptor, and a destructor cannot be unwound.
class OpenLog {
 public:
  OpenLog() {
    const zebcomn::CancellationHeldOff no_cancellation;
    openlog(kIdent, LOG_CONS | LOG_NDELAY, LOG_USER);
  }
  ~OpenLog() {
    const zebcomn::CancellationHeldOff no_cancellation;
    closelog();
  }
  OpenLog(const OpenLog&) = delete;
  OpenLog& operator=(const OpenLog&) = delete;
};

}  // namespace

unsigned LogInSystemLog(SyslogPriority priority, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const unsigned logged = vLogInSystemLog(LevelOf(priority), format, args);
  va_end(args);
  return logged;
}

unsigned vLogInSystemLog(int level, const char* format, va_list args) {
  if (format == nullptr) return kLogged;
  // The opening can change it, and "%m" in the format stands for the caller's.
  const int error = errno;
  // Kept: opened and closed around every line, so that no setting of the program's own outlives it.
  const OpenLog log;
  errno = error;
  vsyslog(level, format, args);
  return kLogged;
}

}  // namespace quenty_com::pelu
