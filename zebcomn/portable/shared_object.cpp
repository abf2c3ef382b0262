#include "zebcomn/portable/shared_object.h"

#include <dlfcn.h>

#include <cstring>

#include "zebcomn/portable/loader_message_internal.h"

BOOL load_shared_object_image(void** handle, const char* name, char* message) {
  if (handle == nullptr || name == nullptr) return FALSE;
  void* loaded = dlopen(name, RTLD_LAZY);
  if (loaded != nullptr) {
    *handle = loaded;
    return TRUE;
  }
  const char* reason = dlerror();
  if (message != nullptr && reason != nullptr) {
    std::strncat(message, reason, zebcomn::kLongestLoaderText);
  }
  return FALSE;
}

BOOL unload_shared_object_image(void* handle) {
  return handle != nullptr && dlclose(handle) == 0 ? TRUE : FALSE;
}
