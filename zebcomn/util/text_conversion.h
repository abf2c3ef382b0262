#ifndef ZEBCOMN_UTIL_TEXT_CONVERSION_H_
#define ZEBCOMN_UTIL_TEXT_CONVERSION_H_

/// \file
/// Conversion between narrow text (UTF-8) and wide text (one 32-bit code point per `wchar_t`).
///
/// Rules for every call here:
/// - What the C library's iconv takes is taken; the first character or byte sequence that it
///   refuses (a surrogate, an overlong or cut sequence, …) ends the output, terminated, at that
///   point, and that is not reported.
/// - Text ends at its first NUL. A converter that cannot be opened gives the empty text, which is
///   not reported either.
/// - Every call opens and closes its own converter: any number of threads may call. `nErrno` is
///   left alone.
///
/// \par Example
/// \include text.cpp

#include <cstdint>
#include <string>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Converts the wide text `src` to UTF-8 in `dst`.
///
/// \param[in]  src      Wide text, NUL-terminated.
/// \param[out] dst      Receives the UTF-8 text and its NUL. Untouched on failure.
/// \param[in]  dstSize  Capacity of `dst` in bytes, only read. It must hold the worst case, six
///                      bytes per wide character and one for the NUL, whatever the text really
///                      needs; 2^31 or more counts as negative and so as too small.
/// \return 0, or 0x80000008 for a null argument, a capacity that is 0 or too small, or no memory.
ZEBCOMN_EXPORT uint32_t tivmcomn_unicode_to_utf8(const wchar_t* src, char* dst,
                                                 unsigned int* dstSize);

/// Converts the UTF-8 text `src` to wide characters in `dst`.
///
/// \param[in]  src      UTF-8 text, NUL-terminated.
/// \param[out] dst      Receives the wide text and its NUL. Untouched on failure.
/// \param[in]  dstSize  Capacity of `dst` in wide characters, only read. It must hold one wide
///                      character per byte of `src` and one for the NUL.
/// \return 0, or 0x80000008 for a null argument, a capacity that is too small, or no memory.
ZEBCOMN_EXPORT uint32_t tivmcomn_utf8_to_unicode(const char* src, wchar_t* dst, int* dstSize);

ZEBCOMN_END_C

namespace quenty_com::pelu {

/// The UTF-8 form of a wide text; empty when there is no memory. Never throws.
/// \param text Wide text.
/// \return UTF-8.
ZEBCOMN_EXPORT std::string tivmcomn_wide_to_ansi(const std::wstring& text);

/// The wide form of a UTF-8 text; empty when there is no memory. Never throws.
/// \param text UTF-8.
/// \return Wide text.
ZEBCOMN_EXPORT std::wstring tivmcomn_ansi_to_wide(const std::string& text);

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_TEXT_CONVERSION_H_
