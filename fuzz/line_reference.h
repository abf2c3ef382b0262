#ifndef ZEBCOMN_FUZZ_LINE_REFERENCE_H_
#define ZEBCOMN_FUZZ_LINE_REFERENCE_H_

#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"

namespace zebcomn_fuzz {

/// The lines that a reader with a buffer of 2048 characters gets to see: it ends in front of one
/// that does not fit.
inline std::vector<std::string> LinesThatFit(const std::string& text) {
  constexpr size_t kLongest = 2047;
  std::vector<std::string> lines;
  for (std::string& line : LinesOf(text)) {
    if (line.size() > kLongest) break;
    lines.push_back(std::move(line));
  }
  return lines;
}

inline bool Holds(const std::string& line, const char* word) {
  return line.find(word) != std::string::npos;
}

/// What follows the first ":" of a line; nothing without a ":".
inline std::string ValueOf(const std::string& line) {
  return CutAt(line, ':').second;
}

/// The text that an input stands for. A last byte below 9 is taken off, and so many times 2060
/// characters of other lines come first, which moves the text across the blocks that a file is read
/// in; the byte in front of it then says how long the last of those lines is, around the longest
/// that is read. A text written by hand ends in a newline or a letter and stays as it is.
inline std::string WithFillerInFront(std::string input) {
  constexpr uint8_t kMostFillers = 8;
  if (input.empty() || static_cast<uint8_t>(input.back()) > kMostFillers) return input;
  const uint8_t fillers = TakeLastByte(input);
  const std::string filler = std::string(2047, '.') + "\n" + std::string(11, '.') + "\n";
  std::string text;
  for (size_t i = 0; i < fillers; ++i) text += filler;
  const size_t length = 2040U + TakeLastByte(input) % 16;
  return text + std::string(length, '.') + "\n" + input;
}

}  // namespace zebcomn_fuzz

#endif  // ZEBCOMN_FUZZ_LINE_REFERENCE_H_
