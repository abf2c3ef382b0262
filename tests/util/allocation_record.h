#ifndef ZEBCOMN_TESTS_UTIL_ALLOCATION_RECORD_H_
#define ZEBCOMN_TESTS_UTIL_ALLOCATION_RECORD_H_

#include <cstddef>

namespace zebcomn_test {

/// When the language's last allocation that gave this block was made, counted from the start of the
/// process; 0 for a block of another kind, or one that came after EndAllocationRecord().
std::size_t TimeOfAllocation(const void* block);

/// Ends the record, which begins with the process, before the libraries are initialised.
void EndAllocationRecord();

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_UTIL_ALLOCATION_RECORD_H_
