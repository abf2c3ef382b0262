#include "fuzz/fake_loader.h"

#include <dlfcn.h>

#include <cstdlib>

#include "fuzz/fuzz_input.h"
#include "zebcomn/portable/dynamic_library.h"

namespace zebcomn_fuzz {
namespace {

FakeLoader* in_use = nullptr;
char handles[kFakeModules];

bool IsFake(const void* handle) {
  const auto at = reinterpret_cast<uintptr_t>(handle);
  const auto first = reinterpret_cast<uintptr_t>(handles);
  return at >= first && at < first + kFakeModules;
}

size_t NumberOf(const void* handle) {
  return static_cast<size_t>(static_cast<const char*>(handle) - handles);
}

BOOL DllMain(void* module, DWORD reason, void* reserved) {
  Require(in_use != nullptr && IsFake(module) && reserved == nullptr);
  in_use->Told(NumberOf(module), reason);
  return TraitsOf(NumberOf(module)).accepts ? TRUE : FALSE;
}

int GetVersion(uint16_t* first, uint16_t* second, uint16_t* third, uint16_t* fourth) {
  const FakeTraits traits = TraitsOf(in_use->asked_for_version());
  *first = traits.version[0];
  *second = traits.version[1];
  *third = traits.version[2];
  *fourth = traits.version[3];
  return traits.tells_version ? 0 : 1;
}

/// The record that the library has put into its table and not filled yet: that of the load at hand.
void* RecordOfThisLoad() {
  for (TivLibraryRecord* record : pDynamicLibraryList) {
    if (record != nullptr && record->module == nullptr) return record;
  }
  std::abort();
}

}  // namespace

FakeTraits TraitsOf(size_t module) {
  FakeTraits traits{};
  traits.has_dllmain = module % 2 == 1;
  traits.accepts = module % 8 != 5;
  traits.has_version = module % 3 != 2;
  traits.tells_version = module % 16 != 7;
  traits.unloads = module != 33;
  for (size_t i = 0; i < 4; ++i) traits.version[i] = static_cast<uint16_t>(module * 1021 * (1 + i));
  return traits;
}

size_t FakeModuleOf(const std::string& name) {
  if (name.find('!') != std::string::npos) return kFakeModules;
  size_t sum = 0;
  for (const char c : name) sum += static_cast<unsigned char>(c);
  return sum % kFakeModules;
}

std::string FakeReason(const std::string& name) {
  return name + ": cannot open";
}

FakeLoader::FakeLoader() {
  in_use = this;
}
FakeLoader::~FakeLoader() {
  in_use = nullptr;
  for (void* record : left_behind_) std::free(record);
}

void* FakeLoader::HandleOf(size_t module) {
  return &handles[module];
}

void* FakeLoader::Open(const char* name) {
  const size_t module = FakeModuleOf(name);
  if (module == kFakeModules) {
    left_behind_.push_back(RecordOfThisLoad());
    error_ = FakeReason(name);
    has_error_ = true;
    return nullptr;
  }
  ++loads_[module];
  return HandleOf(module);
}

void* FakeLoader::Symbol(size_t module, const std::string& name) {
  Require(loads_[module] > 0);
  const FakeTraits traits = TraitsOf(module);
  if (traits.has_dllmain && name == "DllMain") return reinterpret_cast<void*>(&DllMain);
  if (traits.has_version && name == "ZUPLUGIN_GetVersion") {
    asked_for_version_ = module;
    return reinterpret_cast<void*>(&GetVersion);
  }
  error_ = "no symbol " + name;
  has_error_ = true;
  return nullptr;
}

int FakeLoader::Close(size_t module) {
  Require(loads_[module] > 0);
  --loads_[module];
  return TraitsOf(module).unloads ? 0 : -1;
}

const char* FakeLoader::Error() {
  const bool had = has_error_;
  has_error_ = false;
  return had ? error_.c_str() : nullptr;
}

}  // namespace zebcomn_fuzz

// The linker sends the calls here (--wrap), those of a sanitizer's start among them, before its
// memory is set up; so nothing is done but for a fake. The names are the linker's, hence reserved
// ones. NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

using zebcomn_fuzz::in_use;

void* __real_dlopen(const char* name, int mode);
void* __wrap_dlopen(const char* name, int mode);
__attribute__((no_sanitize("address", "thread", "undefined"))) void* __wrap_dlopen(const char* name,
                                                                                   int mode) {
  return in_use == nullptr ? __real_dlopen(name, mode) : in_use->Open(name);
}

void* __real_dlsym(void* handle, const char* name);
void* __wrap_dlsym(void* handle, const char* name);
__attribute__((no_sanitize("address", "thread", "undefined"))) void* __wrap_dlsym(
    void* handle, const char* name) {
  if (in_use == nullptr || !zebcomn_fuzz::IsFake(handle)) return __real_dlsym(handle, name);
  return in_use->Symbol(zebcomn_fuzz::NumberOf(handle), name);
}

int __real_dlclose(void* handle);
int __wrap_dlclose(void* handle);
__attribute__((no_sanitize("address", "thread", "undefined"))) int __wrap_dlclose(void* handle) {
  if (in_use == nullptr || !zebcomn_fuzz::IsFake(handle)) return __real_dlclose(handle);
  return in_use->Close(zebcomn_fuzz::NumberOf(handle));
}

char* __real_dlerror();
char* __wrap_dlerror();
__attribute__((no_sanitize("address", "thread", "undefined"))) char* __wrap_dlerror() {
  return in_use == nullptr ? __real_dlerror() : const_cast<char*>(in_use->Error());
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
