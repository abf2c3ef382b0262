/* Reaches the library through dlopen alone: loads it by path, uses it, unloads it, twice. */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

typedef void* (*CreateEvent)(void*, int32_t, int32_t, const char*);
typedef uint32_t (*Wait)(void*, uint32_t);
typedef int32_t (*Close)(void*);
typedef void (*SoftwareId)(char*, unsigned);

/* A pointer to a routine; copied, since ISO C converts no data pointer to one. */
#define FIND(routine, library, name)          \
  do {                                        \
    void* found = dlsym((library), (name));   \
    memcpy(&(routine), &found, sizeof found); \
  } while (0)

static int use(void* library) {
  CreateEvent create;
  Wait wait;
  Close close;
  SoftwareId identify;
  FIND(create, library, "tivCreateEvent");
  FIND(wait, library, "tivWaitForSingleObject");
  FIND(close, library, "tivCloseHandle");
  FIND(identify, library, "tivmcomn_get_agent_softwareid");
  if (!create || !wait || !close || !identify) return 2;
  void* event = create(NULL, 1, 1, NULL);
  if (wait(event, 0) != 2 || close(event) != 1) return 3;
  char text[17] = "";
  identify(text, sizeof text);
  return strcmp(text, "KZUAGENT4600WRLX") == 0 ? 0 : 4;
}

int main(int argc, char** argv) {
  if (argc != 2) return 1;
  for (int round = 0; round < 2; ++round) {
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
      fprintf(stderr, "%s\n", dlerror());
      return 1;
    }
    const int status = use(library);
    if (status != 0) return status;
    if (dlclose(library) != 0) return 5;
    /* Nothing of it stays behind. */
    if (dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) != NULL) return 6;
  }
  puts("the library was loaded and unloaded");
  return 0;
}
