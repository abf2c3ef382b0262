#ifndef ZEBCOMN_TESTS_SUPPORT_NEXT_FUNCTION_H_
#define ZEBCOMN_TESTS_SUPPORT_NEXT_FUNCTION_H_

#include <dlfcn.h>

#include <cstdlib>

namespace zebcomn_test {

/// The definition that an interposed function would have reached, by its symbol's name.
/// `Function` is the type of the interposer.
template <typename Function>
Function* NextFunction(const char* symbol) {
  void* address = dlsym(RTLD_NEXT, symbol);
  if (address == nullptr) std::abort();
  return reinterpret_cast<Function*>(address);
}

}  // namespace zebcomn_test

// The symbol of a function that has a form for large files: the headers rename it on 32-bit
// targets.
#if defined(_FILE_OFFSET_BITS) && __SIZEOF_POINTER__ == 4
#define ZEBCOMN_LARGE_FILE_SYMBOL(name) #name "64"
#else
#define ZEBCOMN_LARGE_FILE_SYMBOL(name) #name
#endif

#endif  // ZEBCOMN_TESTS_SUPPORT_NEXT_FUNCTION_H_
