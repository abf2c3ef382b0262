#include "zebcomn/util/file_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <new>
#include <utility>

#include "zebcomn/portable/unique_fd_internal.h"
#include "zebcomn/portable/unique_file_internal.h"
#include "zebcomn/util/make_directory.h"

namespace {

using zebcomn::UniqueFd;
using zebcomn::UniqueFile;

/// A stream moves a block of this size without taking it through its own buffer.
constexpr size_t kLargeBlockSize = size_t{256} * 1024;
/// Without memory for a large block.
constexpr size_t kSmallBlockSize = 512;
constexpr mode_t kNewFileMode = 0666;

bool IsSameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Opens the destination and empties it; null when it cannot be opened, is the source itself, or
/// has content that may not be replaced. It is looked at through the very descriptor that is then
/// emptied, so that no other name of the source and no change in between can make it lose anything.
UniqueFile OpenDestination(const char* path, const struct stat& source, bool overwrite) {
  UniqueFd fd(open(path, O_RDWR | O_CREAT | O_CLOEXEC, kNewFileMode));
  struct stat status = {};
  if (!fd.IsOpen() || fstat(fd.get(), &status) != 0 || IsSameFile(source, status)) return nullptr;
  if (S_ISREG(status.st_mode) && status.st_size > 0 &&
      (!overwrite || ftruncate(fd.get(), 0) != 0)) {
    return nullptr;
  }
  UniqueFile stream(fdopen(fd.get(), "wb+"));
  if (stream != nullptr) fd.Release();
  return stream;
}

/// Copies what a stream holds, block by block; what was read before a read error too. Nobody else
/// has the two streams, so their locks are not taken.
bool CopyBlocks(std::FILE* source, std::FILE* destination, char* block, size_t size) {
  size_t got = 0;
  while ((got = fread_unlocked(block, 1, size, source)) == size) {
    if (fwrite_unlocked(block, 1, got, destination) != got || feof_unlocked(source) != 0) {
      return false;
    }
  }
  return fwrite_unlocked(block, 1, got, destination) == got && std::ferror(source) == 0;
}

/// Copies between open streams, to the last flush.
bool CopyStreams(UniqueFile source, UniqueFile destination) {
  std::array<char, kSmallBlockSize> small;
  const std::unique_ptr<char[]> large(new (std::nothrow) char[kLargeBlockSize]);
  const bool copied =
      large == nullptr ? CopyBlocks(source.get(), destination.get(), small.data(), small.size())
                       : CopyBlocks(source.get(), destination.get(), large.get(), kLargeBlockSize);
  source.reset();
  return zebcomn::CloseFile(destination.release()) && copied;
}

/// Whether a file can be opened for reading; a pipe without a writer is not waited for.
bool CanBeOpened(const char* path) {
  return UniqueFd(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC)).IsOpen();
}

bool CopyFile(const char* src, char* dst, bool overwrite) {
  UniqueFile source(std::fopen(src, "rbe"));
  struct stat status = {};
  if (source == nullptr || fstat(fileno(source.get()), &status) != 0) return false;
  if (S_ISDIR(status.st_mode)) return false;
  tivmcomn_MakeRecursiveDirectoryA(dst);
  if (CanBeOpened(dst) && !overwrite) return false;
  UniqueFile destination = OpenDestination(dst, status, overwrite);
  return destination != nullptr && CopyStreams(std::move(source), std::move(destination));
}

}  // namespace

BOOL tivmcomn_copy_file(char* src, char* dst, int overwrite) {
  if (src == nullptr || dst == nullptr) return FALSE;
  return CopyFile(src, dst, overwrite != 0) ? TRUE : FALSE;
}
