#ifndef ZEBCOMN_FUZZ_TEXT_FILE_H_
#define ZEBCOMN_FUZZ_TEXT_FILE_H_

#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "fuzz/fuzz_input.h"

namespace zebcomn_fuzz {

/// A file in memory, which has a path all the same. It is not copied: its path is its own.
class TextFile {
 public:
  TextFile() : fd_(memfd_create("fuzz", MFD_CLOEXEC)) {
    Require(fd_ >= 0);
    path_ = "/proc/self/fd/" + std::to_string(fd_);
  }
  ~TextFile() { close(fd_); }
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  /// The path of the file, which holds `text` from now on and nothing else.
  const char* With(const std::string& text) {
    const auto size = static_cast<ssize_t>(text.size());
    Require(pwrite(fd_, text.data(), text.size(), 0) == size && ftruncate(fd_, size) == 0);
    return path_.c_str();
  }

 private:
  int fd_;
  std::string path_;
};

}  // namespace zebcomn_fuzz

#endif  // ZEBCOMN_FUZZ_TEXT_FILE_H_
