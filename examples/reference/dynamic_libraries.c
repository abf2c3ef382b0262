/* A function is looked up in a shared object. The reason of a failure is copied or shown at once.
 */
#include <stdio.h>
#include <string.h>
#include <zebcomn/portable/dynamic_library.h>
#include <zebcomn/portable/shared_object.h>

int main(void) {
  const char* message = "";
  void* module = tivLoadLibrary("libm.so.6", &message);
  if (module == NULL) {
    fprintf(stderr, "%s\n", message);
    return 1;
  }
  double (*square_root)(double) = NULL;
  void* symbol = tivGetProcAddress(module, "sqrt", &message);
  memcpy(&square_root, &symbol, sizeof symbol);
  if (square_root == NULL) return 1;
  printf("%.1f\n", square_root(6.25));

  char reason[512] = "";
  void* missing = NULL;
  int loaded = load_shared_object_image(&missing, "/nowhere/missing.so", reason);
  printf("%s\n", reason);
  return tivFreeLibrary(module) && !loaded && reason[0] != '\0' ? 0 : 1;
}
