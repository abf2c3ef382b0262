#include "zebcomn/portable/named_file.h"

#include <fcntl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

#include "zebcomn/portable/unique_fd_internal.h"
#include "zebcomn/util/file_copy.h"

namespace {

/// Makes the file and gives its path; empty when that fails.
std::string MakeTemporaryFile(const char* directory, const char* prefix) {
  std::string path = std::string(directory) + "/" + (prefix == nullptr ? "" : prefix) + "XXXXXX";
  if (!zebcomn::UniqueFd(mkostemp(path.data(), O_CLOEXEC)).IsOpen()) return {};
  return path;
}

}  // namespace

UINT tivGetTempFileName(const char* lpPathName, const char* lpPrefixString, UINT uUnique,
                        char* lpTempFileName) try {
  if (lpPathName == nullptr || lpTempFileName == nullptr) return 0;
  const std::string path = MakeTemporaryFile(lpPathName, lpPrefixString);
  if (path.empty()) return 0;
  // Kept: the copy has no limit; callers provide a buffer for the longest path that they pass.
  std::memcpy(lpTempFileName, path.c_str(), path.size() + 1);
  return uUnique == 0 ? 1 : uUnique;
} catch (const std::exception&) {  // No memory, or a name too long for any text.
  return 0;
}

BOOL tivCopyFile(const char* lpExistingFileName, const char* lpNewFileName, BOOL bFailIfExists) {
  // The copy only reads its paths.
  return tivmcomn_copy_file(const_cast<char*>(lpExistingFileName), const_cast<char*>(lpNewFileName),
                            bFailIfExists == FALSE ? 1 : 0);
}

BOOL tivMoveFile(const char* lpExistingFileName, const char* lpNewFileName) {
  if (lpExistingFileName == nullptr || lpNewFileName == nullptr) return FALSE;
  return std::rename(lpExistingFileName, lpNewFileName) == 0 ? TRUE : FALSE;
}

BOOL tivSetFileAttributes(const char*, DWORD) {
  // Kept: a success without any effect; callers set attributes on what they have written.
  return TRUE;
}

BOOL tivGetFileVersionInfo(const char*, DWORD, DWORD, void*) {
  return FALSE;
}

BOOL tivVerQueryValue(const void*, const char*, void**, UINT*) {
  return FALSE;
}
