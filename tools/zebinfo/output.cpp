#include "tools/zebinfo/output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tools/zebinfo/command_error.h"
#include "tools/zebinfo/text.h"

namespace zebinfo {
namespace {

constexpr int kJsonIndent = 2;
constexpr int kJsonVersion = 1;
constexpr const char* kColumnGap = "  ";
constexpr const char* kUnknown = "N/A";

constexpr const char* kBold = "\x1B[1m";
constexpr const char* kFaint = "\x1B[2m";
constexpr const char* kNameColor = "\x1B[36m";
constexpr const char* kPlain = "\x1B[0m";

bool in_color = false;
std::string printed;

std::string Painted(const std::string& text, const char* style) {
  return in_color && !text.empty() ? style + text + kPlain : text;
}

std::string PaintedValue(const std::string& value) {
  return value == kUnknown ? Painted(value, kFaint) : value;
}

// The blanks that stand beside a text in its column.
std::string Padding(const std::string& text, std::size_t width) {
  const std::size_t own_width = DisplayWidth(text);
  return std::string(width > own_width ? width - own_width : 0, ' ');
}

// A cell of a table: printable, and without the blanks in front that would spoil its column.
std::string Cell(const std::string& value) {
  return Printable(value.substr(std::min(value.find_first_not_of(' '), value.size())));
}

void PrintWithoutTrailingBlanks(const std::string& line) {
  printed.append(line, 0, line.find_last_not_of(' ') + 1);
  printed += '\n';
}

// Waits until standard output takes more.
void WaitForReader() {
  pollfd output = {STDOUT_FILENO, POLLOUT, 0};
  poll(&output, 1, -1);
}

}  // namespace

void UseColor(bool wanted) {
  in_color = wanted;
}

void PrintJson(const Json& members, Format format) {
  Json object = {{"version", kJsonVersion}};
  object.update(members);
  const int indent = format == Format::kJsonLines ? -1 : kJsonIndent;
  printed += object.dump(indent, ' ', false, Json::error_handler_t::replace);
  printed += '\n';
}

void Print(const std::string& text) {
  printed += text;
}

void PrintLine(const std::string& text) {
  Print(Printable(text) + '\n');
}

void PrintTitle(const std::string& title, const std::string& remark) {
  Print(Painted(title, kBold) + remark + '\n');
}

void PrintTable(const std::vector<Row>& rows, const std::vector<Align>& aligns, Head head,
                const std::string& indent) {
  std::vector<Row> cells = rows;
  std::vector<std::size_t> widths(aligns.size(), 0);
  for (Row& row : cells) {
    for (std::size_t i = 0; i < aligns.size(); ++i) {
      row[i] = Cell(row[i]);
      widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    }
  }
  bool is_head = head == Head::kFirstRow;
  for (const Row& row : cells) {
    std::string line = indent;
    for (std::size_t i = 0; i < aligns.size(); ++i) {
      if (i > 0) line += kColumnGap;
      const std::string padding = Padding(row[i], widths[i]);
      const std::string cell = is_head ? Painted(row[i], kBold) : PaintedValue(row[i]);
      line += aligns[i] == Align::kLeft ? cell + padding : padding + cell;
    }
    PrintWithoutTrailingBlanks(line);
    is_head = false;
  }
}

void PrintPairs(const std::vector<std::pair<std::string, std::string>>& pairs,
                const std::string& indent, std::size_t name_width) {
  for (const auto& [name, value] : pairs) {
    name_width = std::max(name_width, DisplayWidth(Printable(name)));
  }
  for (const auto& [raw_name, value] : pairs) {
    const std::string name = Printable(raw_name);
    PrintWithoutTrailingBlanks(indent + Painted(name, kNameColor) + Padding(name, name_width) +
                               kColumnGap + PaintedValue(Cell(value)));
  }
}

bool IsDumbTerminal() {
  const char* const terminal = std::getenv("TERM");
  return terminal != nullptr && std::strcmp(terminal, "dumb") == 0;
}

void Flush() {
  // Whatever becomes of it, it is not printed again.
  const std::string text = std::move(printed);
  printed.clear();
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t written = write(STDOUT_FILENO, text.data() + done, text.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0 && errno == EAGAIN) {
      // Another program has made the terminal or pipe, which it has too, one that does not block.
      WaitForReader();
      continue;
    }
    if (written < 0) {
      throw CommandError(kFailure, std::string("cannot write the output: ") + std::strerror(errno),
                         "Send it to a terminal, a pipe or a file that can take it.");
    }
    done += static_cast<std::size_t>(written);
  }
}

}  // namespace zebinfo
