#include "zebcomn/portable/system_names.h"

#include <sys/utsname.h>

#include <cstring>
#include <string_view>

namespace {

constexpr std::string_view kWindowsDirectory = "/opt";
constexpr std::string_view kSystemDirectory = "/usr";

UINT CopyDirectory(std::string_view name, char* buffer, UINT length) {
  const auto name_length = static_cast<UINT>(name.length());
  if (name_length >= length) return name_length + 1;
  if (buffer == nullptr) return 0;
  std::strncpy(buffer, name.data(), length);
  return name_length;
}

}  // namespace

UINT tivGetWindowsDirectory(char* buffer, UINT length) {
  return CopyDirectory(kWindowsDirectory, buffer, length);
}

UINT tivGetSystemDirectory(char* buffer, UINT length) {
  return CopyDirectory(kSystemDirectory, buffer, length);
}

BOOL tivGetComputerName(char* buffer, DWORD* size) {
  utsname names{};
  if (buffer == nullptr || size == nullptr || uname(&names) != 0) return FALSE;
  const std::size_t length = std::strlen(names.nodename);
  if (*size < length + 1) return FALSE;
  std::memcpy(buffer, names.nodename, length + 1);
  *size = static_cast<DWORD>(length);
  return TRUE;
}

BOOL tivTranslateMessage(const void*) {
  return TRUE;
}

DWORD tivGetModuleFileName(HANDLE, char*, DWORD) {
  // Kept: no name is produced; callers then use a path of their own.
  return 0;
}
