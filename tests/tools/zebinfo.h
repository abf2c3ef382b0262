#ifndef ZEBCOMN_TESTS_TOOLS_ZEBINFO_H_
#define ZEBCOMN_TESTS_TOOLS_ZEBINFO_H_

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/command.h"
#include "tests/support/private_host.h"

namespace zebcomn_test {

/// The commands of zebinfo.
extern const std::vector<std::string> kCommands;

/// Runs the zebinfo of this build in UTC and without a language; `environment` is set on top.
CommandResult Zebinfo(std::vector<std::string> arguments,
                      const std::vector<std::pair<std::string, std::string>>& environment = {});

/// The words of a command that runs the zebinfo of this build on this machine.
std::vector<std::string> ZebinfoWords(const std::vector<std::string>& arguments);

/// The words of a command that runs the shell `script`, in which "$@" is that command and "$0" is
/// `name`.
std::vector<std::string> ZebinfoWordsInShell(const std::string& script,
                                             const std::vector<std::string>& arguments,
                                             const std::string& name = "sh");

/// Everything about a finished zebinfo in one text, for a body in a private host to return: what it
/// wrote, and, unless it did well and kept quiet, "exit status N" and what it complained about.
std::string Everything(const CommandResult& result);

/// The same of a zebinfo with these arguments on a private host that `prepare` has changed.
std::string ZebinfoOn(void (*prepare)(PrivateHost&), const std::vector<std::string>& arguments,
                      const std::vector<std::pair<std::string, std::string>>& environment = {});

/// What zebinfo printed as JSON, without the version of the form, which must be there. Throws when
/// the text is something else.
nlohmann::json Members(const std::string& text);

using Words = std::set<std::string>;

/// The lines of a text that are not empty.
Words Lines(const std::string& text);

/// The options that a help text of zebinfo describes, each beginning a line of its own.
Words OptionsOf(const std::string& help);

/// Takes the resolver of the real host out of a private host: names
/// come from this hosts file alone.
void UseHostsFile(PrivateHost& host, const std::string& text);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_TOOLS_ZEBINFO_H_
