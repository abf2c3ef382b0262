#ifndef ZEBCOMN_TESTS_RELIABILITY_SWEPT_HOST_H_
#define ZEBCOMN_TESTS_RELIABILITY_SWEPT_HOST_H_

#include "tests/support/private_host.h"

namespace zebcomn_test {

/// Puts a whole system into a private host, for the uses of the collectors: two processors of
/// " fixture,Board" at " 1333.33MHz", 1031428 kB of memory of which 81234 are free, Wind River
/// Linux 4.3.0.0_cgl for "Edge Router 2", the host alpha.long-name.example.net in the system's
/// domain nis.example.org, one link (021a2b3c4d5e) with the addresses 192.0.2.7/24 and
/// 192.0.2.200/25, and two entries of the mount table, "/mnt" and "/mnt/.", that are the same empty
/// file system.
void PutSystem(PrivateHost& host);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_RELIABILITY_SWEPT_HOST_H_
