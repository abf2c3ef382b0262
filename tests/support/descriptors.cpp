#include "tests/support/descriptors.h"

#include <fcntl.h>

namespace zebcomn_test {

int OpenDescriptorCount() {
  constexpr int kHighestLooked = 1024;
  int count = 0;
  for (int fd = 0; fd < kHighestLooked; ++fd) {
    if (fcntl(fd, F_GETFD) != -1) ++count;
  }
  return count;
}

}  // namespace zebcomn_test
