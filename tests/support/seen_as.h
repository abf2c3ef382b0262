#ifndef ZEBCOMN_TESTS_SUPPORT_SEEN_AS_H_
#define ZEBCOMN_TESTS_SUPPORT_SEEN_AS_H_

#include <cstring>
#include <type_traits>

namespace zebcomn_test {

/// A copy of what stands at an address, as a caller with its own declaration of it sees it.
template <typename Record>
Record SeenAs(const void* address) {
  static_assert(std::is_trivially_copyable_v<Record>);
  Record record;
  std::memcpy(&record, address, sizeof record);
  return record;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_SEEN_AS_H_
