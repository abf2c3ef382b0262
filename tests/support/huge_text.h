#ifndef ZEBCOMN_TESTS_SUPPORT_HUGE_TEXT_H_
#define ZEBCOMN_TESTS_SUPPORT_HUGE_TEXT_H_

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <string>

namespace zebcomn_test {

/// The shortest text that no std::string of a 32-bit target takes; as wide characters, no
/// std::wstring either.
constexpr size_t kLongerThanAnyText = size_t{2} * 1024 * 1024 * 1024;

/// A text of `size` times "a" that takes the memory of one piece, `size` being a multiple of it:
/// the piece is mapped again and again, and the page behind the last one holds the NUL.
class HugeText {
 public:
  static constexpr size_t kPiece = size_t{2} * 1024 * 1024;

  explicit HugeText(size_t size) : size_(size), file_(memfd_create("text", MFD_CLOEXEC)) {
    const std::string piece(kPiece, 'a');
    const bool written = write(file_, piece.data(), piece.size()) == ssize_t{kPiece};
    text_ = mmap(nullptr, size_ + kPiece, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    mapped_ = written && text_ != MAP_FAILED;
    for (size_t at = 0; mapped_ && at < size_; at += kPiece) {
      mapped_ = mmap(static_cast<char*>(text_) + at, kPiece, PROT_READ, MAP_SHARED | MAP_FIXED,
                     file_, 0) != MAP_FAILED;
    }
  }
  ~HugeText() {
    if (text_ != MAP_FAILED) munmap(text_, size_ + kPiece);
    close(file_);
  }
  HugeText(const HugeText&) = delete;
  HugeText& operator=(const HugeText&) = delete;

  bool IsMapped() const { return mapped_; }
  const char* c_str() const { return static_cast<const char*>(text_); }

 private:
  size_t size_;
  int file_;
  void* text_ = MAP_FAILED;
  bool mapped_ = false;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_HUGE_TEXT_H_
