#ifndef ZEBCOMN_FUZZ_FAKE_LOADER_H_
#define ZEBCOMN_FUZZ_FAKE_LOADER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zebcomn_fuzz {

constexpr size_t kFakeModules = 64;

/// What a made-up module has, by its number.
struct FakeTraits {
  bool has_dllmain;
  bool accepts;      ///< What its "DllMain" says to a load.
  bool has_version;  ///< Whether it has the version entry point, and whether that succeeds.
  bool tells_version;
  bool unloads;  ///< Whether `dlclose` succeeds.
  uint16_t version[4];
};
FakeTraits TraitsOf(size_t module);

/// The module that a name leads to: several names lead to one. kFakeModules for a name that leads
/// to none, which is one that holds a "!".
size_t FakeModuleOf(const std::string& name);

/// What the loader says of a name that leads to no module.
std::string FakeReason(const std::string& name);

/// Answers `dlopen`, `dlsym`, `dlclose` and `dlerror` for made-up modules for as long as it lives,
/// one at a time.
class FakeLoader {
 public:
  FakeLoader();
  ~FakeLoader();
  FakeLoader(const FakeLoader&) = delete;
  FakeLoader& operator=(const FakeLoader&) = delete;

  /// The handle of a module.
  static void* HandleOf(size_t module);

  /// The loads of a module that have not been closed.
  int LoadsOf(size_t module) const { return loads_[module]; }
  /// What the "DllMain" functions were told: the module, and the reason.
  const std::vector<std::pair<size_t, uint32_t>>& told() const { return told_; }

  void* Open(const char* name);
  void* Symbol(size_t module, const std::string& name);
  int Close(size_t module);
  const char* Error();
  void Told(size_t module, uint32_t reason) { told_.emplace_back(module, reason); }
  size_t asked_for_version() const { return asked_for_version_; }

 private:
  int loads_[kFakeModules] = {};
  std::vector<std::pair<size_t, uint32_t>> told_;
  size_t asked_for_version_ = 0;
  std::string error_;
  bool has_error_ = false;
  /// The records of loads that failed, which the library leaves behind for good.
  std::vector<void*> left_behind_;
};

}  // namespace zebcomn_fuzz

#endif  // ZEBCOMN_FUZZ_FAKE_LOADER_H_
