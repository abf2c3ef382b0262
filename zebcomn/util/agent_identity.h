#ifndef ZEBCOMN_UTIL_AGENT_IDENTITY_H_
#define ZEBCOMN_UTIL_AGENT_IDENTITY_H_

/// \file
/// How the agent names itself: new GUIDs in registry form, and its fixed software identifier.
/// C11 and C++17. No call touches `nErrno`; any number of threads may call.
///
/// \par Example
/// \include identity_and_versions.c

#include <stddef.h>

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Makes a new GUID: `tivCoCreateGuid`, with the limits on uniqueness that are stated there.
///
/// \param[out] guid      Receives the 16 bytes; may be null.
/// \param[out] text      Receives the text form: upper case, in braces, 38 characters.
/// \param      textSize  Capacity of `text` in characters. The text is copied as `strncpy` does:
///                       with 38 or less it is cut and not terminated, with more the rest is filled
///                       with NULs. With 0 or less no text is copied, and `text` may be null.
/// \return 1; 0 when the GUID cannot be made or rendered, and for a null `text` that has a size:
///         both outputs are then left alone.
ZEBCOMN_EXPORT BOOL tivmcomn_create_guid(unsigned char* guid, char* text, int textSize);

/// Copies the software identifier, "KZUAGENT4600WRLX", which has 16 characters.
///
/// \param[out] out   Receives the text, its NUL, and NULs up to its last byte but one.
///                   Null: nothing is written.
/// \param      size  Capacity of `out` in bytes. With 16 or less nothing is written at all, and
///                   nothing tells the caller so: clear the buffer first, or pass 17 or more.
ZEBCOMN_EXPORT void tivmcomn_get_agent_softwareid(char* out, unsigned size);

/// The same in wide characters. `size` counts them. Only the text and its NUL are written.
/// \param[out] out As above.
/// \param size Capacity of `out` in wide characters.
ZEBCOMN_EXPORT void tivmcomn_get_agent_softwareid_W(wchar_t* out, unsigned size);

/// Does nothing and returns at once; callers link against it.
ZEBCOMN_EXPORT void tivmcomn_delay(void);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_AGENT_IDENTITY_H_
