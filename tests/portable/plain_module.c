/* A module without "DllMain" and without "loadString". */
#include <stdint.h>

int32_t answer(void);

int32_t answer(void) {
  return 17;
}

/* A symbol whose address is null: looking it up finds it and gives null without an error. */
__asm__(".globl symbol_at_null\n.set symbol_at_null, 0\n");
