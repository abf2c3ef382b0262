#ifndef ZEBCOMN_TOOLS_ZEBINFO_COMMANDS_H_
#define ZEBCOMN_TOOLS_ZEBINFO_COMMANDS_H_

/// \file
/// What zebinfo can do: one function for each command. Each prints its result and throws
/// CommandError for what it cannot do.

#include <optional>
#include <string>
#include <vector>

#include "tools/zebinfo/command_error.h"
#include "tools/zebinfo/output.h"

namespace zebinfo {

// catalogue_commands.cpp
void ShowCatalogue(Format format);
void ShowProperties(const std::vector<std::string>& names, Format format);
void ListProperties(Format format);

// network_commands.cpp
void ShowInterfaces(bool with_loopback, Format format);
void ShowLocalAddress(const std::string& peer, const std::string& port, bool ipv4_only,
                      Format format);
void ResolveHost(const std::string& host, Format format);

// time_command.cpp
void ShowTime(Format format);

// identity_commands.cpp
void MakeGuid(Format format);
void ShowSoftwareId(Format format);
void ShowPluginVersion(const std::string& file, Format format);
ExitStatus JudgePlatform(const std::string& platform, const std::string& list, Format format);

// path_command.cpp
void ShowPath(const std::string& path, const std::optional<std::string>& base, Format format);

// keys_command.cpp
void ShowKeys(const std::optional<std::string>& section, Format format);

/// The names of the commands, to suggest one for a misspelt word.
std::vector<std::string> CommandNames();

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_COMMANDS_H_
