/* Part of every test program in a coverage build: the counters are also written when a process ends
   by _exit(), by abort() or by an assertion, as the children of the tests do, from behind a
   chroot() and under a limit of the size of files. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

/* One of the two is there: the library is either linked or part of the program. */
__attribute__((weak)) void zebcomn_write_coverage(void);
__attribute__((weak)) void __gcov_dump(void);

void _exit(int status);
void abort(void);
void __assert_fail(const char* expression, const char* file, unsigned line, const char* function);

static int real_root = -1;

__attribute__((constructor)) static void RememberRoot(void) {
  real_root = open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
  /* Out of the way of tests that expect the next free descriptor. */
  const int high = fcntl(real_root, F_DUPFD_CLOEXEC, 900);
  close(real_root);
  real_root = high;
}

static void LiftFileSizeLimit(void) {
  struct rlimit limit;
  if (getrlimit(RLIMIT_FSIZE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_FSIZE, &limit);
}

static void WriteCounters(void) {
  LiftFileSizeLimit();
  if (fchdir(real_root) == 0 && chroot(".") != 0) {
    /* Not behind a chroot() then, or not allowed to have made one. */
  }
  if (zebcomn_write_coverage) zebcomn_write_coverage();
  if (__gcov_dump) __gcov_dump();
}

void _exit(int status) {
  WriteCounters();
  for (;;) syscall(SYS_exit_group, status);
}

void abort(void) {
  WriteCounters();
  signal(SIGABRT, SIG_DFL);
  raise(SIGABRT);
  for (;;) syscall(SYS_exit_group, 127);
}

void __assert_fail(const char* expression, const char* file, unsigned line, const char* function) {
  typedef void (*Next)(const char*, const char*, unsigned, const char*);
  WriteCounters();
  ((Next)(size_t)dlsym(RTLD_NEXT, "__assert_fail"))(expression, file, line, function);
  abort();
}
