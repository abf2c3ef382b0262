#ifndef ZEBCOMN_UTIL_STRING_HELPERS_H_
#define ZEBCOMN_UTIL_STRING_HELPERS_H_

/// \file
/// Small helpers over narrow text. Each works on its arguments alone, so any thread may call; those
/// that look at letters or white space ask the process's locale, byte by byte. `nErrno` is left
/// alone. Those that return a string throw std::bad_alloc when there is no memory for it.
///
/// \par Example
/// \include text.cpp

#include <cstdint>
#include <string>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Ends `str` at its first ";", in place.
/// \param str The text; may be null.
/// \return Where the ";" stood, now a NUL; null when there is none or `str` is null.
ZEBCOMN_EXPORT char* tivmcomn_chop_semicolon(char* str);

/// Makes `path` end in "/", in place. Despite the name it never writes a backslash.
/// \param[in,out] path  The caller guarantees one spare byte after the NUL.
/// \return The length, in bytes, before any change: it does not count a "/" that was added. 0 for
///         an empty text, which becomes "/", and for null.
ZEBCOMN_EXPORT uint32_t tivmcomn_append_backslash_check(char* path);

ZEBCOMN_END_C

namespace quenty_com::pelu {

/// The text with each byte put through `toupper`. Letters outside the locale's
/// single-byte set, every multi-byte UTF-8 letter among them, stay as they are.
/// \param text The text.
/// \return The changed copy.
ZEBCOMN_EXPORT std::string tivmcomn_convert_to_upper(const std::string& text);
/// As tivmcomn_convert_to_upper(), with the other case.
/// \param text The text.
/// \return The changed copy.
ZEBCOMN_EXPORT std::string tivmcomn_convert_to_lower(const std::string& text);

/// The text without the bytes at its front that `isspace` takes for white space. A text of
/// white space alone gives the empty text.
/// \param text The text.
/// \return The changed copy.
ZEBCOMN_EXPORT std::string tivmcomn_strip_leading_whitespace(const std::string& text);
/// As tivmcomn_strip_leading_whitespace(), at the end.
/// \param text The text.
/// \return The changed copy.
ZEBCOMN_EXPORT std::string tivmcomn_strip_trailing_whitespace(const std::string& text);

/// The decimal form of a number, with "-" in front of a negative one.
/// \param value The number.
/// \return The text.
ZEBCOMN_EXPORT std::string tivmcomn_long_to_ansi_string(const long& value);
/// As tivmcomn_long_to_ansi_string(), in wide characters.
/// \param value The number.
/// \return The text.
ZEBCOMN_EXPORT std::wstring tivmcomn_long_to_wide_string(const long& value);

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_STRING_HELPERS_H_
