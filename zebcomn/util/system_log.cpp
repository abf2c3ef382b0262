#include "zebcomn/util/system_log.h"

#include <syslog.h>

#include <cerrno>

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
  openlog(kIdent, LOG_CONS | LOG_NDELAY, LOG_USER);
  errno = error;
  vsyslog(level, format, args);
  closelog();
  return kLogged;
}

}  // namespace quenty_com::pelu
