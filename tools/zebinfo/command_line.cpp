#include "tools/zebinfo/command_line.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/text.h"

namespace zebinfo {

const std::vector<std::string> kCommandNames = {
    "interfaces",  "local-address",  "resolve",        "time", "guid",
    "software-id", "plugin-version", "platform-match", "path", "keys"};

namespace {

constexpr const char* kSummary =
    "Shows what the agent's library knows about this host. Without a command: every system\n"
    "property, or those that are named.";

constexpr const char* kExamples =
    "Examples:\n"
    "  zebinfo                                      every property, in groups\n"
    "  zebinfo IPAddress                            the bare value, for scripts\n"
    "  zebinfo CPUType NumOfCPU                     several values\n"
    "  zebinfo --json                               everything, for programs\n"
    "  zebinfo --list                               the names of the properties\n"
    "  zebinfo interfaces --loopback                this host's addresses\n"
    "  zebinfo local-address server.example 443     the address that faces a peer\n"
    "  zebinfo resolve localhost                    the addresses of a host\n"
    "  zebinfo time                                 clocks and time stamps\n"
    "  zebinfo guid                                 a new GUID\n"
    "  zebinfo software-id                          the agent's identifier\n"
    "  zebinfo plugin-version ./plugin.so           a plug-in's version stamps\n"
    "  zebinfo platform-match WRLX:4:6:0 \"LINUX|WRLX:4:0:0-4:9:9\"\n"
    "                                               whether a package supports a platform\n"
    "  zebinfo path ../../etc/hosts --base /usr/lib the flat path and its file\n"
    "  zebinfo keys SiteList                        the configuration's keys";

// What the command line says.
struct Arguments {
  bool json = false;
  bool list = false;
  std::vector<std::string> names;
  bool with_loopback = false;
  bool ipv4_only = false;
  std::string peer, port, host, file, platform, supported, path;
  std::optional<std::string> base, section;
};

// What is left to do once the command line is parsed.
using Action = std::function<ExitStatus(const Arguments&, Format)>;

// Builds the parser; the command that is given stores its action.
class Parser {
 public:
  Parser() {
    app_.name("zebinfo");
    app_.footer(kExamples);
    app_.set_version_flag("--version", std::string("zebinfo ") + ZEBINFO_VERSION);
    AddJson(app_);
    CLI::Option* const names =
        app_.add_option("NAME", arguments_.names, "Properties to show instead of all of them");
    app_.add_flag("--list", arguments_.list, "List the names of the properties with their groups")
        ->excludes(names);
    app_.require_subcommand(0, 1);
    AddNetworkCommands();
    AddTimeCommand();
    AddIdentityCommands();
    AddPathCommand();
    AddKeysCommand();
  }

  CLI::App& app() { return app_; }

  ExitStatus Act() const {
    const Format format = arguments_.json ? Format::kJson : Format::kText;
    if (action_) {
      if (arguments_.names.empty() && !arguments_.list) return action_(arguments_, format);
      throw CommandError(kUsage, "a command takes no property names and no --list",
                         "Put them into a call of their own, without the command.");
    }
    if (arguments_.list) {
      ListProperties(format);
    } else if (arguments_.names.empty()) {
      ShowCatalogue(format);
    } else {
      ShowProperties(arguments_.names, format);
    }
    return kSuccess;
  }

 private:
  void AddJson(CLI::App& app) { app.add_flag("--json", arguments_.json, "Print JSON"); }

  CLI::App& AddCommand(const std::string& name, const std::string& description,
                       const std::string& example, Action action) {
    CLI::App* const command = app_.add_subcommand(name, description);
    command->footer("Example:\n  " + example);
    command->callback([this, action = std::move(action)] { action_ = action; });
    AddJson(*command);
    return *command;
  }

  void AddNetworkCommands() {
    CLI::App& interfaces =
        AddCommand("interfaces", "Show the interfaces of this host with their addresses",
                   "zebinfo interfaces --loopback", [](const Arguments& arguments, Format format) {
                     ShowInterfaces(arguments.with_loopback, format);
                     return kSuccess;
                   });
    interfaces.add_flag("--loopback", arguments_.with_loopback, "Show loopback interfaces too");

    CLI::App& local = AddCommand(
        "local-address", "Connect to a peer and show the local address that faces it",
        "zebinfo local-address server.example 443", [](const Arguments& arguments, Format format) {
          ShowLocalAddress(arguments.peer, arguments.port, arguments.ipv4_only, format);
          return kSuccess;
        });
    local.add_option("PEER", arguments_.peer, "Host or address; several with \";\" between them")
        ->required();
    local.add_option("PORT", arguments_.port, "Port number or service name")->required();
    local.add_flag("--ipv4", arguments_.ipv4_only, "Try only IPv4 addresses");

    AddCommand("resolve", "Show the addresses of a host", "zebinfo resolve localhost",
               [](const Arguments& arguments, Format format) {
                 ResolveHost(arguments.host, format);
                 return kSuccess;
               })
        .add_option("HOST", arguments_.host, "Host name or address")
        ->required();
  }

  void AddTimeCommand() {
    AddCommand("time", "Show the time in the library's forms, the zone and the uptime",
               "zebinfo time --json", [](const Arguments&, Format format) {
                 ShowTime(format);
                 return kSuccess;
               });
  }

  void AddIdentityCommands() {
    AddCommand("guid", "Make a new GUID", "zebinfo guid", [](const Arguments&, Format format) {
      MakeGuid(format);
      return kSuccess;
    });
    AddCommand("software-id", "Show the agent's software identifier", "zebinfo software-id",
               [](const Arguments&, Format format) {
                 ShowSoftwareId(format);
                 return kSuccess;
               });
    AddCommand("plugin-version",
               "Load a plug-in module (its code runs) and show its version stamps",
               "zebinfo plugin-version ./plugin.so",
               [](const Arguments& arguments, Format format) {
                 ShowPluginVersion(arguments.file, format);
                 return kSuccess;
               })
        .add_option("FILE", arguments_.file, "Path of the module")
        ->required();

    CLI::App& match = AddCommand(
        "platform-match", "Tell whether a list supports a platform (exit status 0, 3 or 4)",
        "zebinfo platform-match WRLX:4:6:0 \"LINUX|WRLX:4:0:0-4:9:9\"",
        [](const Arguments& arguments, Format format) {
          return JudgePlatform(arguments.platform, arguments.supported, format);
        });
    match.add_option("PLATFORM", arguments_.platform, "NAME or NAME:a:b:c")->required();
    match
        .add_option("LIST", arguments_.supported, "NAME, NAME:low or NAME:low-high, \"|\" between")
        ->required();
  }

  void AddPathCommand() {
    CLI::App& path = AddCommand("path", "Flatten a path and show the regular file that it leads to",
                                "zebinfo path ../../etc/hosts --base /usr/lib",
                                [](const Arguments& arguments, Format format) {
                                  ShowPath(arguments.path, arguments.base, format);
                                  return kSuccess;
                                });
    path.add_option("PATH", arguments_.path, "The path, absolute or relative")->required();
    path.add_option("--base", arguments_.base, "Directory that a relative path is taken against")
        ->type_name("DIR");
  }

  void AddKeysCommand() {
    AddCommand("keys", "Show the names of the configuration's sections and keys",
               "zebinfo keys SiteList",
               [](const Arguments& arguments, Format format) {
                 ShowKeys(arguments.section, format);
                 return kSuccess;
               })
        .add_option("SECTION", arguments_.section, "Only this section, such as SiteList");
  }

  CLI::App app_{kSummary};
  Arguments arguments_;
  Action action_;
};

}  // namespace

int RunCommandLine(int argc, char** argv) {
  Parser parser;
  try {
    parser.app().parse(argc, argv);
  } catch (const CLI::Success& success) {  // Help and version, which are printed here.
    return parser.app().exit(success);
  } catch (const CLI::ParseError& error) {
    throw CommandError(kUsage, Printable(error.what()), "\"zebinfo --help\" shows how it is used.");
  }
  return parser.Act();
}

}  // namespace zebinfo
