/* A module whose "DllMain" and "loadString" call back into the test that loads it. */
#include <stdint.h>

int32_t observe_dll_main(void* module, uint32_t reason, void* reserved);
int32_t observe_load_string(void* module, uint32_t id, char* buffer, int32_t size);

int32_t DllMain(void* module, uint32_t reason, void* reserved);
int32_t loadString(void* module, uint32_t id, char* buffer, int32_t size);
int32_t answer(void);

int32_t DllMain(void* module, uint32_t reason, void* reserved) {
  return observe_dll_main(module, reason, reserved);
}

int32_t loadString(void* module, uint32_t id, char* buffer, int32_t size) {
  return observe_load_string(module, id, buffer, size);
}

int32_t answer(void) {
  return 42;
}
