#ifndef ZEBCOMN_TESTS_SUPPORT_PRIVATE_HOST_H_
#define ZEBCOMN_TESTS_SUPPORT_PRIVATE_HOST_H_

#include <functional>
#include <string>

namespace zebcomn_test {

/// The inside of a private host: fresh mount, network and host-name namespaces, in which a test may
/// put its own system files, addresses and names. Nothing of it is seen outside, and all of it goes
/// when the test's child process ends. Every call throws when the kernel refuses it.
class PrivateHost {
 public:
  /// Puts a file with this text at an absolute path. A path under "/etc" need not exist before:
  /// "/etc" is overlaid. Any other path must exist; the new file is bound over it.
  void PutFile(const std::string& path, const std::string& text);
  /// Removes a file under "/etc" from the private view.
  void RemoveEtcFile(const std::string& path);
  /// Replaces a directory by an empty one (a temporary file system).
  void PutEmptyDirectory(const std::string& path);
  /// Covers "/dev" by a folder with links to the same devices, to which a test may add its own
  /// entries, and in which there is no "/dev/log".
  void CoverDevices();
  /// Sets the node name, and the NIS domain name.
  void SetNodeName(const std::string& name);
  void SetNisDomain(const std::string& name);
  /// Runs an `ip` command, such as `Ip("link set lo up")`.
  void Ip(const std::string& arguments);
  /// Makes the pair of links `name` and `name`-peer, both up; the private network has no others
  /// than the loopback link, which is down at first.
  void AddVeth(const std::string& name);
  /// Gives a link that is up an IPv6 address ("2001:db8::7/64") and waits until it can be used: the
  /// kernel does not look for another owner of it first, and routes it to the host itself. It makes
  /// that route behind the call's back; a connection made before goes out and finds nobody.
  void AddIpv6(const std::string& address, const std::string& link);

 private:
  void OverlayEtc();
  std::string NewStageFile();
  void MountStage();

  std::string stage_;
  bool etc_overlaid_ = false;
  int next_file_ = 0;
};

/// Why this process cannot make a private host ("" when it can). It is for GTEST_SKIP:
///   if (auto why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
std::string WhyNoPrivateHost();

/// Runs `body` in a child process inside a private host and returns the text that it returned.
/// A body that throws, crashes or exits makes this call throw with the reason, so a test that uses
/// it cannot pass by accident. `body` must not use gtest assertions; what it finds, it returns.
/// A body may start programs with RunCommand and RunTargetCommand: they see the private host.
std::string RunInPrivateHost(const std::function<std::string(PrivateHost&)>& body);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_PRIVATE_HOST_H_
