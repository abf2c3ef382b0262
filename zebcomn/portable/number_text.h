#ifndef ZEBCOMN_PORTABLE_NUMBER_TEXT_H_
#define ZEBCOMN_PORTABLE_NUMBER_TEXT_H_

/// \file
/// Numbers to text and back, conversion by the process's locale, tokens. C11 and C++17.
///
/// Rules for every call here:
/// - A radix is 10, 16 (lower case, no prefix) or 8 (no prefix). Any other radix, or a null buffer,
///   gives null and writes nothing; otherwise the result is the buffer.
/// - The caller's buffer has no stated size: 12 bytes hold every 32-bit number in any radix, 24
///   bytes every 64-bit one, NUL included.
/// - Nothing touches `nErrno`. Any number of threads may call.
///
/// \par Example
/// \include numbers_guids_clocks.c

#include <stddef.h>

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

/// Narrows a wide text by the locale's multibyte encoding (not UTF-8, unless the locale says so).
/// \param source Wide text, NUL-terminated.
/// \param count  Capacity of `destination` in bytes. The text is terminated only if it fits
///               together with its NUL.
/// \param destination Receives the text.
/// \return The bytes written, the NUL not counted; 0 for a character that the locale cannot express
///         and for a null argument.
ZEBCOMN_EXPORT size_t tivStandardUtoA(const wchar_t* source, size_t count, char* destination);

/// Widens a text in the locale's multibyte encoding.
/// \param source Text, NUL-terminated.
/// \param count  Capacity of `destination` in wide characters. The text is terminated only if it
///               fits with its NUL.
/// \param destination Receives the text.
/// \return The wide characters written, the NUL not counted; 0 for an invalid sequence and for a
///         null argument.
ZEBCOMN_EXPORT size_t tivStandardAtoU(const char* source, size_t count, wchar_t* destination);

/// A 32-bit number as text. In radix 16 and 8 a negative number is printed as its two's complement.
/// \param value The number.
/// \param buffer Receives the text and its NUL.
/// \param radix 10, 16 or 8.
/// \return `buffer`, or null.
ZEBCOMN_EXPORT char* tivItoa(int value, char* buffer, int radix);
/// \copydoc tivItoa()
ZEBCOMN_EXPORT char* tivItot(int value, char* buffer, int radix);

/// The low 32 bits of a number as text: signed in radix 10, unsigned in 16 and 8.
/// \param value The number.
/// \param buffer Receives the text and its NUL.
/// \param radix 10, 16 or 8.
/// \return `buffer`, or null.
ZEBCOMN_EXPORT char* tivUltot(ULONGLONG value, char* buffer, int radix);

/// A 64-bit number as text. In radix 16 and 8 a negative number is printed as its two's complement.
/// \param value The number.
/// \param buffer Receives the text and its NUL.
/// \param radix 10, 16 or 8.
/// \return `buffer`, or null.
ZEBCOMN_EXPORT char* tivI64toa(LONGLONG value, char* buffer, int radix);
/// \copydoc tivI64toa()
ZEBCOMN_EXPORT char* tivI64tot(LONGLONG value, char* buffer, int radix);

/// The 64-bit number that a text of decimal digits stands for, wrapping.
/// Neither a sign, white space nor a character that is no digit is looked for: each byte is folded
/// in as its value (0 to 255) less 48, so "1a" gives 59. Null gives 0.
/// \param text NUL-terminated; may be null.
/// \return The number.
ZEBCOMN_EXPORT LONGLONG tivAtoi64(const char* text);
/// \copydoc tivAtoi64()
ZEBCOMN_EXPORT LONGLONG tivTtoi64(const char* text);

/// `strtok_r`: the next token of `string` (null: of the text in hand, kept in `*save`), cut off in
/// place. Null when there is no further token, and for null delimiters or a null `save`.
/// \param string The text, which is changed; null after the first call.
/// \param delimiters The bytes that stand between tokens, NUL-terminated.
/// \param save Where the call keeps its place.
/// \return The token, a part of the caller's text, or null.
ZEBCOMN_EXPORT char* tivTstrtok_r(char* string, const char* delimiters, char** save);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_NUMBER_TEXT_H_
