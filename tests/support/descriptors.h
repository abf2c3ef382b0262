#ifndef ZEBCOMN_TESTS_SUPPORT_DESCRIPTORS_H_
#define ZEBCOMN_TESTS_SUPPORT_DESCRIPTORS_H_

namespace zebcomn_test {

/// How many file descriptors this process has open, to compare before and after. It asks fcntl for
/// each number, because "/proc" may be another process's view, or missing, under emulation.
int OpenDescriptorCount();

/// How many of them a program would get that replaced this one with exec().
int InheritedDescriptorCount();

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_DESCRIPTORS_H_
