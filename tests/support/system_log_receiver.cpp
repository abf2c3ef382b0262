#include "tests/support/system_log_receiver.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace zebcomn_test {
namespace {

constexpr const char* kSystemLog = "/dev/log";
constexpr int kPatienceMilliseconds = 60000;
constexpr size_t kLongestLine = 65536;

bool Receive(int socket, std::string& line) {
  line.resize(kLongestLine);
  const ssize_t got = recv(socket, line.data(), line.size(), MSG_DONTWAIT);
  if (got >= 0) line.resize(static_cast<size_t>(got));
  return got >= 0;
}

}  // namespace

SystemLogReceiver::SystemLogReceiver(PrivateHost& host)
    : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  host.CoverDevices();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, kSystemLog);
  if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    close(socket_);
    throw std::runtime_error("cannot bind /dev/log");
  }
}

SystemLogReceiver::~SystemLogReceiver() {
  close(socket_);
}

std::vector<std::string> SystemLogReceiver::Arrived() {
  std::vector<std::string> lines;
  for (std::string line; Receive(socket_, line);) lines.push_back(line);
  return lines;
}

std::string SystemLogReceiver::Next() {
  pollfd watched = {socket_, POLLIN, 0};
  std::string line;
  if (poll(&watched, 1, kPatienceMilliseconds) != 1 || !Receive(socket_, line)) {
    throw std::runtime_error("no line came to the system log");
  }
  return line;
}

}  // namespace zebcomn_test
