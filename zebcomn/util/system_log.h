#ifndef ZEBCOMN_UTIL_SYSTEM_LOG_H_
#define ZEBCOMN_UTIL_SYSTEM_LOG_H_

/// \file
/// Puts single lines into the system log, before or outside the agent's own logging.
///
/// Every line is written under the ident "[PELU]", with the facility `LOG_USER` and the options
/// `LOG_CONS | LOG_NDELAY`. The log is opened and closed around each line: a program's own
/// `openlog` settings are replaced, and closed afterwards. Any thread may log; lines of several
/// threads stay whole, but one thread's `closelog` may come between another's `openlog` and its
/// line, which is then written under the program's name. No call touches `nErrno`.
///
/// \par Example
/// \include log_and_signals.cpp

#include <cstdarg>

#include "zebcomn/export.h"

namespace quenty_com::pelu {

/// How grave a line is. A value outside of these four counts as `PriorityInfo`.
enum SyslogPriority : int {
  PriorityCritical = 0,  ///< `LOG_CRIT`
  PriorityError = 1,     ///< `LOG_ERR`
  PriorityWarning = 2,   ///< `LOG_WARNING`
  PriorityInfo = 3       ///< `LOG_INFO`
};

/// Formats as `printf` does, "%m" being the text of the caller's `errno`, and writes one line. A
/// null `format` writes nothing.
/// \param priority how grave the line is.
/// \param format as for `printf`, followed by its arguments.
/// \return 1, also when nobody receives the line.
ZEBCOMN_EXPORT unsigned LogInSystemLog(SyslogPriority priority, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

/// The same with a level of the system's own (`LOG_EMERG` to `LOG_DEBUG`) and an argument list,
/// which is used up.
/// \param level the system's level.
/// \param format as for `vprintf`.
/// \param args the arguments.
/// \return 1.
ZEBCOMN_EXPORT unsigned vLogInSystemLog(int level, const char* format, va_list args)
    __attribute__((format(printf, 2, 0)));

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_SYSTEM_LOG_H_
