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

constexpr size_t kBlockSize = 512;
/// The streams move this much with each system call.
constexpr size_t kStreamBufferSize = size_t{256} * 1024;
constexpr mode_t kNewFileMode = 0666;

using StreamBuffer = std::unique_ptr<char[]>;

/// Gives a stream a large buffer, which must outlive it; without memory the stream keeps its own.
StreamBuffer Enlarge(std::FILE* stream) {
  StreamBuffer buffer(new (std::nothrow) char[kStreamBufferSize]);
  if (buffer != nullptr) std::setvbuf(stream, buffer.get(), _IOFBF, kStreamBufferSize);
  return buffer;
}

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

/// Copies what a stream holds. Nobody else has the two streams, so their locks are not taken.
bool CopyBlocks(std::FILE* source, std::FILE* destination) {
  std::array<char, kBlockSize> block{};
  size_t got = 0;
  while ((got = fread_unlocked(block.data(), 1, block.size(), source)) == block.size()) {
    if (fwrite_unlocked(block.data(), 1, got, destination) != got || feof_unlocked(source) != 0) {
      return false;
    }
  }
  return std::ferror(source) == 0 && fwrite_unlocked(block.data(), 1, got, destination) == got;
}

/// Copies between open streams, to the last flush.
bool CopyStreams(UniqueFile source, UniqueFile destination) {
  const StreamBuffer source_buffer = Enlarge(source.get());
  const StreamBuffer destination_buffer = Enlarge(destination.get());
  const bool copied = CopyBlocks(source.get(), destination.get());
  source.reset();
  return std::fclose(destination.release()) == 0 && copied;
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
