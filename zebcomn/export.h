#ifndef ZEBCOMN_EXPORT_H_
#define ZEBCOMN_EXPORT_H_

/// Marks a name that the shared library exports. The library is compiled with hidden visibility,
/// so what does not carry this mark is private; `abi/exported-names.txt` lists every name that
/// does.
#define ZEBCOMN_EXPORT __attribute__((visibility("default")))

/// Opens and closes a group of declarations with C linkage, in C and in C++.
#ifdef __cplusplus
#define ZEBCOMN_BEGIN_C extern "C" {
#define ZEBCOMN_END_C }
#else
#define ZEBCOMN_BEGIN_C
#define ZEBCOMN_END_C
#endif

#endif  // ZEBCOMN_EXPORT_H_
