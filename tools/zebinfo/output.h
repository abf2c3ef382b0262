#ifndef ZEBCOMN_TOOLS_ZEBINFO_OUTPUT_H_
#define ZEBCOMN_TOOLS_ZEBINFO_OUTPUT_H_

/// \file
/// The forms of output: plain text, on a terminal in colour, and JSON. What is printed is gathered
/// and leaves the process in one piece with Flush().

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace zebinfo {

/// JSON lines are one object a line, for programs that read a watch.
enum class Format { kText, kJson, kJsonLines };

/// Keeps its members in the order in which they were added.
using Json = nlohmann::ordered_json;

/// Sets whether the text that is printed from now on has colours; at first it has none.
void UseColor(bool wanted);

/// Prints the object with these members behind the version of the form, and a new line. Bytes that
/// are not UTF-8 come out as U+FFFD.
void PrintJson(const Json& members, Format format);

/// Prints text as it is.
void Print(const std::string& text);

/// Prints one text in a line of its own.
void PrintLine(const std::string& text);

/// Prints the line above a group, with what else there is to say about the group.
void PrintTitle(const std::string& title, const std::string& remark = "");

using Row = std::vector<std::string>;

enum class Align { kLeft, kRight };
enum class Head { kNone, kFirstRow };

/// Prints rows in aligned columns with two blanks between them and nothing behind the last one;
/// blanks in front of a value are left out.
/// \param aligns  One for each column; the first row decides how many there are.
void PrintTable(const std::vector<Row>& rows, const std::vector<Align>& aligns, Head head,
                const std::string& indent = "");

/// Prints pairs of a name and a value, the values in one column, without the blanks in front of
/// them.
/// \param name_width  At least so many columns are for the names.
void PrintPairs(const std::vector<std::pair<std::string, std::string>>& pairs,
                const std::string& indent = "", std::size_t name_width = 0);

/// Whether the environment says that the terminal knows nothing but text.
bool IsDumbTerminal();

/// Writes what was printed to standard output, however long its reader takes; throws CommandError
/// when that cannot be done.
void Flush();

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_OUTPUT_H_
