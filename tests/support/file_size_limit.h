#ifndef ZEBCOMN_TESTS_SUPPORT_FILE_SIZE_LIMIT_H_
#define ZEBCOMN_TESTS_SUPPORT_FILE_SIZE_LIMIT_H_

#include <sys/resource.h>

namespace zebcomn_test {

/// Lets no file that this process writes grow past `bytes`; false when the system refuses. The hard
/// limit stays as it is, so that a coverage build can still write its counters at the end of the
/// process.
inline bool LimitFileSize(rlim_t bytes) {
  rlimit limit{};
  if (getrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
  limit.rlim_cur = bytes;
  return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_FILE_SIZE_LIMIT_H_
