#ifndef ZEBCOMN_PORTABLE_TYPES_H_
#define ZEBCOMN_PORTABLE_TYPES_H_

/// \file
/// The Windows-style types and values that the whole interface is written in. C11 and C++17.
///
/// Every type but the pointers has the same width on every target; a pointer-sized value is used
/// only for handles, module handles and thread identities.

#include <stdint.h>

typedef int32_t BOOL;        ///< 1 is true, 0 is false; no other value is returned.
typedef int32_t LONG;        ///< 32 bits, also where the compiler's `long` has 64.
typedef uint32_t DWORD;      ///< 32 bits, unsigned.
typedef uint32_t UINT;       ///< 32 bits, unsigned.
typedef uint16_t WORD;       ///< 16 bits, unsigned.
typedef int64_t LONGLONG;    ///< 64 bits.
typedef uint64_t ULONGLONG;  ///< 64 bits, unsigned.
typedef void* HANDLE;        ///< Designates one handle record; null and all-ones are invalid.

#ifndef TRUE
#define TRUE 1  ///< The BOOL that means yes.
#endif
#ifndef FALSE
#define FALSE 0  ///< The BOOL that means no.
#endif

/// The all-ones handle, the second invalid value beside null. Pointer-sized on every target.
#define TIV_INVALID_HANDLE ((HANDLE)(intptr_t)-1)

/// The all-ones 32-bit value: no TLS slot, an unknown file size, a wait without limit.
#define TIV_INVALID_DWORD ((DWORD)0xFFFFFFFFu)

// Results of the flat utilities and of the lock and list constructors.
#define ZEBCOMN_STATUS_OK ((uint32_t)0)                 ///< Success.
#define ZEBCOMN_STATUS_FAILURE ((uint32_t)0x80000008u)  ///< Every kind of failure.

/// The capacity, in bytes, that the fixed path buffers of the interface have, NUL included.
#define ZEBCOMN_PATH_CAPACITY 260

#endif  // ZEBCOMN_PORTABLE_TYPES_H_
