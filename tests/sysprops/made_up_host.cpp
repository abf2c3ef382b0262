#include "tests/sysprops/made_up_host.h"

#include <dlfcn.h>
#include <sys/vfs.h>

#include <sstream>

#include "zebcomn/sysprops/sysprops_comn.h"

namespace {

struct Blocks {
  long size;
  unsigned long long total;
  unsigned long long free;
};

/// File systems that no host has.
const std::map<std::string, Blocks> kMadeUp = {
    {"/made-up/root", {4096, 262144, 131072}},
    {"/made-up/var", {1024, 102400, 51200}},
    {"/made-up/empty", {4096, 0, 0}},
};

}  // namespace

extern "C" int statfs(const char* path, struct statfs* out) noexcept {
  const auto found = kMadeUp.find(path);
  if (found == kMadeUp.end()) {
#if defined(__USE_FILE_OFFSET64) && __SIZEOF_POINTER__ == 4
    constexpr const char* kName = "statfs64";
#else
    constexpr const char* kName = "statfs";
#endif
    return reinterpret_cast<int (*)(const char*, struct statfs*)>(dlsym(RTLD_NEXT, kName))(path,
                                                                                           out);
  }
  *out = {};
  out->f_bsize = static_cast<decltype(out->f_bsize)>(found->second.size);
  out->f_blocks = found->second.total;
  out->f_bfree = found->second.free;
  return 0;
}

namespace zebcomn_test {
namespace {

constexpr const char* kCpuinfo =
    "processor\t: 0\ncpu\t\t: e500v2\nclock\t\t: 1333.333330MHz\nrevision\t: 5.1\n\n"
    "processor\t: 1\ncpu\t\t: e500v2\nclock\t\t: 1333.333330MHz\nrevision\t: 5.1\n\n"
    "total bogomips\t: 266.66\nplatform\t: Board\nmodel\t\t: fixture,Board\n";

constexpr const char* kMeminfo =
    "MemTotal:        1031428 kB\nMemFree:           81234 kB\nBuffers:  1 kB\n";

constexpr const char* kFstab =
    "# made up\n"
    "/dev/sda1 /made-up/root ext3 defaults 0 1\n"
    "/dev/sda2 /made-up/var ext3 defaults 0 2\n"
    "server:/export /mnt nfs defaults 0 0\n"
    "//host/share /tmp cifs defaults 0 0\n"
    "/dev/sda3 /made-up/empty ext3 defaults 0 0\n"
    "/dev/sda4 /made-up/missing ext3 defaults 0 0\n";

const Values kMadeUpValues = {
    {"CPUType", " fixture,Board"},
    {"CPUSpeed", " 1333.333330MHz"},
    {"NumOfCPU", "2"},
    {"CPUSerialNumber", "N/A"},
    {"ComputerName", "alpha"},
    {"DomainName", "nis.example"},
    {"IPHostName", "alpha.example.net"},
    {"IPXAddress", "N/A"},
    {"IPAddress", "192.0.2.7"},
    {"NETAddress", "021a2b3c4d5e"},
    {"SubnetAddress", "192.0.2.0"},
    {"SubnetMask", "255.255.255.0"},
    {"TotalPhysicalMemory", "1056182272"},
    {"FreeMemory", "83183616"},
    {"OSType", "Linux"},
    {"OSBitMode", "0"},
    {"OSPlatform", "Edge Router 2"},
    {"OSVersion", "4.3.0.0_cgl"},
    {"OSBuildNum", "N/A"},
    {"OSCsdVersion", "0"},
    {"OSOEMId", "Wind River"},
    {"PlatformID", "WRLNX"},
    {"DefaultLangID", "0409"},
    {"NumberOfFileSystems", "2"},
    {"TotalDiskSpace", "1124.00"},
    {"FreeDiskSpace", "562.00"},
};

}  // namespace

void PutMadeUpFiles(PrivateHost& host) {
  host.PutFile("/proc/cpuinfo", kCpuinfo);
  host.PutFile("/proc/meminfo", kMeminfo);
  host.PutFile("/etc/fstab", kFstab);
  host.PutFile("/etc/wrs-release", "Wind River Linux 4.3.0.0_cgl glibc\n");
  host.PutFile("/etc/zebosplatform.conf", "Edge Router 2\nsecond line\n");
  host.PutFile("/etc/hosts", "127.0.0.1 localhost\n192.0.2.7 alpha.example.net alpha\n");
  host.PutFile("/etc/nsswitch.conf", "passwd: files\nhosts: files\n");
  host.SetNodeName("alpha");
  host.SetNisDomain("nis.example");
  host.Ip("link set lo up");
}

void AddMadeUpLinks(PrivateHost& host) {
  host.AddVeth("port0");
  host.AddVeth("port1");
  host.Ip("link set port0 address 02:1a:2b:3c:4d:5e");
  host.Ip("link set port1 address 02:00:00:00:00:01");
  host.Ip("addr add 192.0.2.7/24 dev port0");
  host.Ip("addr add 192.0.2.200/25 dev port0");
  host.Ip("addr add 198.51.100.9/16 dev port1");
  host.AddIpv6("2001:db8::9/32", "port1");
}

const Values& MadeUpValues() {
  return kMadeUpValues;
}

std::string Lines(const quenty_com::pelu::sysprops::PropertyMap& props) {
  using quenty_com::pelu::sysprops::sysprops_wide_to_ansi;
  std::ostringstream lines;
  for (const auto& [name, value] : props) {
    lines << sysprops_wide_to_ansi(name) << '=' << sysprops_wide_to_ansi(value) << '\n';
  }
  return lines.str();
}

std::string ValueIn(const std::string& lines, const std::string& name) {
  const std::string text = "\n" + lines;
  const std::size_t at = text.find("\n" + name + "=");
  if (at == std::string::npos) return "missing";
  const std::size_t start = at + name.size() + 2;
  return text.substr(start, text.find('\n', start) - start);
}

}  // namespace zebcomn_test
