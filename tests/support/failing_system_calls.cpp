// Replaces the file and pthread calls that a FailingCall can name, for the whole process. A call
// that does not fail goes on to the C library. On 32-bit targets the headers give these functions
// the symbols of the forms for large files, here and in the library alike.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "tests/support/failing_call.h"
#include "tests/support/next_function.h"

using zebcomn_test::IsToFail;
using zebcomn_test::NextFunction;

extern "C" {

int open(const char* path, int flags, ...) {
  static auto* const next =
      NextFunction<int(const char*, int, ...)>(ZEBCOMN_LARGE_FILE_SYMBOL(open));
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return IsToFail("open") ? -1 : next(path, flags, mode);
}

int close(int fd) {
  static auto* const next = NextFunction<int(int)>("close");
  if (!IsToFail("close")) return next(fd);
  // As when the last write of a file fails: the descriptor is gone all the same.
  const int error = errno;
  next(fd);
  errno = error;
  return -1;
}

ssize_t read(int fd, void* buffer, size_t count) {
  static auto* const next = NextFunction<ssize_t(int, void*, size_t)>("read");
  return IsToFail("read") ? -1 : next(fd, buffer, count);
}

ssize_t write(int fd, const void* buffer, size_t count) {
  static auto* const next = NextFunction<ssize_t(int, const void*, size_t)>("write");
  return IsToFail("write") ? -1 : next(fd, buffer, count);
}

off_t lseek(int fd, off_t offset, int whence) noexcept {
  static auto* const next = NextFunction<off_t(int, off_t, int)>(ZEBCOMN_LARGE_FILE_SYMBOL(lseek));
  return IsToFail("lseek") ? -1 : next(fd, offset, whence);
}

int ftruncate(int fd, off_t length) noexcept {
  static auto* const next = NextFunction<int(int, off_t)>(ZEBCOMN_LARGE_FILE_SYMBOL(ftruncate));
  return IsToFail("ftruncate") ? -1 : next(fd, length);
}

int stat(const char* path, struct stat* status) noexcept {
  static auto* const next =
      NextFunction<int(const char*, struct stat*)>(ZEBCOMN_LARGE_FILE_SYMBOL(stat));
  return IsToFail("stat") ? -1 : next(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
  static auto* const next =
      NextFunction<int(const char*, struct stat*)>(ZEBCOMN_LARGE_FILE_SYMBOL(lstat));
  return IsToFail("lstat") ? -1 : next(path, status);
}

int fstat(int fd, struct stat* status) noexcept {
  static auto* const next = NextFunction<int(int, struct stat*)>(ZEBCOMN_LARGE_FILE_SYMBOL(fstat));
  return IsToFail("fstat") ? -1 : next(fd, status);
}

int statfs(const char* path, struct statfs* status) noexcept {
  static auto* const next =
      NextFunction<int(const char*, struct statfs*)>(ZEBCOMN_LARGE_FILE_SYMBOL(statfs));
  return IsToFail("statfs") ? -1 : next(path, status);
}

int mkostemp(char* pattern, int flags) {
  static auto* const next = NextFunction<int(char*, int)>(ZEBCOMN_LARGE_FILE_SYMBOL(mkostemp));
  return IsToFail("mkostemp") ? -1 : next(pattern, flags);
}

int rename(const char* from, const char* to) noexcept {
  static auto* const next = NextFunction<int(const char*, const char*)>("rename");
  return IsToFail("rename") ? -1 : next(from, to);
}

int remove(const char* path) noexcept {
  static auto* const next = NextFunction<int(const char*)>("remove");
  return IsToFail("remove") ? -1 : next(path);
}

int fstatat(int directory, const char* path, struct stat* status, int flags) noexcept {
  static auto* const next =
      NextFunction<int(int, const char*, struct stat*, int)>(ZEBCOMN_LARGE_FILE_SYMBOL(fstatat));
  return IsToFail("fstatat") ? -1 : next(directory, path, status, flags);
}

int unlinkat(int directory, const char* path, int flags) noexcept {
  static auto* const next = NextFunction<int(int, const char*, int)>("unlinkat");
  return IsToFail("unlinkat") ? -1 : next(directory, path, flags);
}

FILE* fopen(const char* path, const char* mode) {
  static auto* const next =
      NextFunction<FILE*(const char*, const char*)>(ZEBCOMN_LARGE_FILE_SYMBOL(fopen));
  return IsToFail("fopen") ? nullptr : next(path, mode);
}

FILE* fdopen(int fd, const char* mode) noexcept {
  static auto* const next = NextFunction<FILE*(int, const char*)>("fdopen");
  return IsToFail("fdopen") ? nullptr : next(fd, mode);
}

int fclose(FILE* stream) {
  static auto* const next = NextFunction<int(FILE*)>("fclose");
  const bool fails = IsToFail("fclose");
  const int result = next(stream);
  return fails ? EOF : result;
}

DIR* opendir(const char* path) {
  static auto* const next = NextFunction<DIR*(const char*)>("opendir");
  return IsToFail("opendir") ? nullptr : next(path);
}

struct dirent* readdir(DIR* stream) {
  static auto* const next = NextFunction<struct dirent*(DIR*)>(ZEBCOMN_LARGE_FILE_SYMBOL(readdir));
  return IsToFail("readdir") ? nullptr : next(stream);
}

int closedir(DIR* stream) {
  static auto* const next = NextFunction<int(DIR*)>("closedir");
  const bool fails = IsToFail("closedir");
  const int result = next(stream);
  return fails ? -1 : result;
}

int getpwuid_r(uid_t user, struct passwd* entry, char* buffer, size_t size,
               struct passwd** result) {
  static auto* const next =
      NextFunction<int(uid_t, struct passwd*, char*, size_t, struct passwd**)>("getpwuid_r");
  if (!IsToFail("getpwuid_r")) return next(user, entry, buffer, size, result);
  *result = nullptr;
  return errno;
}

void* dlopen(const char* name, int flags) noexcept {
  static auto* const next = NextFunction<void*(const char*, int)>("dlopen");
  return IsToFail("dlopen") ? nullptr : next(name, flags);
}

int dlclose(void* handle) noexcept {
  static auto* const next = NextFunction<int(void*)>("dlclose");
  return IsToFail("dlclose") ? -1 : next(handle);
}

int pthread_cond_init(pthread_cond_t* condition, const pthread_condattr_t* attributes) noexcept {
  static auto* const next =
      NextFunction<int(pthread_cond_t*, const pthread_condattr_t*)>("pthread_cond_init");
  return IsToFail("pthread_cond_init") ? EAGAIN : next(condition, attributes);
}

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) noexcept {
  static auto* const next =
      NextFunction<int(pthread_mutex_t*, const pthread_mutexattr_t*)>("pthread_mutex_init");
  return IsToFail("pthread_mutex_init") ? EAGAIN : next(mutex, attributes);
}

}  // extern "C"
