#ifndef ZEBCOMN_BENCH_SUPPORT_PRIVATE_VIEW_H_
#define ZEBCOMN_BENCH_SUPPORT_PRIVATE_VIEW_H_

#include <functional>
#include <string>

namespace zebcomn_bench {

/// Another view of the machine that the calling thread has while such an object lives: its own
/// mounts or its own network. Only root can make one.
class PrivateView {
 public:
  /// The "/proc/cpuinfo" of so many processors, each like this machine's first.
  static PrivateView OfProcessors(int processors);
  /// An "/etc/fstab" of so many entries, each of which can be measured.
  static PrivateView OfMounts(int entries);
  /// A network with so many addresses, one half of them IPv4 and the other IPv6, on at most four
  /// interfaces.
  static PrivateView OfAddresses(int addresses);

  ~PrivateView();
  PrivateView(PrivateView&& other) noexcept;
  PrivateView(const PrivateView&) = delete;
  PrivateView& operator=(const PrivateView&) = delete;

  /// Why there is no such view; "" when there is one.
  const std::string& WhyNot() const { return why_not_; }

 private:
  PrivateView() = default;
  /// Leaves the present view for a new one; `furnish` says why it could not be furnished.
  void Enter(const std::function<std::string()>& furnish);

  int outside_ = -1;  ///< What to go back to.
  int kind_ = 0;
  std::string why_not_;
};

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_SUPPORT_PRIVATE_VIEW_H_
