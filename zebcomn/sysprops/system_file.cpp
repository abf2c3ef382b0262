#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "zebcomn/portable/unique_fd_internal.h"
#include "zebcomn/sysprops/system_file_internal.h"

namespace zebcomn {
namespace {

/// On the stack: a large heap block makes the allocator tidy up all its small ones.
constexpr std::size_t kBlockSize = 32 * 1024;
static_assert(kBlockSize > 2 * kMaxLineLength, "a block takes a line and the start of the next");

UniqueFd OpenForReading(const char* path) {
  return UniqueFd(open(path, O_RDONLY | O_CLOEXEC));
}

/// Bytes read, 0 at the end of the file, -1 at a failure.
ssize_t ReadSome(const UniqueFd& file, char* buffer, std::size_t size) {
  ssize_t got = -1;
  do {
    got = read(file.get(), buffer, size);
  } while (got < 0 && errno == EINTR);
  return got;
}

/// Where the last newline of `text` is, npos when it has none.
std::size_t LastNewline(std::string_view text) {
  const void* at = text.empty() ? nullptr : memrchr(text.data(), '\n', text.size());
  return at == nullptr ? std::string_view::npos
                       : static_cast<std::size_t>(static_cast<const char*>(at) - text.data());
}

/// Where the first line longer than kMaxLineLength begins, npos when every line is short enough.
/// It looks for a newline backwards from the farthest place that it may have, so it touches little
/// of the text.
std::size_t FirstLongLine(std::string_view text) {
  std::size_t line = 0;
  while (text.size() - line > kMaxLineLength) {
    const std::size_t newline = LastNewline(text.substr(line, kMaxLineLength + 1));
    if (newline == std::string_view::npos) return line;
    line += newline + 1;
  }
  return std::string_view::npos;
}

/// Where `word` occurs last in `text`, npos when it does not.
std::size_t FindLast(std::string_view text, std::string_view word) {
  std::size_t end = text.size();
  while (end >= word.size()) {
    const void* at = memrchr(text.data(), word.front(), end - word.size() + 1);
    if (at == nullptr) break;
    const auto place = static_cast<std::size_t>(static_cast<const char*>(at) - text.data());
    if (text.compare(place, word.size(), word) == 0) return place;
    end = place + word.size() - 1;
  }
  return std::string_view::npos;
}

}  // namespace

std::string ReadSystemFile(const char* path) {
  std::string text;
  const UniqueFd file = OpenForReading(path);
  if (!file.IsOpen()) return text;
  std::array<char, 4096> buffer;
  while (text.size() < kMaxSystemFileSize) {
    const ssize_t got =
        ReadSome(file, buffer.data(), std::min(buffer.size(), kMaxSystemFileSize - text.size()));
    if (got <= 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return text;
}

void ForEachLineBlock(const char* path, const std::function<void(std::string_view)>& take) {
  const UniqueFd file = OpenForReading(path);
  if (!file.IsOpen()) return;
  std::array<char, kBlockSize + 1> buffer;
  const auto give = [&](std::size_t size) {
    const char next = std::exchange(buffer[size], '\0');
    take(std::string_view(buffer.data(), size));
    buffer[size] = next;
  };
  std::size_t held = 0;
  for (;;) {
    const ssize_t got = ReadSome(file, buffer.data() + held, kBlockSize - held);
    held += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
    // A kernel hands its files out in small pieces, and each block is searched from its end.
    if (got > 0 && held < kBlockSize) continue;
    const std::string_view text(buffer.data(), held);
    const std::size_t long_line = FirstLongLine(text);
    if (got == 0 || long_line != std::string_view::npos) return give(std::min(held, long_line));
    const std::size_t whole = LastNewline(text) + 1;
    give(whole);
    if (got < 0) return;
    held -= whole;
    std::memmove(buffer.data(), buffer.data() + whole, held);
  }
}

std::size_t CountLinesWith(std::string_view block, const char* word) {
  std::size_t count = 0;
  const char* at = block.data();
  const char* const end = at + block.size();
  while (at < end) {
    // strstr is the fastest search that the C library has, but it ends at a NUL.
    const char* hit = std::strstr(at, word);
    if (hit == nullptr) {
      at += std::strlen(at) + 1;
      continue;
    }
    ++count;
    const void* newline = std::memchr(hit, '\n', static_cast<std::size_t>(end - hit));
    at = newline == nullptr ? end : static_cast<const char*>(newline);
  }
  return count;
}

void TakeLastValue(std::string_view block, std::string_view word, std::string& value) {
  const std::size_t place = FindLast(block, word);
  if (place == std::string_view::npos) return;
  const std::size_t start = LastNewline(block.substr(0, place)) + 1;
  const std::string_view line = block.substr(start, block.find('\n', place) - start);
  const std::size_t colon = line.find(':');
  value = colon == std::string_view::npos ? std::string_view() : line.substr(colon + 1);
}

}  // namespace zebcomn
