#include "tools/zebinfo/output.h"

#include <algorithm>
#include <iostream>

#include "tools/zebinfo/text.h"

namespace zebinfo {
namespace {

constexpr int kJsonIndent = 2;
constexpr const char* kColumnGap = "  ";

std::string Padded(const std::string& text, std::size_t width, Align align) {
  const std::size_t own_width = DisplayWidth(text);
  const std::string padding(width > own_width ? width - own_width : 0, ' ');
  return align == Align::kLeft ? text + padding : padding + text;
}

// A cell of a table: printable, and without the blanks in front that would spoil its column.
std::string Cell(const std::string& value) {
  return Printable(value.substr(std::min(value.find_first_not_of(' '), value.size())));
}

std::string WithoutTrailingBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace

void PrintJson(const Json& value) {
  std::cout << value.dump(kJsonIndent, ' ', false, Json::error_handler_t::replace) << '\n';
}

void PrintLine(const std::string& text) {
  std::cout << Printable(text) << '\n';
}

void PrintTable(const std::vector<Row>& rows, const std::vector<Align>& aligns,
                const std::string& indent) {
  std::vector<Row> printable = rows;
  std::vector<std::size_t> widths(aligns.size(), 0);
  for (Row& row : printable) {
    for (std::size_t i = 0; i < aligns.size(); ++i) {
      row[i] = Cell(row[i]);
      widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    }
  }
  for (const Row& row : printable) {
    std::string line = indent;
    for (std::size_t i = 0; i < aligns.size(); ++i) {
      if (i > 0) line += kColumnGap;
      line += Padded(row[i], widths[i], aligns[i]);
    }
    std::cout << WithoutTrailingBlanks(line) << '\n';
  }
}

void PrintPairs(const std::vector<std::pair<std::string, std::string>>& pairs,
                const std::string& indent, std::size_t name_width) {
  for (const auto& [name, value] : pairs) {
    name_width = std::max(name_width, DisplayWidth(Printable(name)));
  }
  for (const auto& [name, value] : pairs) {
    const std::string line =
        indent + Padded(Printable(name), name_width, Align::kLeft) + kColumnGap + Cell(value);
    std::cout << WithoutTrailingBlanks(line) << '\n';
  }
}

}  // namespace zebinfo
