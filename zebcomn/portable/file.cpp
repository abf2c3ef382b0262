#include "zebcomn/portable/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "zebcomn/portable/bounded_text_internal.h"
#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/file_record_internal.h"
#include "zebcomn/portable/handle_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/unique_fd_internal.h"
#include "zebcomn/portable/unique_memory_internal.h"

using zebcomn::FileRecord;

namespace {

constexpr mode_t kNewFileMode = 0660;
constexpr uint64_t kHighPartDivisor = 65535;

std::optional<int> AccessFlags(DWORD access) {
  switch (access) {
    case TIV_ACCESS_READ:
      return O_RDONLY;
    case TIV_ACCESS_WRITE:
      return O_WRONLY;
    case TIV_ACCESS_READ_WRITE:
      return O_RDWR;
    default:
      return std::nullopt;
  }
}

std::optional<int> DispositionFlags(DWORD disposition) {
  switch (disposition) {
    case TIV_CREATE_NEW:
      return O_CREAT | O_EXCL;
    case TIV_CREATE_ALWAYS:
      return O_CREAT | O_TRUNC;
    case TIV_OPEN_EXISTING:
      return 0;
    case TIV_OPEN_ALWAYS:
      return O_CREAT;
    default:
      return std::nullopt;
  }
}

bool AreFlagsKnown(DWORD flags) {
  return flags == 0 || flags == TIV_FLAG_NORMAL || flags == TIV_FLAG_DELETE_ON_CLOSE;
}

void FillFileRecord(FileRecord& file, int descriptor, bool delete_on_close, const char* path) {
  file.descriptor = descriptor;
  file.delete_on_close = delete_on_close ? 1 : 0;
  file.end_of_file = 0;
  // The beginning of a path may name another file, which must not be what the close removes.
  const bool fits = std::strlen(path) < sizeof(file.path);
  zebcomn::CopyBounded(file.path, delete_on_close && !fits ? "" : path);
}

/// A file handle that owns the descriptor; null, with the descriptor closed, when it cannot be
/// made.
HANDLE MakeFileHandle(zebcomn::UniqueFd descriptor, bool delete_on_close, const char* path) {
  zebcomn::UniqueMemory<_tivHandleObject_t> record(zebcomn::AllocateRecord());
  if (record == nullptr) return nullptr;
  zebcomn::UniqueMemory<FileRecord> file(static_cast<FileRecord*>(std::malloc(sizeof(FileRecord))));
  if (file == nullptr || !zebcomn::InitRecordLocks(record.get())) return nullptr;
  FillFileRecord(*file, descriptor.Release(), delete_on_close, path);
  record->pObject = file.release();
  record->nType = TIV_HANDLE_FILE;
  record->nRefCount = 1;
  record->bSignalled = 0;
  return record.release();
}

/// The file record of a handle that is not null; null, with 22 in `nErrno`, when it has none.
FileRecord* FileOfRecord(HANDLE handle) {
  const _tivHandleObject_t* record = zebcomn::RecordOf(handle);
  if (record->nType == TIV_HANDLE_FILE && record->pObject != nullptr) {
    return static_cast<FileRecord*>(record->pObject);
  }
  zebcomn::StoreError(EINVAL);
  return nullptr;
}

/// The file record of a handle; null, with 22 in `nErrno`, for a null handle too.
FileRecord* FileOf(HANDLE handle) {
  if (handle != nullptr) return FileOfRecord(handle);
  zebcomn::StoreError(EINVAL);
  return nullptr;
}

/// What tivReadFile() and tivWriteFile() are given: the file, when handle and count can be used.
FileRecord* FileForTransfer(HANDLE handle, const DWORD* count) {
  if (count != nullptr) return FileOf(handle);
  zebcomn::StoreError(EINVAL);
  return nullptr;
}

}  // namespace

HANDLE tivCreateFileAW(const char* path, DWORD dwDesiredAccess, DWORD, void*,
                       DWORD dwCreationDisposition, DWORD dwFlagsAndAttributes, HANDLE) {
  const std::optional<int> access = AccessFlags(dwDesiredAccess);
  const std::optional<int> disposition = DispositionFlags(dwCreationDisposition);
  if (!access || !disposition || !AreFlagsKnown(dwFlagsAndAttributes) || path == nullptr) {
    zebcomn::StoreError(EINVAL);
    return nullptr;
  }
  zebcomn::UniqueFd descriptor(open(path, *access | *disposition | O_CLOEXEC, kNewFileMode));
  if (!descriptor.IsOpen()) return nullptr;
  return MakeFileHandle(std::move(descriptor), dwFlagsAndAttributes == TIV_FLAG_DELETE_ON_CLOSE,
                        path);
}

BOOL tivReadFile(HANDLE hFile, void* lpBuffer, DWORD nNumberOfBytesToRead,
                 DWORD* lpNumberOfBytesRead, void*) {
  FileRecord* file = FileForTransfer(hFile, lpNumberOfBytesRead);
  if (file == nullptr) return FALSE;
  const ssize_t transferred = read(file->descriptor, lpBuffer, nNumberOfBytesToRead);
  if (transferred == -1) return FALSE;
  // Kept: the end of the file is a success with 0 bytes; callers stop at the count.
  if (transferred == 0) zebcomn::StoreRelaxed(&file->end_of_file, 1);
  *lpNumberOfBytesRead = static_cast<DWORD>(transferred);
  return TRUE;
}

BOOL tivWriteFile(HANDLE hFile, const void* lpBuffer, DWORD nNumberOfBytesToWrite,
                  DWORD* lpNumberOfBytesWritten) {
  const FileRecord* file = FileForTransfer(hFile, lpNumberOfBytesWritten);
  if (file == nullptr) return FALSE;
  const ssize_t transferred = write(file->descriptor, lpBuffer, nNumberOfBytesToWrite);
  if (transferred == -1) return FALSE;
  *lpNumberOfBytesWritten = static_cast<DWORD>(transferred);
  return TRUE;
}

LONG tivSetFilePointer(HANDLE hFile, LONG lDistanceToMove, LONG*, DWORD dwMoveMethod) {
  // Kept: a null handle is not tested here and in tivSetEndOfFile(); callers pass open files only.
  const FileRecord* file = FileOfRecord(hFile);
  if (file == nullptr) return -1;
  return static_cast<LONG>(
      lseek(file->descriptor, lDistanceToMove, static_cast<int>(dwMoveMethod)));
}

BOOL tivSetEndOfFile(HANDLE hFile) {
  const FileRecord* file = FileOfRecord(hFile);
  if (file == nullptr) return FALSE;
  const off_t position = lseek(file->descriptor, 0, SEEK_CUR);
  return position != -1 && ftruncate(file->descriptor, position) == 0 ? TRUE : FALSE;
}

DWORD tivGetFileSize(HANDLE hFile, DWORD* lpFileSizeHigh) {
  const FileRecord* file = FileOf(hFile);
  if (file == nullptr) return TIV_INVALID_DWORD;
  struct stat status = {};
  if (fstat(file->descriptor, &status) != 0) return TIV_INVALID_DWORD;
  const auto size = static_cast<uint64_t>(status.st_size);
  // Kept: the divisor is 65535, not a shift by 32; callers know the high part in this form.
  if (lpFileSizeHigh != nullptr) *lpFileSizeHigh = static_cast<DWORD>(size / kHighPartDivisor);
  return static_cast<DWORD>(size);
}
