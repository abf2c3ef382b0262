#ifndef ZEBCOMN_TOOLS_ZEBINFO_OUTPUT_H_
#define ZEBCOMN_TOOLS_ZEBINFO_OUTPUT_H_

/// \file
/// The two forms of output: plain text, the same on a terminal and in a pipe, and JSON.

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace zebinfo {

enum class Format { kText, kJson };

/// Keeps its members in the order in which they were added.
using Json = nlohmann::ordered_json;

/// Prints a value, indented, with a new line at its end. Bytes that are not UTF-8 come out as
/// U+FFFD.
void PrintJson(const Json& value);

/// Prints one text in a line of its own.
void PrintLine(const std::string& text);

using Row = std::vector<std::string>;

enum class Align { kLeft, kRight };

/// Prints rows in aligned columns with two blanks between them and nothing behind the last one;
/// blanks in front of a value are left out.
/// \param aligns  One for each column; the first row decides how many there are.
void PrintTable(const std::vector<Row>& rows, const std::vector<Align>& aligns,
                const std::string& indent = "");

/// Prints pairs of a name and a value, the values in one column, without the blanks in front of
/// them.
/// \param name_width  At least so many columns are for the names.
void PrintPairs(const std::vector<std::pair<std::string, std::string>>& pairs,
                const std::string& indent = "", std::size_t name_width = 0);

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_OUTPUT_H_
