#ifndef ZEBCOMN_TOOLS_ZEBINFO_COMMAND_TABLE_H_
#define ZEBCOMN_TOOLS_ZEBINFO_COMMAND_TABLE_H_

/// \file
/// The commands, a row for each: what the help says, what follows on the command line, what is
/// done.

#include <optional>
#include <string>
#include <vector>

#include "tools/zebinfo/commands.h"

namespace CLI {
class App;
}

namespace zebinfo {

/// What the command line says.
struct Arguments {
  bool json = false;
  bool list = false;
  std::string color = "auto";
  std::optional<std::string> watch, count;
  std::vector<std::string> names;
  bool with_loopback = false;
  bool ipv4_only = false;
  std::string peer, port, host, file, platform, supported, path;
  std::optional<std::string> base, section;
};

struct Command {
  const char* name;
  const char* description;
  const char* example;  ///< A whole command line.
  bool can_watch;       ///< Whether what it shows changes by itself.
  /// Declares what may follow the command, and where it is kept; null when nothing may.
  void (*declare)(CLI::App&, Arguments&);
  ExitStatus (*run)(const Arguments&, Format);
};

/// Every command, in the order of the help.
const std::vector<Command>& Commands();

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_COMMAND_TABLE_H_
