#ifndef ZEBCOMN_PORTABLE_UNIQUE_FILE_INTERNAL_H_
#define ZEBCOMN_PORTABLE_UNIQUE_FILE_INTERNAL_H_

#include <cstdio>
#include <memory>

#include "zebcomn/portable/cancellation_internal.h"

namespace zebcomn {

/// Closes a stream; whether that, and writing what it still held, succeeded. It is no cancellation
/// point: a cancellation in the middle would lose the stream, and end the process in a destructor.
inline bool CloseFile(std::FILE* file) {
  const CancellationHeldOff no_cancellation;
  return std::fclose(file) == 0;
}

struct FileCloser {
  void operator()(std::FILE* file) const { CloseFile(file); }
};

/// Owns one open stream; null is none.
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_UNIQUE_FILE_INTERNAL_H_
