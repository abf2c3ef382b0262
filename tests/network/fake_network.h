#ifndef ZEBCOMN_TESTS_NETWORK_FAKE_NETWORK_H_
#define ZEBCOMN_TESTS_NETWORK_FAKE_NETWORK_H_

#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <sys/socket.h>

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace zebcomn_test {

/// A chain as getifaddrs gives it, made by hand.
class FakeChain {
 public:
  /// Appends an entry. An empty `address` or `mask` is a null one; a number without dots and colons
  /// is a socket address of that family with nothing in it.
  void Add(const std::string& name, unsigned int flags, const std::string& address,
           const std::string& mask, unsigned int scope = 0);
  ifaddrs* head() { return entries_.empty() ? nullptr : &entries_.front().entry; }

 private:
  struct Entry {
    std::string name;
    ifaddrs entry{};
    sockaddr_storage address{};
    sockaddr_storage mask{};
  };
  std::deque<Entry> entries_;
};

/// What the C library's network calls do in this executable, which defines them all itself: a hook
/// that is set decides; without one the real call is made. The members count what is owned.
struct FakeNetwork {
  std::function<int(ifaddrs** chain)> getifaddrs;
  std::function<unsigned int(const char* name)> if_nametoindex;
  std::function<int(int family, int type, int protocol)> socket;
  std::function<int(int fd, ifreq* request)> hardware_address;
  std::function<int(int fd, const sockaddr* address, socklen_t length)> connect;
  std::function<int(int fd, sockaddr* address, socklen_t* length)> getsockname;
  std::function<int(const char* node, const char* service, const addrinfo* hints, addrinfo** list)>
      getaddrinfo;
  std::function<int(const sockaddr* address, socklen_t length, char* host, socklen_t host_length,
                    char* service, socklen_t service_length, int flags)>
      getnameinfo;
  std::function<const char*(int family, const void* address, char* text, socklen_t size)> inet_ntop;

  int freed_chains = 0;            ///< Calls of freeifaddrs with `chain`.
  ifaddrs* chain = nullptr;        ///< The chain that was given away last.
  std::set<addrinfo*> live_lists;  ///< Fake resolver lists that nobody has freed.

  /// Answers getifaddrs with `fake`, which must outlive the test's calls. Interfaces get the index
  /// that `indexes` has for their name, and the hardware address 02:00:00:00:00:index.
  void Serve(FakeChain& fake, std::map<std::string, unsigned int> indexes);
  /// A resolver list with these numeric addresses ("address%scope" for IPv6) and this port.
  addrinfo* NewList(const std::vector<std::string>& addresses, const char* port);
};

/// The one fake of this executable. A test begins with `Network() = FakeNetwork();`.
FakeNetwork& Network();

/// The C library's own getnameinfo.
int RealGetnameinfo(const sockaddr* address, socklen_t length, char* host, socklen_t host_length,
                    char* service, socklen_t service_length, int flags);
/// The C library's own socket.
int RealSocket(int family, int type, int protocol);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_NETWORK_FAKE_NETWORK_H_
