#ifndef ZEBCOMN_TESTS_SUPPORT_SYSTEM_LOG_RECEIVER_H_
#define ZEBCOMN_TESTS_SUPPORT_SYSTEM_LOG_RECEIVER_H_

#include <string>
#include <vector>

#include "tests/support/private_host.h"

namespace zebcomn_test {

/// The system log of a private host: a datagram socket at "/dev/log", from which a test takes the
/// lines as the C library sent them, such as "<14>Nov 21 09:30:00 [PELU]: text". A sender waits
/// when about ten lines have not been taken.
class SystemLogReceiver {
 public:
  /// Covers the host's devices. Throws when the socket cannot be bound.
  explicit SystemLogReceiver(PrivateHost& host);
  ~SystemLogReceiver();
  SystemLogReceiver(const SystemLogReceiver&) = delete;
  SystemLogReceiver& operator=(const SystemLogReceiver&) = delete;

  /// The lines that have arrived by now; a line has arrived when the call that sent it returns.
  std::vector<std::string> Arrived();
  /// Waits for one line. Throws when none comes within a generous time.
  std::string Next();

 private:
  int socket_;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_SYSTEM_LOG_RECEIVER_H_
