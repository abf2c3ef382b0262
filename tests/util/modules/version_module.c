/* Plug-in modules of every kind; what this file is compiled with chooses among them. */
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/util/plugin_version.h"

#ifdef MODULE_ENTRY_RESULT
ZEBCOMN_EXPORT BOOL DllMain(void* module, DWORD reason, void* reserved);
BOOL DllMain(void* module, DWORD reason, void* reserved) {
  (void)module;
  (void)reason;
  (void)reserved;
  return MODULE_ENTRY_RESULT;
}
#endif

#ifdef MODULE_NUMBERS
ZEBCOMN_EXPORT int ZUPLUGIN_GetVersion(uint16_t* major_number, uint16_t* minor_number,
                                       uint16_t* third_number, uint16_t* fourth_number);
int ZUPLUGIN_GetVersion(uint16_t* major_number, uint16_t* minor_number, uint16_t* third_number,
                        uint16_t* fourth_number) {
  static const uint16_t numbers[] = {MODULE_NUMBERS};
  *major_number = numbers[0];
  *minor_number = numbers[1];
  *third_number = numbers[2];
  *fourth_number = numbers[3];
  return MODULE_RESULT;
}
#endif

/* A module without any entry point is not an empty file either. */
ZEBCOMN_EXPORT int version_module_is_here;
int version_module_is_here = 1;
