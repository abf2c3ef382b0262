#ifndef ZEBCOMN_PORTABLE_LOADER_MESSAGE_INTERNAL_H_
#define ZEBCOMN_PORTABLE_LOADER_MESSAGE_INTERNAL_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "zebcomn/portable/plain_atomic_internal.h"

namespace zebcomn {

/// How much of the loader's own error text a message takes.
constexpr size_t kLongestLoaderText = 510;
/// Capacity of a message, in characters with the NUL.
constexpr size_t kMessageCapacity = 512;

/// One message of the process, whose address callers are given. Threads may set it at once: the
/// characters of their texts can mix, but every access is atomic and the last character is always a
/// NUL, so that nobody reads past the end.
template <typename Character>
class LoaderMessage {
 public:
  /// Replaces the text, cutting it where the message is full.
  void Set(std::basic_string_view<Character> text) {
    text = text.substr(0, text_.size() - 1);
    for (size_t i = 0; i < text.size(); ++i) StoreRelaxed(&text_[i], text[i]);
    StoreRelaxed(&text_[text.size()], Character{});
  }
  void Clear() { Set({}); }

  /// The text's address, which stays the same.
  const Character* text() const { return text_.data(); }

  /// A copy of the text.
  std::basic_string<Character> Snapshot() const {
    std::basic_string<Character> copy;
    for (const Character& c : text_) {
      const Character read = LoadRelaxed(&c);
      if (read == Character{}) break;
      copy.push_back(read);
    }
    return copy;
  }

 private:
  std::array<Character, kMessageCapacity> text_{};
};

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_LOADER_MESSAGE_INTERNAL_H_
