#ifndef ZEBCOMN_PORTABLE_BOUNDED_TEXT_INTERNAL_H_
#define ZEBCOMN_PORTABLE_BOUNDED_TEXT_INTERNAL_H_

#include <array>
#include <cstddef>
#include <string_view>

#include "zebcomn/portable/types.h"

namespace zebcomn {

/// Writes as much of `text` as fits into a buffer of `capacity` bytes, and a NUL; gives the number
/// of bytes before the NUL. REQUIRES: capacity > 0.
///
/// Not inline: of a copy whose size the compiler knows to be small it makes a string instruction,
/// which takes longer than the C library's call for most paths.
size_t CopyBounded(char* buffer, size_t capacity, std::string_view text);

template <size_t kCapacity>
size_t CopyBounded(char (&buffer)[kCapacity], std::string_view text) {
  return CopyBounded(buffer, kCapacity, text);
}

/// A path in a buffer of the interface's fixed size, always terminated.
class PathBuffer {
 public:
  /// The empty path. The rest of the buffer is not set: clearing it takes longer than a short path.
  PathBuffer() { buffer_[0] = '\0'; }

  /// Appends as much as fits; whether all of `text` did.
  bool Append(std::string_view text) {
    const size_t taken = CopyBounded(buffer_.data() + length_, buffer_.size() - length_, text);
    length_ += taken;
    return taken == text.size();
  }
  /// Cuts the path to `length` bytes. REQUIRES: length <= length().
  void Truncate(size_t length) {
    length_ = length;
    buffer_.at(length) = '\0';
  }

  size_t length() const { return length_; }
  const char* c_str() const { return buffer_.data(); }

 private:
  std::array<char, ZEBCOMN_PATH_CAPACITY> buffer_;
  size_t length_ = 0;
};

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_BOUNDED_TEXT_INTERNAL_H_
