#ifndef ZEBCOMN_TESTS_SUPPORT_FAILING_ALLOCATION_H_
#define ZEBCOMN_TESTS_SUPPORT_FAILING_ALLOCATION_H_

namespace zebcomn_test {

/// The `nth` `new (std::nothrow)` from here on gives null, and so do the ones after it until
/// `count` have failed; 0 calls that off. A test that includes this header names
/// tests/support/failing_allocation.cpp among its sources and is marked INTERPOSES; the library's
/// allocations then go through it.
void FailNothrowAllocation(int nth, int count = 1);

/// The `nth` throwing `new` from here on throws `std::bad_alloc`, and so do the ones after it until
/// `count` have failed; 0 calls that off. The test's own allocations count, so arm it right before
/// the call under test.
void FailThrowingAllocation(int nth, int count = 1);

/// How many allocations have failed on request since the last time this was asked.
int TakeFailedAllocations();

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_FAILING_ALLOCATION_H_
