#ifndef ZEBCOMN_TESTS_NETWORK_REMOTE_PEER_H_
#define ZEBCOMN_TESTS_NETWORK_REMOTE_PEER_H_

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/support/private_host.h"

namespace zebcomn_test {

/// Another host at the far end of a veth pair of a private host: a process in a network namespace
/// of its own that takes the end `name`-peer over and listens on one address. It ends with the
/// object.
class RemotePeer {
 public:
  /// `addresses` are given to the link there ("192.0.2.8/24"); `listen_on` is one of them, with a
  /// "%name-peer" scope when it is link-local.
  RemotePeer(PrivateHost& host, const std::string& name, const std::vector<std::string>& addresses,
             const std::string& listen_on);
  ~RemotePeer();
  RemotePeer(const RemotePeer&) = delete;
  RemotePeer& operator=(const RemotePeer&) = delete;

  const std::string& port() const { return port_; }

 private:
  int to_peer_ = -1;
  int from_peer_ = -1;
  pid_t child_ = -1;
  std::string port_;
};

/// Lets every IPv6 address of the namespace that the caller is in be usable at once, and none come
/// up by itself. False where the kernel has no IPv6.
bool MakeIpv6Predictable();

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_NETWORK_REMOTE_PEER_H_
