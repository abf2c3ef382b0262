#include "bench/support/catalogue_floor.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <iconv.h>
#include <ifaddrs.h>
#include <mntent.h>
#include <net/if.h>
#include <netdb.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/utsname.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <memory>
#include <vector>

namespace zebcomn_bench {
namespace {

/// The texts of one collection that are converted, without the mount points and the release files:
/// computer, domain and host name, address, subnet, mask, hardware address, processor, speed, user
/// and zone.
constexpr int kConversions = 11;

/// The entries of the map that is handed back, without those of file systems.
constexpr int kProperties = 29;

constexpr std::size_t kNameCapacity = 2048;

void LookUpHost(const char* name, Take take) {
  std::array<char, 8192> texts;
  hostent entry{};
  hostent* found = nullptr;
  int error = 0;
  gethostbyname_r(name, &entry, texts.data(), texts.size(), &found, &error);
  take(found == nullptr ? name : found->h_name);
}

void TakeHostText(const sockaddr* address, socklen_t length, Take take) {
  std::array<char, NI_MAXHOST> text{};
  getnameinfo(address, length, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
  take(text.data());
}

void AskForInterface(const ifaddrs& entry, Take take) {
  const int family = entry.ifa_addr->sa_family;
  const socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
  if (if_nametoindex(entry.ifa_name) == 0) return;
  TakeHostText(entry.ifa_addr, length, take);
  TakeHostText(entry.ifa_netmask, length, take);
  const int handle = socket(family, SOCK_DGRAM, 0);
  ifreq request{};
  std::strncpy(request.ifr_name, entry.ifa_name, IFNAMSIZ - 1);
  ioctl(handle, SIOCGIFHWADDR, &request);
  close(handle);
  take(request.ifr_name);
}

/// The memory of the results, maps from names to values: for each entry its node and its texts.
class MapMemory {
 public:
  void Allocate(std::size_t name_length, int values) {
    Add(kNodeSize);
    Add(name_length * sizeof(wchar_t));
    for (int i = 0; i < values; ++i) Add(kValueSize);
  }

 private:
  static constexpr std::size_t kNodeSize = 96;
  static constexpr std::size_t kValueSize = 12 * sizeof(wchar_t);
  void Add(std::size_t size) { pieces_.emplace_back(new char[size]); }

  std::vector<std::unique_ptr<char[]>> pieces_;
};

}  // namespace

void ConvertBare(const char* text) {
  const std::size_t bytes = std::strlen(text) + 1;
  const std::unique_ptr<wchar_t[]> result(new wchar_t[bytes]);
  const std::unique_ptr<wchar_t[]> out(new wchar_t[bytes + 1]);
  const std::unique_ptr<char[]> in(new char[bytes]);
  std::memcpy(in.get(), text, bytes);
  char* from = in.get();
  char* to = reinterpret_cast<char*>(out.get());
  std::size_t from_left = bytes;
  std::size_t to_left = bytes * sizeof(wchar_t);
  const iconv_t converter = iconv_open("UCS-4LE", "UTF8");
  iconv(converter, &from, &from_left, &to, &to_left);
  iconv_close(converter);
  std::wcscpy(result.get(), out.get());
}

bool ReadWholeFile(const char* path, Take take) {
  static std::array<char, 64 * 1024 + 1> buffer;
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  ssize_t got = 0;
  ssize_t last = 0;
  while ((got = read(file, buffer.data(), buffer.size() - 1)) > 0) last = got;
  close(file);
  buffer[static_cast<std::size_t>(last)] = '\0';
  take(buffer.data());
  return last > 0;
}

void AskForNames(Take take) {
  utsname names{};
  uname(&names);
  take(names.nodename);
  std::array<char, kNameCapacity> domain{};
  std::array<char, kNameCapacity> host{};
  if (getdomainname(domain.data(), domain.size()) != 0 || domain[0] == '\0') {
    gethostname(host.data(), host.size());
    LookUpHost(host.data(), take);
  }
  take(domain.data());
  gethostname(host.data(), host.size());
  LookUpHost(host.data(), take);
}

void AskForInterfaces(Take take) {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return;
  for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || (entry->ifa_flags & IFF_UP) == 0) continue;
    if ((entry->ifa_flags & IFF_LOOPBACK) != 0) continue;
    const int family = entry->ifa_addr->sa_family;
    if (family == AF_INET || family == AF_INET6) AskForInterface(*entry, take);
  }
  freeifaddrs(list);
}

void PrintMegabytes(double total, double free) {
  std::array<wchar_t, 32> text;
  for (const double megabytes : {total, free}) {
    std::swprintf(text.data(), text.size(), L"%0.2lf", megabytes);
  }
}

void MeasureFileSystems(Take take) {
  std::FILE* table = setmntent("/etc/fstab", "r");
  if (table == nullptr) return;
  MapMemory memory;
  mntent entry{};
  std::array<char, 4096> line;
  while (getmntent_r(table, &entry, line.data(), static_cast<int>(line.size())) != nullptr) {
    struct statfs status {};
    if (statfs(entry.mnt_dir, &status) != 0 || status.f_blocks == 0) continue;
    ConvertBare(entry.mnt_dir);
    const double blocks = 1048576.0 / static_cast<double>(status.f_bsize);
    PrintMegabytes(static_cast<double>(status.f_blocks) / blocks,
                   static_cast<double>(status.f_bfree) / blocks);
    take(entry.mnt_dir);
    // An entry of the file systems' map, and the two properties that are made of it.
    const std::size_t length = std::strlen(entry.mnt_dir);
    memory.Allocate(length, 2);
    for (int i = 0; i < 2; ++i) memory.Allocate(length + 36, 1);
  }
  endmntent(table);
  PrintMegabytes(0.0, 0.0);  // The two sums.
}

void AskForUserAndTime(Take take) {
  std::array<char, 1024> texts;
  passwd entry{};
  passwd* found = nullptr;
  getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found);
  take(found == nullptr ? "root" : found->pw_name);
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  take(local.tm_zone);
}

void AskForCatalogue(Take take) {
  AskForNames(take);
  AskForInterfaces(take);
  ReadWholeFile("/proc/cpuinfo", take);
  ReadWholeFile("/proc/meminfo", take);
  MeasureFileSystems(take);
  AskForUserAndTime(take);
  for (int i = 0; i < kConversions; ++i) ConvertBare("192.168.100.200");
  if (ReadWholeFile("/etc/zebosplatform.conf", take)) ConvertBare("Edge Router 2");
  if (ReadWholeFile("/etc/wrs-release", take)) ConvertBare("4.3.0.0");
  MapMemory memory;
  for (int i = 0; i < kProperties; ++i) memory.Allocate(15, 1);
}

}  // namespace zebcomn_bench
