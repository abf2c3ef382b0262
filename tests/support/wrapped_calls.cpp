// Stands between the library and every function of the C library that can fail, apart from those
// that take memory (wrapped_allocation.cpp): what the calling thread's plan says fails, everything
// else goes on. The functions are declared by hand, because the system's headers rename or inline
// some of them; each has a wrapper under every name that a compiler may call it by.
//
// tests/reliability/wrapped_calls_check.py reads this file: one line starts each wrapper.
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

#include "tests/support/call_plan.h"

#ifdef __clang__
#pragma clang diagnostic ignored "-Wincompatible-library-redeclaration"
#endif

namespace {

using zebcomn_test::ErrorDue;
using zebcomn_test::InsideCall;
using zebcomn_test::NextSymbol;

using ssize_t = std::make_signed_t<size_t>;
using Offset = long;  // Of a file, in the functions without "64" in their names.

// What a function gives to say that it has failed.
constexpr int kMinusOne = -1;
constexpr int kEndOfFile = -1;
constexpr int kNotZero = 1;
constexpr std::nullptr_t kNull = nullptr;
constexpr int kZero = 0;
constexpr auto kAllOnes = static_cast<size_t>(-1);

// The resolver's own numbers.
constexpr int kResolverAgain = -3;
constexpr int kResolverFail = -4;
constexpr int kResolverMemory = -10;
constexpr int kResolverSystem = -11;
constexpr int kHostTryAgain = 2;

int DueOf(const char* function, std::initializer_list<int> errors, const void* caller) {
  return ErrorDue(function, errors.begin(), static_cast<int>(errors.size()), caller);
}

}  // namespace

// The parts of a wrapper: the function that it stands in front of, and the error that is due.
#define NEXT(name) static auto* const next = reinterpret_cast<decltype(&name)>(NextSymbol(#name))
#define DUE(name, ...) DueOf(#name, {__VA_ARGS__}, __builtin_return_address(0))

// Fails with `failure` and one of the errors in `errno`, without having done anything.
#define CALL(type, name, parameters, arguments, failure, ...) \
  type name parameters {                                      \
    NEXT(name);                                               \
    if (const int error = DUE(name, __VA_ARGS__)) {           \
      errno = error;                                          \
      return failure;                                         \
    }                                                         \
    const InsideCall inside;                                  \
    return next arguments;                                    \
  }

// Fails in the same way, but only after it has done its work: nothing can be tried again.
#define CLOSING_CALL(type, name, parameters, arguments, failure, ...) \
  type name parameters {                                              \
    NEXT(name);                                                       \
    const int error = DUE(name, __VA_ARGS__);                         \
    const InsideCall inside;                                          \
    const type result = next arguments;                               \
    if (error == 0) return result;                                    \
    errno = error;                                                    \
    return failure;                                                   \
  }

// Gives one of the errors as its result.
#define ERROR_CALL(name, parameters, arguments, ...)            \
  int name parameters {                                         \
    NEXT(name);                                                 \
    if (const int error = DUE(name, __VA_ARGS__)) return error; \
    const InsideCall inside;                                    \
    return next arguments;                                      \
  }

// Reads a block of a stream. One that fails leaves its mark on the stream.
#define READING_CALL(name)                                            \
  size_t name(void* block, size_t size, size_t count, void* stream) { \
    NEXT(name);                                                       \
    if (const int error = DUE(name, EIO)) {                           \
      zebcomn_test::NoteFailedStream(stream);                         \
      errno = error;                                                  \
      return kZero;                                                   \
    }                                                                 \
    const InsideCall inside;                                          \
    return next(block, size, count, stream);                          \
  }

#pragma GCC visibility push(default)
extern "C" {

// Threads. A wait that fails has its mutex, as after a sleep.
ERROR_CALL(pthread_attr_init, (void* attributes), (attributes), ENOMEM)
ERROR_CALL(pthread_attr_setdetachstate, (void* attributes, int state), (attributes, state), EINVAL)
ERROR_CALL(pthread_cond_init, (void* cond, const void* attributes), (cond, attributes), EAGAIN,
           ENOMEM)
ERROR_CALL(pthread_cond_broadcast, (void* cond), (cond), EINVAL)
ERROR_CALL(pthread_cond_wait, (void* cond, void* mutex), (cond, mutex), EINVAL, EPERM)
ERROR_CALL(pthread_cond_timedwait, (void* cond, void* mutex, const void* deadline),
           (cond, mutex, deadline), EINVAL, EPERM, ETIMEDOUT)
ERROR_CALL(__pthread_cond_timedwait64, (void* cond, void* mutex, const void* deadline),
           (cond, mutex, deadline), EINVAL, EPERM, ETIMEDOUT)
ERROR_CALL(pthread_key_create, (void* key, void (*destructor)(void*)), (key, destructor), EAGAIN,
           ENOMEM)
ERROR_CALL(pthread_setspecific, (unsigned key, const void* value), (key, value), ENOMEM, EINVAL)
ERROR_CALL(pthread_mutex_init, (void* mutex, const void* attributes), (mutex, attributes), EAGAIN,
           ENOMEM)
ERROR_CALL(pthread_sigmask, (int how, const void* set, void* previous), (how, set, previous),
           EINVAL)
ERROR_CALL(sigwait, (const void* set, int* signal), (set, signal), EINVAL)

void __lsan_disable() __attribute__((weak));
void __lsan_enable() __attribute__((weak));
// The address sanitizer's: it has to see each thread, to take the last thread's marks off a stack
// that is used again. clang links it into the program, where the next function is not looked for.
int __interceptor_pthread_create(void* thread, const void* attributes, void* (*routine)(void*),
                                 void* argument) __attribute__((weak));

// clang's leak checker takes the new thread's own storage for lost, since the loader gets it
// through the wrapper of calloc().
int pthread_create(void* thread, const void* attributes, void* (*routine)(void*), void* argument) {
  static auto* const next =
      __interceptor_pthread_create != nullptr
          ? &__interceptor_pthread_create
          : reinterpret_cast<decltype(&pthread_create)>(NextSymbol("pthread_create"));
  if (const int error = DUE(pthread_create, EAGAIN, EPERM)) return error;
  const InsideCall inside;
  if (__lsan_disable != nullptr) __lsan_disable();
  const int result = next(thread, attributes, routine, argument);
  if (__lsan_enable != nullptr) __lsan_enable();
  return result;
}

// A key whose deletion fails is deleted all the same: the uses would take all the keys there are.
int pthread_key_delete(unsigned key) {
  NEXT(pthread_key_delete);
  const int error = DUE(pthread_key_delete, EINVAL);
  const InsideCall inside;
  const int result = next(key);
  return error != 0 ? error : result;
}

int pthread_mutex_lock(void* mutex) {
  NEXT(pthread_mutex_lock);
  if (const int error = DUE(pthread_mutex_lock, EAGAIN, EINVAL)) return error;
  const int result = next(mutex);
  if (result == 0) zebcomn_test::NoteLock(mutex);
  return result;
}

int pthread_mutex_unlock(void* mutex) {
  NEXT(pthread_mutex_unlock);
  if (zebcomn_test::IsUnlockedAlready(mutex)) return 0;
  if (const int error = DUE(pthread_mutex_unlock, EPERM)) {
    next(mutex);
    zebcomn_test::NoteFailedUnlock(mutex);
    return error;
  }
  const int result = next(mutex);
  if (result == 0) zebcomn_test::NoteUnlock();
  return result;
}

// Files.
CLOSING_CALL(int, close, (int fd), (fd), kMinusOne, EIO, EINTR)
CLOSING_CALL(int, closedir, (void* stream), (stream), kMinusOne, EBADF)
CLOSING_CALL(int, fclose, (void* stream), (stream), kEndOfFile, EIO, ENOSPC)
CALL(void*, fdopen, (int fd, const char* mode), (fd, mode), kNull, ENOMEM)
CALL(void*, fopen, (const char* path, const char* mode), (path, mode), kNull, ENOMEM, EMFILE,
     EACCES)
CALL(void*, fopen64, (const char* path, const char* mode), (path, mode), kNull, ENOMEM, EMFILE,
     EACCES)
CALL(int, fstat, (int fd, void* status), (fd, status), kMinusOne, EOVERFLOW)
CALL(int, fstat64, (int fd, void* status), (fd, status), kMinusOne, EOVERFLOW)
CALL(int, __fstat64_time64, (int fd, void* status), (fd, status), kMinusOne, EOVERFLOW)
CALL(int, fstatat, (int dir, const char* path, void* status, int flags), (dir, path, status, flags),
     kMinusOne, ENOENT)
CALL(int, fstatat64, (int dir, const char* path, void* status, int flags),
     (dir, path, status, flags), kMinusOne, ENOENT)
CALL(int, __fstatat64_time64, (int dir, const char* path, void* status, int flags),
     (dir, path, status, flags), kMinusOne, ENOENT)
CALL(int, ftruncate, (int fd, Offset length), (fd, length), kMinusOne, EIO)
CALL(int, ftruncate64, (int fd, int64_t length), (fd, length), kMinusOne, EIO)
READING_CALL(fread)
READING_CALL(fread_unlocked)
CALL(size_t, fwrite, (const void* block, size_t size, size_t count, void* stream),
     (block, size, count, stream), kZero, ENOSPC)
CALL(size_t, fwrite_unlocked, (const void* block, size_t size, size_t count, void* stream),
     (block, size, count, stream), kZero, ENOSPC)
CALL(char*, getcwd, (char* buffer, size_t size), (buffer, size), kNull, ENOENT)
CALL(void*, getmntent_r, (void* stream, void* entry, char* buffer, int size),
     (stream, entry, buffer, size), kNull, ENOMEM)
CALL(Offset, lseek, (int fd, Offset offset, int whence), (fd, offset, whence), kMinusOne, EINVAL)
CALL(int64_t, lseek64, (int fd, int64_t offset, int whence), (fd, offset, whence), kMinusOne,
     EINVAL)
CALL(int, lstat, (const char* path, void* status), (path, status), kMinusOne, ENOENT, EACCES)
CALL(int, lstat64, (const char* path, void* status), (path, status), kMinusOne, ENOENT, EACCES)
CALL(int, __lstat64_time64, (const char* path, void* status), (path, status), kMinusOne, ENOENT,
     EACCES)
CALL(int, mkdir, (const char* path, unsigned mode), (path, mode), kMinusOne, ENOSPC, EACCES)
CALL(int, mkostemp, (char* pattern, int flags), (pattern, flags), kMinusOne, EEXIST, EACCES)
CALL(int, mkostemp64, (char* pattern, int flags), (pattern, flags), kMinusOne, EEXIST, EACCES)
CALL(void*, opendir, (const char* path), (path), kNull, EMFILE, ENOMEM)
CALL(ssize_t, read, (int fd, void* buffer, size_t size), (fd, buffer, size), kMinusOne, EIO)
CALL(ssize_t, __read_chk, (int fd, void* buffer, size_t size, size_t room),
     (fd, buffer, size, room), kMinusOne, EIO)
CALL(void*, readdir, (void* stream), (stream), kNull, EIO)
CALL(void*, readdir64, (void* stream), (stream), kNull, EIO)
CALL(ssize_t, readlink, (const char* path, char* buffer, size_t size), (path, buffer, size),
     kMinusOne, EIO)
CALL(ssize_t, __readlink_chk, (const char* path, char* buffer, size_t size, size_t room),
     (path, buffer, size, room), kMinusOne, EIO)
CALL(int, remove, (const char* path), (path), kMinusOne, EBUSY)
CALL(int, rename, (const char* from, const char* to), (from, to), kMinusOne, EXDEV)
CALL(void*, setmntent, (const char* path, const char* mode), (path, mode), kNull, ENOMEM, EMFILE)
CALL(int, stat, (const char* path, void* status), (path, status), kMinusOne, ENOENT, EACCES)
CALL(int, stat64, (const char* path, void* status), (path, status), kMinusOne, ENOENT, EACCES)
CALL(int, __stat64_time64, (const char* path, void* status), (path, status), kMinusOne, ENOENT,
     EACCES)
CALL(int, statfs, (const char* path, void* status), (path, status), kMinusOne, EIO)
CALL(int, statfs64, (const char* path, void* status), (path, status), kMinusOne, EIO)
CALL(int, unlinkat, (int dir, const char* path, int flags), (dir, path, flags), kMinusOne, EBUSY)
CALL(ssize_t, write, (int fd, const void* buffer, size_t size), (fd, buffer, size), kMinusOne,
     ENOSPC)

int ferror(void* stream) {
  NEXT(ferror);
  return zebcomn_test::HasFailedStream(stream) ? kNotZero : next(stream);
}

int open(const char* path, int flags, ...) {
  NEXT(open);
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = va_arg(arguments, unsigned);
  va_end(arguments);
  if (const int error = DUE(open, EMFILE, EACCES)) {
    errno = error;
    return kMinusOne;
  }
  return next(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  NEXT(open64);
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = va_arg(arguments, unsigned);
  va_end(arguments);
  if (const int error = DUE(open64, EMFILE, EACCES)) {
    errno = error;
    return kMinusOne;
  }
  return next(path, flags, mode);
}

int __isoc99_vfscanf(void* stream, const char* format, va_list arguments);

int __isoc99_fscanf(void* stream, const char* format, ...) {
  if (const int error = DUE(__isoc99_fscanf, EIO, ENOMEM)) {
    errno = error;
    return kEndOfFile;
  }
  va_list arguments;
  va_start(arguments, format);
  const InsideCall inside;
  const int read = __isoc99_vfscanf(stream, format, arguments);
  va_end(arguments);
  return read;
}

// Shared objects.
CLOSING_CALL(int, dlclose, (void* object), (object), kMinusOne, EBUSY)
CALL(char*, dlerror, (), (), kNull, ENOMEM)
CALL(void*, dlopen, (const char* name, int flags), (name, flags), kNull, ENOMEM)

// A sanitizer looks for the functions behind its own with dlsym(), which goes by its caller.
#ifndef ZEBCOMN_SANITIZED
void* dlsym(void* object, const char* name) {
  NEXT(dlsym);
  if (const int error = DUE(dlsym, ENOENT)) {
    errno = error;
    return kNull;
  }
  const InsideCall inside;
  return next(object, name);
}
#endif

// Names of hosts, users and networks, and sockets.
CALL(int, connect, (int fd, const void* address, unsigned length), (fd, address, length), kMinusOne,
     ECONNREFUSED, EINTR)
ERROR_CALL(getaddrinfo, (const char* host, const char* service, const void* hints, void** list),
           (host, service, hints, list), kResolverMemory, kResolverAgain, kResolverFail,
           kResolverSystem)
CALL(int, getdomainname, (char* name, size_t size), (name, size), kMinusOne, EINVAL)
CALL(int, __getdomainname_chk, (char* name, size_t size, size_t room), (name, size, room),
     kMinusOne, EINVAL)
CALL(int, gethostname, (char* name, size_t size), (name, size), kMinusOne, EINVAL)
CALL(int, __gethostname_chk, (char* name, size_t size, size_t room), (name, size, room), kMinusOne,
     EINVAL)
CALL(int, getifaddrs, (void** list), (list), kMinusOne, ENOMEM, EMFILE)
ERROR_CALL(getnameinfo,
           (const void* address, unsigned length, char* host, unsigned host_size, char* service,
            unsigned service_size, int flags),
           (address, length, host, host_size, service, service_size, flags), kResolverMemory,
           kResolverAgain)
CALL(int, getsockname, (int fd, void* address, void* length), (fd, address, length), kMinusOne,
     ENOBUFS)
CALL(unsigned, if_nametoindex, (const char* name), (name), kZero, EMFILE)
CALL(const char*, inet_ntop, (int family, const void* address, char* text, unsigned size),
     (family, address, text, size), kNull, ENOSPC)
CALL(int, socket, (int domain, int type, int protocol), (domain, type, protocol), kMinusOne, EMFILE,
     ENOMEM)
CALL(int, uname, (void* names), (names), kMinusOne, EFAULT)

int gethostbyname_r(const char* name, void* entry, char* buffer, size_t size, void** result,
                    int* host_error) {
  NEXT(gethostbyname_r);
  if (const int error = DUE(gethostbyname_r, EAGAIN, ENOMEM)) {
    *result = nullptr;
    *host_error = kHostTryAgain;
    return error;
  }
  const InsideCall inside;
  return next(name, entry, buffer, size, result, host_error);
}

int getpwuid_r(unsigned user, void* entry, char* buffer, size_t size, void** result) {
  NEXT(getpwuid_r);
  if (const int error = DUE(getpwuid_r, ENOMEM, EMFILE)) {
    *result = nullptr;
    return error;
  }
  const InsideCall inside;
  return next(user, entry, buffer, size, result);
}

int ioctl(int fd, unsigned long request, ...) {
  NEXT(ioctl);
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (const int error = DUE(ioctl, ENODEV)) {
    errno = error;
    return kMinusOne;
  }
  return next(fd, request, argument);
}

// Text, time and the environment.
CALL(size_t, iconv, (void* converter, char** in, size_t* in_left, char** out, size_t* out_left),
     (converter, in, in_left, out, out_left), kAllOnes, EILSEQ, EINVAL)
CLOSING_CALL(int, iconv_close, (void* converter), (converter), kMinusOne, EINVAL)
CALL(void*, iconv_open, (const char* to, const char* from), (to, from), reinterpret_cast<void*>(-1),
     ENOMEM, EMFILE, EINVAL)
CALL(size_t, mbsrtowcs, (wchar_t * to, const char** from, size_t size, void* state),
     (to, from, size, state), kAllOnes, EILSEQ)
CALL(size_t, wcsrtombs, (char* to, const wchar_t** from, size_t size, void* state),
     (to, from, size, state), kAllOnes, EILSEQ)
CALL(int, gettimeofday, (void* now, void* zone), (now, zone), kMinusOne, EPERM)
CALL(int, __gettimeofday64, (void* now, void* zone), (now, zone), kMinusOne, EPERM)
CALL(void*, gmtime_r, (const void* time, void* fields), (time, fields), kNull, EOVERFLOW)
CALL(void*, __gmtime64_r, (const void* time, void* fields), (time, fields), kNull, EOVERFLOW)
CALL(void*, localtime_r, (const void* time, void* fields), (time, fields), kNull, EOVERFLOW)
CALL(void*, __localtime64_r, (const void* time, void* fields), (time, fields), kNull, EOVERFLOW)
CALL(long, mktime, (void* fields), (fields), kMinusOne, EOVERFLOW)
CALL(int64_t, __mktime64, (void* fields), (fields), kMinusOne, EOVERFLOW)
CALL(int, setenv, (const char* name, const char* value, int replace), (name, value, replace),
     kMinusOne, ENOMEM)
CALL(int, unsetenv, (const char* name), (name), kMinusOne, EINVAL)
CALL(long, sysconf, (int name), (name), kMinusOne, EINVAL)
CALL(long, times, (void* buffer), (buffer), kMinusOne, EFAULT)

}  // extern "C"
#pragma GCC visibility pop
