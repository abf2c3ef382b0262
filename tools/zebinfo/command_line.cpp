#include "tools/zebinfo/command_line.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

#include "tools/zebinfo/catalogue.h"
#include "tools/zebinfo/command_table.h"
#include "tools/zebinfo/nearest.h"
#include "tools/zebinfo/output.h"
#include "tools/zebinfo/text.h"
#include "tools/zebinfo/watch.h"

namespace zebinfo {
namespace {

constexpr const char* kSummary =
    "Shows what the agent's library knows about this host. Without a command: every system\n"
    "property, or those that are named.";

constexpr const char* kFooter =
    "Examples:\n"
    "  zebinfo                                      every property, in groups\n"
    "  zebinfo IPAddress                            the bare value, for scripts\n"
    "  zebinfo CPUType NumOfCPU                     several values\n"
    "  zebinfo --json                               everything, for programs\n"
    "  zebinfo --watch 2 FreeMemory                 a value again every two seconds\n"
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
    "  zebinfo keys SiteList                        the configuration's keys\n"
    "\n"
    "Exit status:\n"
    "  0  done; a watch that Ctrl-C has ended is done\n"
    "  1  it cannot be done\n"
    "  2  the command line is wrong, or a name in it is unknown\n"
    "  3  platform-match: the platform is listed, its version is not\n"
    "  4  platform-match: the platform is not listed\n"
    "\n"
    "What is wrong, and what to do about it, goes to standard error.";

// By itself, output has colours on a terminal that knows them, unless the user wants none anywhere.
bool WantsColor(const std::string& choice) {
  if (choice == "always") return true;
  if (choice == "never") return false;
  if (choice != "auto") {
    throw CommandError(kUsage, Quoted(choice) + " is no choice for --color",
                       "Choose auto, always or never.");
  }
  const char* const no_color = std::getenv("NO_COLOR");
  const bool is_unwanted = no_color != nullptr && *no_color != '\0';
  return !is_unwanted && !IsDumbTerminal() && isatty(STDOUT_FILENO) != 0;
}

const Command* CommandNamed(const std::string& word) {
  for (const Command& command : Commands()) {
    if (word == command.name) return &command;
  }
  return nullptr;
}

// Whether the next word is the value of this one, in front of a command.
bool TakesNextWord(const std::string& word) {
  return word == "--color" || word == "--watch" || word == "--count";
}

// The command that the command line begins with, its options aside; null without one.
const Command* CommandAmong(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (const Command* const command = CommandNamed(argv[i])) return command;
    if (TakesNextWord(argv[i])) ++i;
  }
  return nullptr;
}

// How often an option stands on the command line.
long HowOften(const std::string& option, int argc, char** argv) {
  return std::count_if(argv + 1, argv + argc, [&option](const std::string& word) {
    return word.substr(0, word.find('=')) == option;
  });
}

// The first long option that begins with a letter, whatever its case; empty without one.
std::string WithInitial(char letter, const std::vector<std::string>& options) {
  for (const std::string& option : options) {
    if (std::tolower(option[2]) == std::tolower(static_cast<unsigned char>(letter))) return option;
  }
  return "";
}

// Builds the parser, reads the command line with it and does what that says.
class Parser {
 public:
  Parser(int argc, char** argv) : given_(CommandAmong(argc, argv)) {
    app_.name("zebinfo");
    app_.footer(kFooter);
    AddForm(app_);
    AddWatch(app_);
    app_.add_option("NAME", arguments_.names, "Properties to show instead of all of them")
        ->type_name("");
    app_.add_flag("--list", arguments_.list, "List the names of the properties with their groups");
    app_.set_version_flag("--version", std::string("zebinfo ") + ZEBINFO_VERSION,
                          "Show the version");
    app_.require_subcommand(0, 1);
    for (const Command& command : Commands()) Add(command);
  }

  ExitStatus Run(int argc, char** argv) {
    if (given_ != nullptr && std::string(argv[1]) == "help") {
      throw CommandError(kUsage, "\"help\" is no command", AdviceOn(given_));
    }
    try {
      app_.parse(argc, argv);
    } catch (const CLI::CallForVersion&) {
      Print(app_.version() + '\n');
      return kSuccess;
    } catch (const CLI::Success&) {  // The help is asked for.
      Print(app_.help());
      return kSuccess;
    } catch (const CLI::ExtrasError&) {
      RefuseSurplus();
    } catch (const CLI::ArgumentMismatch& error) {
      // The option stands in front of a colon.
      const std::string text = error.what();
      const std::string option = text.substr(0, text.find(':'));
      RefuseNumberOfValues(option, HowOften(option, argc, argv));
    } catch (const CLI::ConversionError&) {
      throw CommandError(kUsage, "an option without a value was given one", UsageAdvice());
    } catch (const CLI::ParseError& error) {
      throw CommandError(kUsage, Printable(error.what()), UsageAdvice());
    }
    return Act();
  }

 private:
  void AddForm(CLI::App& app) {
    app.set_help_flag("-h,--help", "Show this help");
    app.add_flag("--json", arguments_.json, "Print JSON");
    app.add_option("--color", arguments_.color, "Colours: auto (on a terminal), always or never")
        ->type_name("WHEN");
  }

  void AddWatch(CLI::App& app) {
    CLI::Option* const watch =
        app.add_option("--watch", arguments_.watch, "Show it again every so many seconds")
            ->type_name("SECONDS");
    app.add_option("--count", arguments_.count, "How often --watch shows it")
        ->type_name("N")
        ->needs(watch);
  }

  // What may follow a command is declared for the one that is given alone: that is most of the
  // work.
  void Add(const Command& command) {
    CLI::App* const app = app_.add_subcommand(command.name, command.description);
    if (&command != given_) return;
    app->footer(std::string("Example:\n  ") + command.example);
    AddForm(*app);
    if (command.can_watch) AddWatch(*app);
    if (command.declare != nullptr) command.declare(*app, arguments_);
  }

  const Command* Taken() const { return app_.get_subcommands().empty() ? nullptr : given_; }

  static std::string AdviceOn(const Command* command) {
    const std::string words = command == nullptr ? "" : std::string(" ") + command->name;
    return "\"zebinfo" + words + " --help\" shows how it is used.";
  }

  std::string UsageAdvice() const { return AdviceOn(Taken()); }

  [[noreturn]] void RefuseNumberOfValues(const std::string& option, long times) const {
    if (times > 1) {
      throw CommandError(kUsage, option + " is given more than once", "Give it once.");
    }
    throw CommandError(kUsage, option + " needs a value", UsageAdvice());
  }

  [[noreturn]] void RefuseSurplus() const {
    const std::vector<std::string> words = app_.remaining(true);
    const std::string word = words.empty() ? "" : words.front();
    if (word.rfind('-', 0) != 0) {
      throw CommandError(kUsage, Quoted(word) + " is one argument too many", UsageAdvice());
    }
    const std::string meaning = LikelyMeaning(word.substr(0, word.find('=')));
    throw CommandError(
        kUsage,
        (Taken() == nullptr ? "" : std::string(Taken()->name) + ": ") + "there is no option " +
            Quoted(word),
        (meaning.empty() ? "" : "Did you mean " + Quoted(meaning) + "? ") + UsageAdvice());
  }

  // What a wrong option is likely to stand for; empty when nothing is near.
  std::string LikelyMeaning(const std::string& word) const {
    const CLI::App& app = Taken() == nullptr ? app_ : *app_.get_subcommands().front();
    std::vector<std::string> options;
    for (const CLI::Option* const option : app.get_options()) {
      for (const std::string& name : option->get_lnames()) options.push_back("--" + name);
    }
    if (word.size() == 2) return WithInitial(word[1], options);
    std::string nearest = Nearest(word, options);
    const std::size_t begin = word.find_first_not_of('-');
    if (!nearest.empty() || Taken() != nullptr || begin == std::string::npos) return nearest;
    std::vector<std::string> words = PropertyNames();
    for (std::string& command : CommandNames()) words.push_back(std::move(command));
    return Nearest(word.substr(begin), words);
  }

  ExitStatus Act() const {
    const Command* const command = Taken();
    if (command != nullptr && (!arguments_.names.empty() || arguments_.list)) {
      throw CommandError(kUsage, "a command takes no property names and no --list",
                         "Put them into a call of their own, without the command.");
    }
    if (arguments_.list && !arguments_.names.empty()) {
      throw CommandError(kUsage, "--list takes no names", "\"zebinfo --list\" lists them all.");
    }
    UseColor(WantsColor(arguments_.color));
    if (arguments_.watch) return ActAgainAndAgain(command);
    const Format format = arguments_.json ? Format::kJson : Format::kText;
    return command == nullptr ? ShowOrList(format) : command->run(arguments_, format);
  }

  ExitStatus ShowOrList(Format format) const {
    if (arguments_.list) {
      ListProperties(format);
    } else if (arguments_.names.empty()) {
      ShowCatalogue(format);
    } else {
      ShowProperties(arguments_.names, format);
    }
    return kSuccess;
  }

  ExitStatus ActAgainAndAgain(const Command* command) const {
    const bool changes = command == nullptr ? !arguments_.list : command->can_watch;
    if (!changes) {
      throw CommandError(kUsage,
                         std::string(command == nullptr ? "--list" : command->name) +
                             " shows nothing that --watch could see change",
                         "Watch properties, \"interfaces\" or \"time\".");
    }
    const WatchPlan plan = ParseWatchPlan(*arguments_.watch, arguments_.count);
    const bool is_bare = command == nullptr && arguments_.names.size() == 1;
    if (arguments_.json) {
      Watch(plan, Spacing::kJsonLines, [this, command] { ShowOnce(command, Format::kJsonLines); });
    } else {
      Watch(plan, is_bare ? Spacing::kLines : Spacing::kBlocks,
            [this, command] { ShowOnce(command, Format::kText); });
    }
    return kSuccess;
  }

  void ShowOnce(const Command* command, Format format) const {
    if (command == nullptr) {
      ShowOrList(format);
    } else {
      command->run(arguments_, format);
    }
  }

  CLI::App app_{kSummary};
  Arguments arguments_;
  const Command* given_;
};

}  // namespace

int RunCommandLine(int argc, char** argv) {
  return Parser(argc, argv).Run(argc, argv);
}

}  // namespace zebinfo
