#ifndef ZEBCOMN_TESTS_PORTABLE_INTERPOSED_STEP_H_
#define ZEBCOMN_TESTS_PORTABLE_INTERPOSED_STEP_H_

/// \file
/// For the files that define functions of the C library: the step around a call, and the function
/// that it is passed on to.

#include <dlfcn.h>

#include <atomic>

#include "tests/portable/interposed_calls.h"

namespace zebcomn_test {

/// Runs the step hook before and after a call.
class Step {
 public:
  Step(Call call, const void* object) : call_(call), object_(const_cast<void*>(object)) {
    Run(true);
  }
  ~Step() { Run(false); }
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;

 private:
  void Run(bool before) const;

  Call call_;
  void* object_;
};

/// The C library's own function of a name, found once.
class Real {
 public:
  constexpr explicit Real(const char* name) : name_(name) {}

  template <typename Result, typename... Arguments>
  Result Call(Arguments... arguments) {
    void* function = function_.load(std::memory_order_relaxed);
    if (function == nullptr) {
      function = dlsym(RTLD_NEXT, name_);
      function_.store(function, std::memory_order_relaxed);
    }
    return reinterpret_cast<Result (*)(Arguments...)>(function)(arguments...);
  }

 private:
  const char* name_;
  std::atomic<void*> function_{nullptr};
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_INTERPOSED_STEP_H_
