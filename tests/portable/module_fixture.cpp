#include "tests/portable/module_fixture.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <mutex>

#include "tests/portable/tables_in_use.h"
#include "tests/support/error_slot.h"
#include "tests/support/expected_leak.h"
#include "zebcomn/portable/dynamic_library.h"

namespace zebcomn_test {

bool operator==(const DllMainCall& a, const DllMainCall& b) {
  return a.module == b.module && a.reason == b.reason && a.reserved == b.reserved;
}

std::vector<DllMainCall>& DllMainCalls() {
  static std::vector<DllMainCall> calls;
  return calls;
}

std::function<int32_t(void*, uint32_t)>& OnDllMain() {
  static std::function<int32_t(void*, uint32_t)> action;
  return action;
}

ModuleTest::ModuleTest() {
  DllMainCalls().clear();
  OnDllMain() = nullptr;
  ClearErrorSlot();
}

ModuleTest::~ModuleTest() {
  OnDllMain() = nullptr;
  EXPECT_EQ(LibrariesInTable(), 0);
}

std::string ModuleTest::ObservedModule(const std::string& name) const {
  std::filesystem::copy_file(ZEBCOMN_OBSERVED_MODULE, scratch_ / name);
  return scratch_ / name;
}

std::string ModuleTest::PlainModule(const std::string& name) const {
  std::filesystem::copy_file(ZEBCOMN_PLAIN_MODULE, scratch_ / name);
  return scratch_ / name;
}

std::string ModuleTest::MessageOfFailedLoad(const char* name) {
  // A failed load leaves its record behind.
  const ExpectedLeak record;
  const char* message = nullptr;
  EXPECT_EQ(tivLoadLibrary(name, &message), nullptr);
  return message == nullptr ? "no message" : message;
}

bool ModuleTest::IsLoaded(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (handle == nullptr) return false;
  dlclose(handle);
  return true;
}

}  // namespace zebcomn_test

// The modules reach these two through the dynamic symbols of the test's program.
extern "C" {

__attribute__((visibility("default"))) int32_t observe_dll_main(void* module, uint32_t reason,
                                                                void* reserved) {
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  zebcomn_test::DllMainCalls().push_back({module, reason, reserved});
  return zebcomn_test::OnDllMain() ? zebcomn_test::OnDllMain()(module, reason) : 1;
}

__attribute__((visibility("default"))) int32_t observe_load_string(void* module, uint32_t id,
                                                                   char* buffer, int32_t size) {
  return std::snprintf(buffer, static_cast<size_t>(size), "%s %u %d",
                       module != nullptr ? "module" : "null", id, size);
}

}  // extern "C"
