#ifndef ZEBCOMN_TESTS_NETWORK_LISTENER_H_
#define ZEBCOMN_TESTS_NETWORK_LISTENER_H_

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace zebcomn_test {

/// A TCP peer that listens on a numeric address, on a port that the kernel chooses, until its end.
/// The kernel completes the connections made to it.
class Listener {
 public:
  explicit Listener(const std::string& address) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    if (getaddrinfo(address.c_str(), "0", &hints, &list) != 0) Fail(address);
    fd_ = socket(list->ai_family, SOCK_STREAM, 0);
    const bool bound =
        bind(fd_, list->ai_addr, list->ai_addrlen) == 0 && listen(fd_, SOMAXCONN) == 0;
    freeaddrinfo(list);
    if (!bound) Fail(address);
    sockaddr_storage own{};
    socklen_t length = sizeof own;
    char port[NI_MAXSERV] = "";
    auto* generic = reinterpret_cast<sockaddr*>(&own);
    if (getsockname(fd_, generic, &length) != 0 ||
        getnameinfo(generic, length, nullptr, 0, port, sizeof port, NI_NUMERICSERV) != 0) {
      Fail(address);
    }
    port_ = port;
  }
  ~Listener() { close(fd_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  const std::string& port() const { return port_; }

 private:
  [[noreturn]] static void Fail(const std::string& address) {
    throw std::runtime_error("cannot listen on " + address);
  }

  int fd_ = -1;
  std::string port_;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_NETWORK_LISTENER_H_
