#include "examples/agent/plug_in.h"

#include <array>

#include "examples/plugin/plugin_strings.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/util/platform_match.h"
#include "zebcomn/util/plugin_version.h"

namespace example {

PlugIn::PlugIn(const std::string& path, std::string& why) : path_(path), module_(nullptr) {
  const char* message = nullptr;
  module_ = tivLoadLibrary(path_.c_str(), &message);
  // The message is the library's: copied at once, before another call overwrites it.
  if (module_ == nullptr) why = message;
}

PlugIn::~PlugIn() {
  if (module_ != nullptr) tivFreeLibrary(module_);
}

std::string PlugIn::Text(UINT id) const {
  std::array<char, 256> text{};
  if (module_ != nullptr) tivLoadString(module_, id, text.data(), int32_t{text.size()});
  return text.data();
}

std::string PlugIn::Version() const {
  std::string path = path_;
  std::array<char, 24> stamp{};
  tivmcomn_GetFileResourceStringVersionStamp(path.data(), stamp.data(), stamp.size());
  return stamp.data();
}

bool PlugIn::Supports(const std::string& platform) const {
  return tivmcomn_IsPlatformMatch(platform.c_str(), Text(PLUGIN_STRING_PLATFORMS).c_str()) == 0;
}

}  // namespace example
