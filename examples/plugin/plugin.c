/* A plug-in module: the three entry points that the agent looks for, and nothing else. */
#include "examples/plugin/plugin_strings.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/util/plugin_version.h"

#include <string.h>

ZEBCOMN_EXPORT BOOL DllMain(void* module, DWORD reason, void* reserved);
ZEBCOMN_EXPORT int32_t loadString(void* module, UINT id, char* buffer, int32_t size);
ZEBCOMN_EXPORT int ZUPLUGIN_GetVersion(uint16_t* major_number, uint16_t* minor_number,
                                       uint16_t* third_number, uint16_t* fourth_number);

static int is_attached;

/* Told of the load and of the unload. A result other than TRUE would refuse the load. */
BOOL DllMain(void* module, DWORD reason, void* reserved) {
  (void)module;
  (void)reserved;
  is_attached = reason == TIV_PROCESS_ATTACH;
  return TRUE;
}

static const char* text_of(UINT id) {
  switch (id) {
    case PLUGIN_STRING_NAME:
      return "Example";
    case PLUGIN_STRING_PLATFORMS:
      return "WRLX:4:0:0-4:9:9 | LINUX";
    default:
      return NULL;
  }
}

/* Copies a text and returns its length; 0 for an unknown number or a buffer that is too small. */
int32_t loadString(void* module, UINT id, char* buffer, int32_t size) {
  const char* text = text_of(id);
  size_t length;
  (void)module;
  if (!is_attached || text == NULL || buffer == NULL || size <= 0) return 0;
  length = strlen(text);
  if (length >= (size_t)size) return 0;
  memcpy(buffer, text, length + 1);
  return (int32_t)length;
}

int ZUPLUGIN_GetVersion(uint16_t* major_number, uint16_t* minor_number, uint16_t* third_number,
                        uint16_t* fourth_number) {
  *major_number = 1;
  *minor_number = 2;
  *third_number = 3;
  *fourth_number = 4;
  return 0;
}
