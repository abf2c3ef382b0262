#ifndef ZEBCOMN_SYSPROPS_SYSTEM_FILE_INTERNAL_H_
#define ZEBCOMN_SYSPROPS_SYSTEM_FILE_INTERNAL_H_

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace zebcomn {

/// The most that is read of a release or platform file, so that one without an end, such as a
/// device bound over it, does not take all memory.
constexpr std::size_t kMaxSystemFileSize = 1024 * 1024;

/// The characters of the longest line that the line reader takes, its newline not counted: with a
/// NUL it fills a buffer of 2048.
constexpr std::size_t kMaxLineLength = 2047;

/// The file's text, at most kMaxSystemFileSize bytes of it; what could be read when the reading
/// fails, and the empty text when the file cannot be opened.
std::string ReadSystemFile(const char* path);

/// Reads a file and hands it on, in order, in blocks of whole lines; only the file's last line may
/// lack its newline. The reading ends without a word at the end of the file, at a failure of any
/// kind, and in front of a line longer than kMaxLineLength. A block is good until `take` returns; a
/// NUL follows it.
void ForEachLineBlock(const char* path, const std::function<void(std::string_view)>& take);

/// How many lines of the block hold `word`.
/// REQUIRES: a NUL follows the block.
std::size_t CountLinesWith(std::string_view block, const char* word);

/// Sets `value` to what follows the first ":" of the block's last line that holds `word` (empty
/// when that line has no ":"); leaves it alone when no line does.
void TakeLastValue(std::string_view block, std::string_view word, std::string& value);

}  // namespace zebcomn

#endif  // ZEBCOMN_SYSPROPS_SYSTEM_FILE_INTERNAL_H_
