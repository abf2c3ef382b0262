#include "zebcomn/util/tivfio.h"

#include <sys/stat.h>

#include <cassert>
#include <cstddef>
#include <cstdlib>

#include "zebcomn/portable/bounded_text_internal.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/unique_memory_internal.h"

namespace {

static_assert(offsetof(TiFileOps, close) == 0 && offsetof(TiFileOps, read) == sizeof(void*) &&
                  offsetof(TiFileOps, write) == 2 * sizeof(void*) &&
                  offsetof(TiFileOps, get_size) == 3 * sizeof(void*) &&
                  offsetof(TiFile, ops) == 0 && offsetof(TiFile, handle) == sizeof(void*) &&
                  sizeof(TiFileOps) == 4 * sizeof(void*) && sizeof(TiFile) == 2 * sizeof(void*),
              "The fields stand in this order on every target.");

template <typename Record>
zebcomn::UniqueMemory<Record> AllocateZeroed() {
  return zebcomn::UniqueMemory<Record>(static_cast<Record*>(std::calloc(1, sizeof(Record))));
}

uint32_t StatusOf(bool success) {
  return success ? ZEBCOMN_STATUS_OK : ZEBCOMN_STATUS_FAILURE;
}

/// A file object around a new file handle; null when anything fails.
TiFile* MakeFileObject(const char* path, DWORD access, DWORD share, DWORD disposition,
                       DWORD flags) {
  zebcomn::UniqueMemory<TiFile> file = AllocateZeroed<TiFile>();
  if (file == nullptr) return nullptr;
  zebcomn::UniqueMemory<TiFileOps> ops = AllocateZeroed<TiFileOps>();
  if (ops == nullptr) return nullptr;
  file->handle = tivCreateFileAW(path, access, share, nullptr, disposition, flags, nullptr);
  if (file->handle == nullptr) return nullptr;
  *ops = {tiCloseFile, tiReadFile, tiWriteFile, tiGetFileSize};
  file->ops = ops.release();
  return file.release();
}

}  // namespace

uint32_t tiCreateFile(const char* path, int access, unsigned int share, unsigned int disposition,
                      unsigned int flags, TiFile** out) {
  if (out == nullptr) return ZEBCOMN_STATUS_FAILURE;
  *out = MakeFileObject(path, static_cast<DWORD>(access), share, disposition, flags);
  return StatusOf(*out != nullptr);
}

uint32_t tiReadFile(TiFile* file, void* buf, unsigned int count, unsigned int* done) {
  if (file == nullptr) return ZEBCOMN_STATUS_FAILURE;
  // Kept: the end of the file is a failure here, though not for tivReadFile(); readers stop at it.
  return StatusOf(tivReadFile(file->handle, buf, count, done, nullptr) == TRUE && *done != 0);
}

uint32_t tiWriteFile(TiFile* file, const void* buf, unsigned int count, unsigned int* done) {
  if (file == nullptr) return ZEBCOMN_STATUS_FAILURE;
  return StatusOf(tivWriteFile(file->handle, buf, count, done) == TRUE);
}

uint32_t tiGetFileSize(TiFile* file, unsigned int* size) {
  if (file == nullptr || size == nullptr) return ZEBCOMN_STATUS_FAILURE;
  *size = tivGetFileSize(file->handle, nullptr);
  return StatusOf(*size != TIV_INVALID_DWORD);
}

uint32_t tiCloseFile(TiFile* file) {
  if (file == nullptr) return ZEBCOMN_STATUS_OK;
  const bool closed = tivCloseHandle(file->handle) == TRUE;
  std::free(file->ops);
  std::free(file);
  return StatusOf(closed);
}

BOOL tiFolderExists(char* lpszFolder) {
  assert(lpszFolder != nullptr);
  if (lpszFolder == nullptr) return FALSE;
  zebcomn::PathBuffer path;
  path.Append(lpszFolder);
  if (path.length() > 0 && path.c_str()[path.length() - 1] == '\\') {
    path.Truncate(path.length() - 1);
  }
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? TRUE : FALSE;
}
