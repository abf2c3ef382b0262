#include "tests/support/private_host.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "tests/support/command.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scratch_dir.h"

namespace zebcomn_test {
namespace {

/// A directory that every system has, nothing reads from during a test, and that the private mount
/// namespace can cover.
constexpr const char* kStage = "/mnt";
/// For a mount that has no type. Not null: valgrind takes the kernel to read it in any case.
constexpr const char* kNoType = "none";

[[noreturn]] void Fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

void WriteIdMap(const char* file, unsigned outside) {
  std::ostringstream map;
  map << "0 " << outside << " 1";
  WriteFile(file, map.str());
}

void EnterNamespaces() {
  const uid_t uid = geteuid();
  const gid_t gid = getegid();
  const int user = uid == 0 ? 0 : CLONE_NEWUSER;
  if (unshare(user | CLONE_NEWNS | CLONE_NEWNET | CLONE_NEWUTS) != 0) Fail("unshare");
  if (user != 0) {
    WriteFile("/proc/self/setgroups", "deny");
    WriteIdMap("/proc/self/uid_map", uid);
    WriteIdMap("/proc/self/gid_map", gid);
  }
  if (mount("none", "/", kNoType, MS_REC | MS_PRIVATE, nullptr) != 0) Fail("private mounts");
}

}  // namespace

void PrivateHost::MountStage() {
  if (!stage_.empty()) return;
  if (mount("stage", kStage, "tmpfs", 0, "mode=755") != 0) Fail("stage");
  stage_ = kStage;
}

std::string PrivateHost::NewStageFile() {
  MountStage();
  return stage_ + "/file" + std::to_string(next_file_++);
}

void PrivateHost::OverlayEtc() {
  if (etc_overlaid_) return;
  MountStage();
  const std::string upper = stage_ + "/upper";
  const std::string work = stage_ + "/work";
  if (mkdir(upper.c_str(), 0755) != 0 || mkdir(work.c_str(), 0755) != 0) Fail("overlay folders");
  const std::string options = "lowerdir=/etc,upperdir=" + upper + ",workdir=" + work;
  if (mount("overlay", "/etc", "overlay", 0, options.c_str()) != 0) Fail("overlay of /etc");
  etc_overlaid_ = true;
}

void PrivateHost::PutFile(const std::string& path, const std::string& text) {
  if (path.rfind("/etc/", 0) == 0) {
    OverlayEtc();
    // A link or a mount of the real host must not be written through.
    unlink(path.c_str());
    WriteFile(path, text);
    return;
  }
  const std::string staged = NewStageFile();
  WriteFile(staged, text);
  if (mount(staged.c_str(), path.c_str(), kNoType, MS_BIND, nullptr) != 0) Fail("bind on " + path);
}

void PrivateHost::RemoveEtcFile(const std::string& path) {
  OverlayEtc();
  if (unlink(path.c_str()) != 0 && errno != ENOENT) Fail("unlink " + path);
}

void PrivateHost::PutEmptyDirectory(const std::string& path) {
  if (mount("empty", path.c_str(), "tmpfs", 0, "mode=755") != 0) Fail("tmpfs on " + path);
}

void PrivateHost::CoverDevices() {
  MountStage();
  const std::string real = stage_ + "/dev";
  if (mkdir(real.c_str(), 0755) != 0) Fail("mkdir " + real);
  if (mount("/dev", real.c_str(), kNoType, MS_BIND | MS_REC, nullptr) != 0) Fail("bind of /dev");
  PutEmptyDirectory("/dev");
  for (const auto& entry : std::filesystem::directory_iterator(real)) {
    const std::string name = entry.path().filename();
    if (name != "log") std::filesystem::create_symlink(entry.path(), "/dev/" + name);
  }
}

void PrivateHost::SetNodeName(const std::string& name) {
  if (sethostname(name.data(), name.size()) != 0) Fail("sethostname");
}

void PrivateHost::SetNisDomain(const std::string& name) {
  if (setdomainname(name.data(), name.size()) == 0) return;
  // valgrind does not know the call.
  if (errno != ENOSYS) Fail("setdomainname");
  WriteFile("/proc/sys/kernel/domainname", name + "\n");
}

void PrivateHost::Ip(const std::string& arguments) {
  std::vector<std::string> words = {"ip"};
  std::istringstream text(arguments);
  for (std::string word; text >> word;) words.push_back(word);
  const CommandResult result = RunCommand(words);
  if (result.exit_status != 0) throw std::runtime_error("ip " + arguments + ": " + result.err);
}

void PrivateHost::AddVeth(const std::string& name) {
  Ip("link add " + name + " type veth peer name " + name + "-peer");
  Ip("link set " + name + " up");
  Ip("link set " + name + "-peer up");
}

void PrivateHost::AddIpv6(const std::string& address, const std::string& link) {
  Ip("addr add " + address + " dev " + link + " nodad");
  constexpr int kPatience = 2000;
  const std::string alone = address.substr(0, address.find('/'));
  for (int look = 0; look < kPatience; ++look) {
    const CommandResult routes =
        RunCommand({"ip", "-6", "route", "show", "table", "local", "exact", alone});
    if (!routes.out.empty()) return;
  }
  throw std::runtime_error("no route to " + address + " of our own");
}

std::string WhyNoPrivateHost() {
  try {
    RunInPrivateHost([](PrivateHost& host) {
      host.PutFile("/etc/zebcomn-probe", "");
      host.AddVeth("probe0");
      return std::string();
    });
    return "";
  } catch (const ChildDied&) {
    throw;  // No refusal of the system's: a checker has found something, or worse.
  } catch (const std::exception& error) {
    return std::string("no private namespaces here: ") + error.what();
  }
}

std::string RunInPrivateHost(const std::function<std::string(PrivateHost&)>& body) {
  return RunInFreshProcess([&body] {
    EnterNamespaces();
    PrivateHost host;
    return body(host);
  });
}

}  // namespace zebcomn_test
