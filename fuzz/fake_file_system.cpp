#include "fuzz/fake_file_system.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zebcomn_fuzz {
namespace {

const FakeFileSystem* in_use = nullptr;

int Fail(int error) {
  errno = error;
  return -1;
}

int Status(const char* path, mode_t& mode) {
  mode = in_use->ModeOf(path);
  return mode == 0 ? Fail(ENOENT) : 0;
}

}  // namespace

const mode_t FakeFileSystem::kFile = S_IFREG;
const mode_t FakeFileSystem::kLink = S_IFLNK;

FakeFileSystem::Use::Use(const FakeFileSystem& system) {
  in_use = &system;
}
FakeFileSystem::Use::~Use() {
  in_use = nullptr;
}

void FakeFileSystem::AddFile(const std::string& path) {
  entries_[path] = {S_IFREG, {}};
}
void FakeFileSystem::AddDirectory(const std::string& path) {
  entries_[path] = {S_IFDIR, {}};
}
void FakeFileSystem::AddLink(const std::string& path, const std::string& target) {
  entries_[path] = {S_IFLNK, target};
}

mode_t FakeFileSystem::ModeOf(const std::string& path) const {
  const auto found = entries_.find(path);
  return found == entries_.end() ? 0 : found->second.mode;
}

}  // namespace zebcomn_fuzz

// The linker sends the calls here (--wrap); they go on to the C library's when no fake is in use.
// The names are the linker's, hence reserved ones. NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

using zebcomn_fuzz::in_use;

int __real_lstat(const char* path, struct stat* status);
int __wrap_lstat(const char* path, struct stat* status);
int __wrap_lstat(const char* path, struct stat* status) {
  return in_use == nullptr ? __real_lstat(path, status)
                           : zebcomn_fuzz::Status(path, status->st_mode);
}

int __real_lstat64(const char* path, struct stat64* status);
int __wrap_lstat64(const char* path, struct stat64* status);
int __wrap_lstat64(const char* path, struct stat64* status) {
  return in_use == nullptr ? __real_lstat64(path, status)
                           : zebcomn_fuzz::Status(path, status->st_mode);
}

ssize_t __real_readlink(const char* path, char* buffer, size_t size);
ssize_t __wrap_readlink(const char* path, char* buffer, size_t size);
ssize_t __wrap_readlink(const char* path, char* buffer, size_t size) {
  if (in_use == nullptr) return __real_readlink(path, buffer, size);
  if (!in_use->IsLink(path)) return zebcomn_fuzz::Fail(EINVAL);
  return static_cast<ssize_t>(in_use->TargetOf(path).copy(buffer, size));
}

char* __real_getcwd(char* buffer, size_t size);
char* __wrap_getcwd(char* buffer, size_t size);
char* __wrap_getcwd(char* buffer, size_t size) {
  if (in_use == nullptr) return __real_getcwd(buffer, size);
  return std::strncpy(buffer, zebcomn_fuzz::kFakeWorkingDirectory, size);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
