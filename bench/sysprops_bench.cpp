// One whole collection of the system properties beside a floor that makes only the calls that it
// cannot do without, in processor time. Two lines tell the ratios: on this machine as it is, and
// with the "/proc/cpuinfo" of 256 processors. A ratio above its limit makes the program fail.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <iconv.h>
#include <ifaddrs.h>
#include <mntent.h>
#include <net/if.h>
#include <netdb.h>
#include <pwd.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/utsname.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "zebcomn/sysprops/sysprops.h"

namespace {

namespace sysprops = quenty_com::pelu::sysprops;

constexpr double kLimit = 1.25;

/// The bound file of 256 processors comes out of the page cache about a hundred times faster than a
/// kernel writes it, so the search of its 340 KB shows, which it would not on such a machine.
constexpr double kBoundFileLimit = 1.6;
constexpr int kProcessors = 256;

/// The texts of one collection that are converted, without the mount points and the release files:
/// computer, domain and host name, address, subnet, mask, hardware address and the last known
/// address (the other way), processor, speed and count, both memory sizes, user, zone and time.
constexpr int kConversions = 16;

bool ReadWhole(const char* path) {
  static std::array<char, 64 * 1024> buffer;
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  ssize_t got = 0;
  bool any = false;
  while ((got = read(file, buffer.data(), buffer.size())) > 0) any = true;
  close(file);
  return any;
}

void Convert(const char* text) {
  std::array<char, 256> in{};
  std::array<char, 1024> out{};
  std::strncpy(in.data(), text, in.size() - 1);
  char* from = in.data();
  char* to = out.data();
  std::size_t from_left = std::strlen(text) + 1;
  std::size_t to_left = out.size();
  iconv_t converter = iconv_open("UCS-4LE", "UTF8");
  iconv(converter, &from, &from_left, &to, &to_left);
  iconv_close(converter);
  benchmark::DoNotOptimize(out);
}

void LookUpHost(const char* name) {
  std::array<char, 8192> texts;
  hostent entry{};
  hostent* found = nullptr;
  int error = 0;
  gethostbyname_r(name, &entry, texts.data(), texts.size(), &found, &error);
  benchmark::DoNotOptimize(found);
}

void AskForNames() {
  utsname names{};
  uname(&names);
  std::array<char, 2048> domain{};
  std::array<char, 2048> host{};
  if (getdomainname(domain.data(), domain.size()) != 0 || domain[0] == '\0') {
    gethostname(host.data(), host.size());
    LookUpHost(host.data());
  }
  gethostname(host.data(), host.size());
  LookUpHost(host.data());
}

void AskForInterfaces() {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return;
  for (ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || (entry->ifa_flags & IFF_UP) == 0) continue;
    if ((entry->ifa_flags & IFF_LOOPBACK) != 0) continue;
    const int family = entry->ifa_addr->sa_family;
    if (family != AF_INET && family != AF_INET6) continue;
    benchmark::DoNotOptimize(if_nametoindex(entry->ifa_name));
    const socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
    std::array<char, NI_MAXHOST> text{};
    getnameinfo(entry->ifa_addr, length, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
    getnameinfo(entry->ifa_netmask, length, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
    const int handle = socket(family, SOCK_DGRAM, 0);
    ifreq request{};
    std::strncpy(request.ifr_name, entry->ifa_name, IFNAMSIZ - 1);
    ioctl(handle, SIOCGIFHWADDR, &request);
    close(handle);
    benchmark::DoNotOptimize(request);
  }
  freeifaddrs(list);
}

void MeasureFileSystems() {
  std::FILE* table = setmntent("/etc/fstab", "r");
  if (table == nullptr) return;
  mntent entry{};
  std::array<char, 4096> line;
  while (getmntent_r(table, &entry, line.data(), static_cast<int>(line.size())) != nullptr) {
    struct statfs status {};
    if (statfs(entry.mnt_dir, &status) == 0 && status.f_blocks != 0) Convert(entry.mnt_dir);
  }
  endmntent(table);
}

void AskForUserAndTime() {
  std::array<char, 1024> texts;
  passwd entry{};
  passwd* found = nullptr;
  getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found);
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  benchmark::DoNotOptimize(local);
}

void Collect_Floor(benchmark::State& state) {
  for (auto _ : state) {
    AskForNames();
    AskForInterfaces();
    ReadWhole("/proc/cpuinfo");
    ReadWhole("/proc/meminfo");
    MeasureFileSystems();
    AskForUserAndTime();
    for (int i = 0; i < kConversions; ++i) Convert("192.168.100.200");
    if (ReadWhole("/etc/zebosplatform.conf")) Convert("Edge Router 2");
    if (ReadWhole("/etc/wrs-release")) Convert("4.3.0.0");
  }
}
BENCHMARK(Collect_Floor);

void Collect_Library(benchmark::State& state) {
  for (auto _ : state) {
    sysprops::ISysProps properties;
    sysprops::PropertyMap props;
    benchmark::DoNotOptimize(properties.GetAllSystemProperties(props));
  }
}
BENCHMARK(Collect_Library);

/// Binds the made-up file over "/proc/cpuinfo", for this process only.
bool BindProcessors(const char* path) {
  if (geteuid() != 0) {
    std::puts("not root: the file of 256 processors is not measured");
    return false;
  }
  return unshare(CLONE_NEWNS) == 0 &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount(path, "/proc/cpuinfo", nullptr, MS_BIND, nullptr) == 0;
}

/// This machine's first processor, 256 times.
bool WriteProcessors(const char* path) {
  std::ifstream real("/proc/cpuinfo");
  std::vector<std::string> lines;
  for (std::string line; std::getline(real, line) && !line.empty();) lines.push_back(line);
  std::ofstream file(path);
  for (int i = 0; i < kProcessors; ++i) {
    file << "processor\t: " << i << '\n';
    for (std::size_t k = 1; k < lines.size(); ++k) file << lines[k] << '\n';
    file << '\n';
  }
  file.close();
  return file.good();
}

/// Keeps the best time of each benchmark.
class BestTimes : public benchmark::ConsoleReporter {
 public:
  BestTimes() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double time = run.GetAdjustedCPUTime();
      const auto [best, added] = times_.emplace(run.run_name.function_name, time);
      if (!added) best->second = std::min(best->second, time);
    }
  }

  /// Prints the ratio and whether it is within the limit; forgets the times.
  bool Judge(const char* what, double limit) {
    const double ratio = times_["Collect_Library"] / times_["Collect_Floor"];
    std::printf("%-28s %.3f times the floor, limit %.2f\n", what, ratio, limit);
    times_.clear();
    return ratio <= limit;
  }

 private:
  std::map<std::string, double> times_;
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> words(argv, argv + argc);
  std::string repetitions = "--benchmark_repetitions=15";
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  std::string time = "--benchmark_min_time=0.1";
  words.insert(words.begin() + 1, {repetitions.data(), interleaving.data(), time.data()});
  int count = static_cast<int>(words.size());
  benchmark::Initialize(&count, words.data());
  if (benchmark::ReportUnrecognizedArguments(count, words.data())) return 1;

  BestTimes reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  bool good = reporter.Judge("this machine", kLimit);

  std::string path = "/tmp/zebcomn-cpuinfo-XXXXXX";
  close(mkstemp(path.data()));
  if (WriteProcessors(path.c_str()) && BindProcessors(path.c_str())) {
    benchmark::RunSpecifiedBenchmarks(&reporter);
    good = reporter.Judge("256 processors", kBoundFileLimit) && good;
  }
  unlink(path.c_str());
  return good ? 0 : 1;
}
