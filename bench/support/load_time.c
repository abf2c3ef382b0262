/* Prints how many nanoseconds dlopen() of the library named takes, its constants built. Compiled as
 * C and as C++: in the latter the C++ library is loaded already. */
#include <dlfcn.h>
#include <stdio.h>
#include <time.h>

int main(int argc, char** argv) {
  struct timespec before;
  struct timespec after;
  void* library;
  if (argc != 2) return 2;
  clock_gettime(CLOCK_MONOTONIC, &before);
  library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  clock_gettime(CLOCK_MONOTONIC, &after);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  printf("%lld\n", (long long)(after.tv_sec - before.tv_sec) * 1000000000 +
                       (long long)(after.tv_nsec - before.tv_nsec));
  return 0;
}
