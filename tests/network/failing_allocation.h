#ifndef ZEBCOMN_TESTS_NETWORK_FAILING_ALLOCATION_H_
#define ZEBCOMN_TESTS_NETWORK_FAILING_ALLOCATION_H_

namespace zebcomn_test {

/// Allocation in this executable and in the library: while `fail_after` is not negative, that many
/// more calls of the kind succeed and the following `fail_count` ones fail.
struct FailingAllocation {
  long fail_after = -1;
  long fail_count = 0;
  long failed = 0;
};
FailingAllocation& ThrowingAllocation();
FailingAllocation& NothrowAllocation();

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_NETWORK_FAILING_ALLOCATION_H_
