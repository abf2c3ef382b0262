#ifndef ZEBCOMN_UTIL_PLUGIN_VERSION_H_
#define ZEBCOMN_UTIL_PLUGIN_VERSION_H_

/// \file
/// The version of a plug-in module, read through the module's own entry point. C11 and C++17.
///
/// Rules of both calls:
///  - The module is loaded with `tivLoadLibrary` and always unloaded again: its "DllMain" runs, and
///    `nErrno` is as these calls leave it. Any number of threads may call.
///  - `out` is filled with `size` NULs first. On success it receives the stamp; one that does not
///    fit is cut and terminated. With a `size` of 0 nothing is written.
///  - The result is 1; it is 0, and `out` stays all NUL, when the module cannot be loaded, has no
///    "ZUPLUGIN_GetVersion" or reports a failure. A null `out` gives 0 without loading anything.
///
/// \par Example
/// \include identity_and_versions.c

#include <stdint.h>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// What a plug-in module exports, with C linkage, as "ZUPLUGIN_GetVersion": it stores the four
/// numbers of its version and returns 0, or returns another value for failure. It must not throw.
typedef int (*ZebcomnPluginGetVersion)(uint16_t* major_number, uint16_t* minor_number,
                                       uint16_t* third_number, uint16_t* fourth_number);

/// The hexadecimal stamp: sixteen lower-case digits, four for each number. Version 1.2.3.4 gives
/// "0001000200030004".
/// \param[in] modulePath File name of the module, only read.
/// \param[out] out Receives the stamp.
/// \param[in] size Capacity of `out` in bytes; 17 hold the whole stamp.
/// \return 1 or 0, see above.
ZEBCOMN_EXPORT int tivmcomn_GetFileResourceVersionStamp(char* modulePath, char* out, unsigned size);

/// The dotted stamp, in decimal, such as "1.2.3.4"; at most 23 characters.
/// \param[in] modulePath File name of the module, only read.
/// \param[out] out Receives the stamp.
/// \param[in] size Capacity of `out` in bytes; 24 hold every stamp.
/// \return 1 or 0, see above.
ZEBCOMN_EXPORT int tivmcomn_GetFileResourceStringVersionStamp(char* modulePath, char* out,
                                                              unsigned size);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_PLUGIN_VERSION_H_
