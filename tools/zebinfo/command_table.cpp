#include "tools/zebinfo/command_table.h"

#include <CLI/CLI.hpp>

namespace zebinfo {
namespace {

void DeclareInterfaces(CLI::App& app, Arguments& arguments) {
  app.add_flag("--loopback", arguments.with_loopback, "Show loopback interfaces too");
}

ExitStatus RunInterfaces(const Arguments& arguments, Format format) {
  ShowInterfaces(arguments.with_loopback, format);
  return kSuccess;
}

void DeclareLocalAddress(CLI::App& app, Arguments& arguments) {
  app.add_option("PEER", arguments.peer, "Host or address; several with \";\" between them")
      ->required();
  app.add_option("PORT", arguments.port, "Port number or service name")->required();
  app.add_flag("--ipv4", arguments.ipv4_only, "Try only IPv4 addresses");
}

ExitStatus RunLocalAddress(const Arguments& arguments, Format format) {
  ShowLocalAddress(arguments.peer, arguments.port, arguments.ipv4_only, format);
  return kSuccess;
}

void DeclareResolve(CLI::App& app, Arguments& arguments) {
  app.add_option("HOST", arguments.host, "Host name or address")->required();
}

ExitStatus RunResolve(const Arguments& arguments, Format format) {
  ResolveHost(arguments.host, format);
  return kSuccess;
}

ExitStatus RunTime(const Arguments&, Format format) {
  ShowTime(format);
  return kSuccess;
}

ExitStatus RunGuid(const Arguments&, Format format) {
  MakeGuid(format);
  return kSuccess;
}

ExitStatus RunSoftwareId(const Arguments&, Format format) {
  ShowSoftwareId(format);
  return kSuccess;
}

void DeclarePluginVersion(CLI::App& app, Arguments& arguments) {
  app.add_option("FILE", arguments.file, "Path of the module")->required();
}

ExitStatus RunPluginVersion(const Arguments& arguments, Format format) {
  ShowPluginVersion(arguments.file, format);
  return kSuccess;
}

void DeclarePlatformMatch(CLI::App& app, Arguments& arguments) {
  app.add_option("PLATFORM", arguments.platform, "NAME or NAME:a:b:c")->required();
  app.add_option("LIST", arguments.supported, "NAME, NAME:low or NAME:low-high, \"|\" between")
      ->required();
}

ExitStatus RunPlatformMatch(const Arguments& arguments, Format format) {
  return JudgePlatform(arguments.platform, arguments.supported, format);
}

void DeclarePath(CLI::App& app, Arguments& arguments) {
  app.add_option("PATH", arguments.path, "The path, absolute or relative")->required();
  app.add_option("--base", arguments.base, "Directory that a relative path is taken against")
      ->type_name("DIR");
}

ExitStatus RunPath(const Arguments& arguments, Format format) {
  ShowPath(arguments.path, arguments.base, format);
  return kSuccess;
}

void DeclareKeys(CLI::App& app, Arguments& arguments) {
  app.add_option("SECTION", arguments.section, "Only this section, such as SiteList");
}

ExitStatus RunKeys(const Arguments& arguments, Format format) {
  ShowKeys(arguments.section, format);
  return kSuccess;
}

}  // namespace

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"interfaces", "Show the interfaces of this host with their addresses",
       "zebinfo interfaces --loopback", true, DeclareInterfaces, RunInterfaces},
      {"local-address", "Connect to a peer and show the local address that faces it",
       "zebinfo local-address server.example 443", false, DeclareLocalAddress, RunLocalAddress},
      {"resolve", "Show the addresses of a host", "zebinfo resolve localhost", false,
       DeclareResolve, RunResolve},
      {"time", "Show the time in the library's forms, the zone and the uptime",
       "zebinfo time --json", true, nullptr, RunTime},
      {"guid", "Make a new GUID", "zebinfo guid", false, nullptr, RunGuid},
      {"software-id", "Show the agent's software identifier", "zebinfo software-id", false, nullptr,
       RunSoftwareId},
      {"plugin-version", "Load a plug-in module (its code runs) and show its version stamps",
       "zebinfo plugin-version ./plugin.so", false, DeclarePluginVersion, RunPluginVersion},
      {"platform-match", "Tell whether a list supports a platform (exit status 0, 3 or 4)",
       "zebinfo platform-match WRLX:4:6:0 \"LINUX|WRLX:4:0:0-4:9:9\"", false, DeclarePlatformMatch,
       RunPlatformMatch},
      {"path", "Flatten a path and show the regular file that it leads to",
       "zebinfo path ../../etc/hosts --base /usr/lib", false, DeclarePath, RunPath},
      {"keys", "Show the names of the configuration's sections and keys", "zebinfo keys SiteList",
       false, DeclareKeys, RunKeys},
  };
  return commands;
}

std::vector<std::string> CommandNames() {
  std::vector<std::string> names;
  for (const Command& command : Commands()) names.emplace_back(command.name);
  return names;
}

}  // namespace zebinfo
