#include "tests/network/remote_peer.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <exception>
#include <stdexcept>

#include "tests/network/listener.h"
#include "tests/support/scratch_dir.h"

namespace zebcomn_test {
namespace {

void SendLine(int fd, const std::string& line) {
  const std::string text = line + "\n";
  if (write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size())) _exit(4);
}

/// The next line, or "" at the end of the stream.
std::string ReadLine(int fd) {
  std::string line;
  for (char byte = 0; read(fd, &byte, 1) == 1 && byte != '\n';) line += byte;
  return line;
}

void PeerMain(const std::string& link, const std::vector<std::string>& addresses,
              const std::string& listen_on, int in, int out) {
  if (unshare(CLONE_NEWNET) != 0) throw std::runtime_error("unshare");
  MakeIpv6Predictable();
  SendLine(out, "ready");
  ReadLine(in);
  PrivateHost here;
  here.Ip("link set lo up");
  here.Ip("link set " + link + " up");
  for (const std::string& address : addresses) {
    if (address.find(':') != std::string::npos) {
      here.AddIpv6(address, link);
    } else {
      here.Ip("addr add " + address + " dev " + link);
    }
  }
  const Listener listener(listen_on);
  SendLine(out, listener.port());
  ReadLine(in);
}

}  // namespace

RemotePeer::RemotePeer(PrivateHost& host, const std::string& name,
                       const std::vector<std::string>& addresses, const std::string& listen_on) {
  const std::string link = name + "-peer";
  std::array<int, 2> down{};
  std::array<int, 2> up{};
  if (pipe2(down.data(), O_CLOEXEC) != 0 || pipe2(up.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("pipe2");
  }
  child_ = fork();
  if (child_ < 0) throw std::runtime_error("fork");
  if (child_ == 0) {
    close(down[1]);
    close(up[0]);
    try {
      PeerMain(link, addresses, listen_on, down[0], up[1]);
    } catch (const std::exception& error) {
      SendLine(up[1], error.what());
      _exit(1);
    }
    _exit(0);
  }
  close(down[0]);
  close(up[1]);
  to_peer_ = down[1];
  from_peer_ = up[0];
  if (const std::string answer = ReadLine(from_peer_); answer != "ready") {
    throw std::runtime_error("the remote peer: " + answer);
  }
  host.Ip("link set " + link + " netns " + std::to_string(child_));
  SendLine(to_peer_, "go");
  port_ = ReadLine(from_peer_);
  if (port_.find_first_not_of("0123456789") != std::string::npos || port_.empty()) {
    throw std::runtime_error("the remote peer: " + port_);
  }
}

RemotePeer::~RemotePeer() {
  close(to_peer_);
  close(from_peer_);
  waitpid(child_, nullptr, 0);
}

bool MakeIpv6Predictable() {
  const std::string folder = "/proc/sys/net/ipv6/conf/";
  if (access(folder.c_str(), F_OK) != 0) return false;
  for (const char* scope : {"all", "default"}) {
    WriteFile(folder + scope + "/disable_ipv6", "0");
    WriteFile(folder + scope + "/accept_dad", "0");
    WriteFile(folder + scope + "/addr_gen_mode", "1");
  }
  return true;
}

}  // namespace zebcomn_test
