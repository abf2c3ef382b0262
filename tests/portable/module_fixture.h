#ifndef ZEBCOMN_TESTS_PORTABLE_MODULE_FIXTURE_H_
#define ZEBCOMN_TESTS_PORTABLE_MODULE_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/scratch_dir.h"

namespace zebcomn_test {

/// One call of an observed module's "DllMain".
struct DllMainCall {
  void* module;
  uint32_t reason;
  void* reserved;
};
bool operator==(const DllMainCall& a, const DllMainCall& b);

/// Tests over copies of the two modules that are built for them. The observed module reports here.
class ModuleTest : public ::testing::Test {
 protected:
  ModuleTest();
  ~ModuleTest() override;

  /// A new copy of the module that reports its "DllMain" calls.
  std::string ObservedModule(const std::string& name = "observed.so") const;
  /// A new copy of the module without "DllMain".
  std::string PlainModule(const std::string& name = "plain.so") const;

  /// Loads a name that must fail to load; the message.
  static std::string MessageOfFailedLoad(const char* name);

  /// Whether the loader has the file loaded.
  static bool IsLoaded(const std::string& path);

  ScratchDir scratch_;
};

/// What the observed modules have reported in this test.
std::vector<DllMainCall>& DllMainCalls();
/// What an observed "DllMain" gives back; it gives 1 when this is empty.
std::function<int32_t(void* module, uint32_t reason)>& OnDllMain();

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_MODULE_FIXTURE_H_
