// Stands between the library and the calls of the C library that wait, load, search or take zeroed
// memory: each is passed on, with a step before and after it. Goes with interposed_calls.cpp.
#include <dirent.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cstddef>

#include "tests/portable/interposed_step.h"

using zebcomn_test::Call;
using zebcomn_test::Real;
using zebcomn_test::Step;

#pragma GCC visibility push(default)
extern "C" {

int pthread_join(pthread_t thread, void** result) {
  static Real real("pthread_join");
  const Step step(Call::kOther, nullptr);
  return real.Call<int>(thread, result);
}

int pthread_sigmask(int how, const sigset_t* set, sigset_t* before) noexcept {
  static Real real("pthread_sigmask");
  const Step step(Call::kOther, nullptr);
  return real.Call<int>(how, set, before);
}

int sigwait(const sigset_t* set, int* signo) {
  static Real real("sigwait");
  const Step step(Call::kOther, nullptr);
  return real.Call<int>(set, signo);
}

int usleep(useconds_t microseconds) {
  static Real real("usleep");
  const Step step(Call::kOther, nullptr);
  return real.Call<int>(microseconds);
}

void* dlopen(const char* file, int mode) noexcept {
  static Real real("dlopen");
  const Step step(Call::kOther, nullptr);
  return real.Call<void*>(file, mode);
}

int dlclose(void* module) noexcept {
  static Real real("dlclose");
  const Step step(Call::kOther, nullptr);
  return real.Call<int>(module);
}

DIR* opendir(const char* path) {
  static Real real("opendir");
  const Step step(Call::kOther, nullptr);
  return real.Call<DIR*>(path);
}

int closedir(DIR* stream) {
  static Real real("closedir");
  const Step step(Call::kOther, nullptr);
  return real.Call<int>(stream);
}

#ifndef ZEBCOMN_SANITIZED
void* __libc_calloc(size_t count, size_t size);

void* calloc(size_t count, size_t size) noexcept {
  const Step step(Call::kOther, nullptr);
  return __libc_calloc(count, size);
}
#endif

}  // extern "C"
#pragma GCC visibility pop
