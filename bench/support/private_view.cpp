#include "bench/support/private_view.h"

#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <utility>
#include <vector>

#include "bench/support/scratch.h"

namespace zebcomn_bench {
namespace {

constexpr int kMostInterfaces = 4;

const char* NameOfKind(int kind) {
  return kind == CLONE_NEWNET ? "/proc/thread-self/ns/net" : "/proc/thread-self/ns/mnt";
}

std::string Failure(const char* what) {
  return std::string(what) + ": " + std::strerror(errno);
}

/// Writes this machine's first processor so many times.
std::string WriteProcessors(int processors) {
  std::ifstream real("/proc/cpuinfo");
  std::vector<std::string> lines;
  for (std::string line; std::getline(real, line) && !line.empty();) lines.push_back(line);
  const std::string path = ScratchFolder() + "/cpuinfo-" + std::to_string(processors);
  std::ofstream file(path);
  for (int i = 0; i < processors; ++i) {
    file << "processor\t: " << i << '\n';
    for (std::size_t k = 1; k < lines.size(); ++k) file << lines[k] << '\n';
    file << '\n';
  }
  return path;
}

/// Puts one file in the place of another, in mounts of the process's own.
std::string Bind(const std::string& path, const char* place) {
  if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return Failure("mount");
  if (mount(path.c_str(), place, nullptr, MS_BIND, nullptr) != 0) return Failure("mount");
  return {};
}

/// Any path can be asked for the space of its file system, so each entry names a file.
std::string WriteMounts(int entries) {
  const std::string& folder = FolderOfEntries(static_cast<std::size_t>(entries));
  const std::string path = ScratchFolder() + "/fstab-" + std::to_string(entries);
  std::ofstream file(path);
  for (int i = 0; i < entries; ++i) {
    file << "/dev/disk" << i << ' ' << folder << "/entry-" << i << (i % 2 == 0 ? ".log" : ".txt")
         << " ext4 defaults 0 0\n";
  }
  return path;
}

/// The commands of one `ip -batch` that make the links and their addresses.
std::string NetworkCommands(int addresses) {
  std::string commands;
  const auto add = [&](const std::string& command) { commands += command + '\n'; };
  const int interfaces = addresses < kMostInterfaces ? 2 : kMostInterfaces;
  for (int i = 0; i < interfaces; i += 2) {
    const std::string pair[] = {"bench" + std::to_string(i), "bench" + std::to_string(i + 1)};
    add("link add " + pair[0] + " type veth peer name " + pair[1]);
    for (const std::string& name : pair) {
      // No address of the kernel's own.
      add("link set " + name + " addrgenmode none");
      add("link set " + name + " up");
    }
  }
  for (int i = 0; i < addresses; ++i) {
    const std::string where = " dev bench" + std::to_string(i % interfaces);
    const std::string host = std::to_string(i / 2 + 1);
    add(i % 2 == 0 ? "addr add 10." + std::to_string(i % interfaces) + ".0." + host + "/16" + where
                   : "addr add fd00:" + std::to_string(i % interfaces) + "::" + host + "/64" +
                         where + " nodad");
  }
  return commands;
}

std::string MakeNetwork(int addresses) {
  const std::string batch = ScratchFolder() + "/network-" + std::to_string(addresses);
  std::ofstream(batch) << NetworkCommands(addresses);
  const char* const words[] = {"ip", "-batch", batch.c_str(), nullptr};
  pid_t child = 0;
  int status = 0;
  if (posix_spawnp(&child, words[0], nullptr, nullptr, const_cast<char**>(words), environ) != 0 ||
      waitpid(child, &status, 0) != child) {
    return "ip cannot be run";
  }
  return status == 0 ? "" : "ip failed";
}

}  // namespace

PrivateView PrivateView::OfProcessors(int processors) {
  PrivateView view;
  view.kind_ = CLONE_NEWNS;
  view.Enter([=] { return Bind(WriteProcessors(processors), "/proc/cpuinfo"); });
  return view;
}

PrivateView PrivateView::OfMounts(int entries) {
  PrivateView view;
  view.kind_ = CLONE_NEWNS;
  view.Enter([=] { return Bind(WriteMounts(entries), "/etc/fstab"); });
  return view;
}

PrivateView PrivateView::OfAddresses(int addresses) {
  PrivateView view;
  view.kind_ = CLONE_NEWNET;
  view.Enter([=] { return MakeNetwork(addresses); });
  return view;
}

void PrivateView::Enter(const std::function<std::string()>& furnish) {
  outside_ = open(NameOfKind(kind_), O_RDONLY | O_CLOEXEC);
  if (outside_ < 0) {
    why_not_ = Failure("the present view");
  } else if (unshare(kind_) != 0) {
    why_not_ = Failure("unshare");
  } else {
    why_not_ = furnish();
  }
}

PrivateView::~PrivateView() {
  if (outside_ < 0) return;
  // Where there was no leaving there is no coming back; the result is the same.
  static_cast<void>(setns(outside_, kind_));
  close(outside_);
}

PrivateView::PrivateView(PrivateView&& other) noexcept
    : outside_(std::exchange(other.outside_, -1)),
      kind_(other.kind_),
      why_not_(std::move(other.why_not_)) {}

}  // namespace zebcomn_bench
