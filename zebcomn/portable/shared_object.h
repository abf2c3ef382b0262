#ifndef ZEBCOMN_PORTABLE_SHARED_OBJECT_H_
#define ZEBCOMN_PORTABLE_SHARED_OBJECT_H_

/// \file
/// Loading a shared object without a table and without an entry routine. C11 and C++17. `nErrno` is
/// left alone; any number of threads may call.
///
/// \par Example
/// \include dynamic_libraries.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Loads a shared object; its symbols are bound when they are first used, and no other object sees
/// them.
///
/// \param[out]    handle   Receives the handle, for tivGetProcAddress() and
///                         unload_shared_object_image(). Untouched on failure.
/// \param[in]     name     File name, as for `dlopen`.
/// \param[in,out] message  On failure the loader's own text is appended, at most 510 bytes and a
///                         NUL; the caller provides a terminated text with that much room after it.
///                         May be null. It stays as it is when an argument is null.
/// \return 1, or 0 when the object cannot be loaded or `handle` or `name` is null.
ZEBCOMN_EXPORT BOOL load_shared_object_image(void** handle, const char* name, char* message);

/// Gives back what load_shared_object_image() loaded.
/// \param handle What load_shared_object_image() gave.
/// \return 1, or 0 when the loader refuses the handle or it is null.
ZEBCOMN_EXPORT BOOL unload_shared_object_image(void* handle);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_SHARED_OBJECT_H_
