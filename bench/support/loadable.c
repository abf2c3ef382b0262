/* The module that the library-loading benchmarks load. */
#include <stdint.h>

__attribute__((visibility("default"))) int32_t DllMain(void* module, uint32_t reason, void* unused);
__attribute__((visibility("default"))) int32_t Answer(void);

int32_t DllMain(void* module, uint32_t reason, void* unused) {
  (void)module;
  (void)reason;
  (void)unused;
  return 1;
}

int32_t Answer(void) {
  return 42;
}
