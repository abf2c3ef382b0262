#include "zebcomn/util/plugin_version.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "zebcomn/portable/dynamic_library.h"

namespace {

constexpr const char* kEntryPoint = "ZUPLUGIN_GetVersion";
constexpr int kRead = 1;
constexpr int kNotRead = 0;

using Stamp = std::array<char, 100>;

struct PluginVersion {
  uint16_t major_number = 0;
  uint16_t minor_number = 0;
  uint16_t third_number = 0;
  uint16_t fourth_number = 0;
};

/// A module that is loaded for as long as this object lives.
class LoadedModule {
 public:
  explicit LoadedModule(const char* path) : module_(tivLoadLibrary(path, nullptr)) {}
  ~LoadedModule() {
    if (module_ != nullptr) tivFreeLibrary(module_);
  }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  bool ReportsVersion(PluginVersion& version) const {
    if (module_ == nullptr) return false;
    const auto get_version =
        reinterpret_cast<ZebcomnPluginGetVersion>(tivGetProcAddress(module_, kEntryPoint, nullptr));
    return get_version != nullptr &&
           get_version(&version.major_number, &version.minor_number, &version.third_number,
                       &version.fourth_number) == 0;
  }

 private:
  void* module_;
};

/// The high word of a stamp and the low one, as one number.
unsigned Pair(uint16_t high, uint16_t low) {
  return unsigned{high} << 16 | low;
}

void FormatHexadecimal(const PluginVersion& version, Stamp& stamp) {
  std::snprintf(stamp.data(), stamp.size(), "%08x%08x",
                Pair(version.major_number, version.minor_number),
                Pair(version.third_number, version.fourth_number));
}

void FormatDotted(const PluginVersion& version, Stamp& stamp) {
  std::snprintf(stamp.data(), stamp.size(), "%d.%d.%d.%d", version.major_number,
                version.minor_number, version.third_number, version.fourth_number);
}

int StampOf(const char* path, char* out, std::size_t size,
            void (*format)(const PluginVersion&, Stamp&)) {
  if (out == nullptr) return kNotRead;
  std::memset(out, 0, size);
  PluginVersion version;
  if (!LoadedModule(path).ReportsVersion(version)) return kNotRead;
  if (size == 0) return kRead;
  Stamp stamp{};
  format(version, stamp);
  std::memcpy(out, stamp.data(), std::min(std::strlen(stamp.data()), size - 1));
  return kRead;
}

}  // namespace

int tivmcomn_GetFileResourceVersionStamp(char* modulePath, char* out, unsigned size) {
  return StampOf(modulePath, out, size, FormatHexadecimal);
}

int tivmcomn_GetFileResourceStringVersionStamp(char* modulePath, char* out, unsigned size) {
  return StampOf(modulePath, out, size, FormatDotted);
}
