#include "tests/reliability/swept_host.h"

#include "tests/network/remote_peer.h"

namespace zebcomn_test {

void PutSystem(PrivateHost& host) {
  host.PutFile("/proc/cpuinfo",
               "processor\t: 0\nclock\t\t: 1333.33MHz\n\nprocessor\t: 1\nclock\t\t: 1333.33MHz\n\n"
               "model\t\t: fixture,Board\n");
  host.PutFile("/proc/meminfo", "MemTotal:        1031428 kB\nMemFree:           81234 kB\n");
  host.PutFile("/etc/fstab", "none /mnt tmpfs defaults 0 0\nnone /mnt/. tmpfs defaults 0 0\n");
  host.PutFile("/etc/wrs-release", "Wind River Linux 4.3.0.0_cgl glibc\n");
  host.PutFile("/etc/zebosplatform.conf", "Edge Router 2\n");
  host.PutFile("/etc/nsswitch.conf", "passwd: files\nhosts: files\n");
  host.PutFile("/etc/hosts", "192.0.2.7 alpha.long-name.example.net alpha\n");
  host.PutEmptyDirectory("/mnt");
  host.SetNodeName("alpha");
  host.SetNisDomain("nis.example.org");
  MakeIpv6Predictable();
  host.AddVeth("port0");
  host.Ip("link set port0 address 02:1a:2b:3c:4d:5e");
  host.Ip("addr add 192.0.2.7/24 dev port0");
  host.Ip("addr add 192.0.2.200/25 dev port0");
}

}  // namespace zebcomn_test
