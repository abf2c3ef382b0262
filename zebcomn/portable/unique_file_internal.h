#ifndef ZEBCOMN_PORTABLE_UNIQUE_FILE_INTERNAL_H_
#define ZEBCOMN_PORTABLE_UNIQUE_FILE_INTERNAL_H_

#include <cstdio>
#include <memory>

namespace zebcomn {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Owns one open stream; null is none.
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_UNIQUE_FILE_INTERNAL_H_
