#ifndef ZEBCOMN_PORTABLE_DYNAMIC_LIBRARY_H_
#define ZEBCOMN_PORTABLE_DYNAMIC_LIBRARY_H_

/// \file
/// Windows-style loading of modules. C11 and C++17.
///
/// Rules of the calls here:
///  - A module handle is what `dlopen` gave. Each successful load of a name is given back by one
///    tivFreeLibrary().
///  - A module that exports "DllMain" is told of its load (reason 1) and, before it is unloaded, of
///    its unload (reason 0). "DllMain" runs with `MutexDynamicLibraryList` held, and so do the
///    module's own constructors and destructors: they must not load or free libraries, and the
///    calling thread must not hold that mutex. "DllMain" must return; it must not throw. All of
///    them run with cancellation disabled.
///  - A call that has a message pointer stores there, when it is not null, the address of its own
///    process-wide text: empty, or the reason of a failure. The text is the library's; the next
///    call of the same function, in any thread, overwrites it. Some calls make others inside:
///    tivLoadLibraryW() a tivLoadLibrary(), a load and tivLoadString() a tivGetProcAddress(), the
///    version stamps of plug-ins (zebcomn/util/plugin_version.h) both.
///  - Any number of threads may call.
///
/// \par Example
/// \include dynamic_libraries.c

#include <stddef.h>

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

enum {
  TIV_LIBRARY_COUNT = 50,          ///< How many names can be loaded at once.
  TIV_LIBRARY_NAME_CAPACITY = 264  ///< Bytes of a record's name field.
};

// The reasons that a "DllMain" is given.
#define TIV_PROCESS_DETACH ((DWORD)0)  ///< The module is about to be unloaded.
#define TIV_PROCESS_ATTACH ((DWORD)1)  ///< The module has been loaded.

/// What a module exports as "DllMain". The last argument is always null. The result is read for
/// TIV_PROCESS_ATTACH only: anything but 1 refuses the load.
typedef BOOL (*TivEntryRoutine)(void* module, DWORD reason, void* reserved);

/// One loaded name. Callers may look at it; only the library changes it.
typedef struct TivLibraryRecord {
  char name[TIV_LIBRARY_NAME_CAPACITY];  ///< As it was given, cut at 260 bytes.
  void* module;                          ///< Null until "DllMain" has accepted the load.
  TivEntryRoutine entry_routine;         ///< The module's "DllMain", or null.
  int32_t reference_count;               ///< Loads that have not been given back; it wraps.
  int32_t thread_calls_disabled;         ///< Set by tivDisableThreadLibraryCalls(); without effect.
} TivLibraryRecord;

/// The loaded names; a null entry is free. Changed under `MutexDynamicLibraryList`; the first
/// tivLoadLibrary() of the process clears them.
extern ZEBCOMN_EXPORT TivLibraryRecord* pDynamicLibraryList[TIV_LIBRARY_COUNT];

/// Loads a module, or counts one more load of a name that is loaded already: its "DllMain" is then
/// not called again.
///
/// Names are compared byte by byte: two names of one file have an entry, a count and a "DllMain"
/// call each, with the same handle. A name of more than 260 bytes is never found again; each load
/// of it takes an entry, and a name that is just its first 260 bytes is taken for a load of it.
///
/// \param[in]  lpLibFileName  File name, as for `dlopen`: the empty one is the program itself. Null
///                            is a failure to load.
/// \param[out] ppMessage      May be null. See above; at most 511 bytes.
/// \return The module handle, or null with the message
///   - "locked" (`nErrno` 16): the table's lock could not be had;
///   - "library list full" (`nErrno` 12);
///   - "out of memory" (`nErrno` left alone);
///   - the loader's own text (`nErrno` left alone). The entry's record is then never freed;
///   - "dllmain returned false" (`nErrno` left alone). The shared object then stays loaded.
ZEBCOMN_EXPORT void* tivLoadLibrary(const char* lpLibFileName, const char** ppMessage);

/// tivLoadLibrary() with the name and the message in wide form.
///
/// The name is converted to UTF-8 up to the first character that UTF-8 does not have (a surrogate),
/// and what is before that is loaded. A name of which nothing can be converted gives null with the
/// message "out of memory". The message is converted only when `ppMessage` is given.
/// \param[in] lpLibFileName File name, NUL-terminated.
/// \param[out] ppMessage May be null. As for tivLoadLibrary(), in a buffer of its own.
/// \return As tivLoadLibrary().
ZEBCOMN_EXPORT void* tivLoadLibraryW(const wchar_t* lpLibFileName, const wchar_t** ppMessage);

/// Looks up a symbol in a module, or in any other object that `dlopen` gave.
///
/// \param[in] hModule The handle.
/// \param[in] lpProcName The symbol's name.
/// \param[out] ppMessage  May be null. See above: empty, or the loader's own text.
/// \return The symbol's address; null when there is none, and for a null handle or name (22 in
///   `nErrno`).
ZEBCOMN_EXPORT void* tivGetProcAddress(void* hModule, const char* lpProcName,
                                       const char** ppMessage);

/// Gives back one load. The last one tells "DllMain", unloads the module and frees its entry, also
/// when the unloading fails.
///
/// \param[in] hLibModule A handle that tivLoadLibrary() or tivLoadLibraryW() gave.
/// \return TRUE; FALSE when unloading fails (`nErrno` is left alone), for a handle that is not in
///   the table (22), and when the table's lock cannot be had (16).
ZEBCOMN_EXPORT BOOL tivFreeLibrary(void* hLibModule);

/// Calls the module's "loadString" with the same four arguments.
/// \param[in] hInstance The module.
/// \param[in] uID The text's number.
/// \param[out] lpBuffer For the module to fill.
/// \param[in] nBufferMax Its capacity, as the module counts it.
/// \return Its result; 0 when the module exports none. A null handle is refused (22 in `nErrno`).
ZEBCOMN_EXPORT int32_t tivLoadString(void* hInstance, UINT uID, char* lpBuffer, int32_t nBufferMax);

/// Marks a loaded module as not interested in thread events, of which the library sends none.
///
/// It finds nothing for the handle that a "DllMain" is given at its load, because the entry is
/// filled after that. `MutexDynamicLibraryList` is not taken: a "DllMain" may call it.
///
/// \param[in] hLibModule The module.
/// \return TRUE; FALSE for a handle that is null or not in the table. `nErrno` is left alone.
ZEBCOMN_EXPORT BOOL tivDisableThreadLibraryCalls(void* hLibModule);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_DYNAMIC_LIBRARY_H_
