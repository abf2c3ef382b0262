#ifndef ZEBCOMN_PORTABLE_WILDCARD_H_
#define ZEBCOMN_PORTABLE_WILDCARD_H_

/// \file
/// Wildcard patterns of the directory search. C11 and C++17.
///
/// \par Example
/// \include files_and_search.c

#include <stdint.h>

#include "zebcomn/export.h"

ZEBCOMN_BEGIN_C

/// Compares `name` with `pattern`, byte by byte and case-sensitively. "?" stands for exactly one
/// byte, "*" for any number of them, every other byte for itself.
///
/// WARNING: this is not the usual globbing.
/// - The end of the pattern matches whatever remains of the name: "abc" matches "abcdef" and
///   "*.log" matches "x.log.1".
/// - A "*" that is reached at the end of the name matches, whatever follows it in the pattern:
///   "a*z" matches "a".
///
/// \param[in] pattern  A null or empty pattern matches every name, a null name among them.
/// \param[in] name     A null name matches no other pattern.
/// \return 0 for a match, 1 for none.
///
/// The time is at most proportional to the product of both lengths. No memory is taken, `nErrno`
/// is left alone, and any number of threads may call.
ZEBCOMN_EXPORT int32_t tivWildCardMatch(const char* pattern, const char* name);

ZEBCOMN_END_C

#endif  // ZEBCOMN_PORTABLE_WILDCARD_H_
