#ifndef ZEBCOMN_TOOLS_ZEBINFO_TEXT_H_
#define ZEBCOMN_TOOLS_ZEBINFO_TEXT_H_

#include <string>

namespace zebinfo {

/// The UTF-8 form of a wide text; what is no Unicode character becomes U+FFFD.
std::string ToUtf8(const std::wstring& text);

/// The text as it may go to a terminal and into a line of its own: each control character, and each
/// backslash that could be taken for one, becomes "\xNN", byte by byte. Every other byte stays,
/// valid or not.
std::string Printable(const std::string& text);

/// How many columns a UTF-8 text takes, at one column for each character.
std::size_t DisplayWidth(const std::string& text);

/// The text in quotation marks, printable, for messages.
std::string Quoted(const std::string& text);

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_TEXT_H_
