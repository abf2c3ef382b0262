#include "tests/support/descriptors.h"

#include <fcntl.h>

namespace zebcomn_test {
namespace {

constexpr int kDescriptorsLooked = 1024;

}  // namespace

int OpenDescriptorCount() {
  int count = 0;
  for (int fd = 0; fd < kDescriptorsLooked; ++fd) {
    if (fcntl(fd, F_GETFD) != -1) ++count;
  }
  return count;
}

int InheritedDescriptorCount() {
  int count = 0;
  for (int fd = 0; fd < kDescriptorsLooked; ++fd) {
    const int flags = fcntl(fd, F_GETFD);
    if (flags != -1 && (flags & FD_CLOEXEC) == 0) ++count;
  }
  return count;
}

}  // namespace zebcomn_test
