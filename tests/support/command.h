#ifndef ZEBCOMN_TESTS_SUPPORT_COMMAND_H_
#define ZEBCOMN_TESTS_SUPPORT_COMMAND_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zebcomn_test {

/// What a finished program left behind.
struct CommandResult {
  int exit_status = -1;  ///< Exit status, or 128 + the signal that ended it.
  std::string out;       ///< Everything it wrote on standard output.
  std::string err;       ///< Everything it wrote on standard error.
};

/// Runs a program of this machine (searched in PATH) and waits for its end. Standard input is
/// empty. `environment` is set on top of the caller's own; an empty value removes the variable.
CommandResult RunCommand(const std::vector<std::string>& arguments,
                         const std::vector<std::pair<std::string, std::string>>& environment = {});

/// Runs a program that was built for the target under test, through its emulator where it needs
/// one.
CommandResult RunTargetCommand(
    std::vector<std::string> arguments,
    const std::vector<std::pair<std::string, std::string>>& environment = {});

/// The words that start a program of the target on this machine; empty for a native build.
std::vector<std::string> EmulatorWords();

/// Whether this build's programs run under an emulator, and not only through their own loader.
constexpr bool IsEmulated() {
  return std::string_view(ZEBCOMN_EMULATOR).find("qemu") != std::string_view::npos;
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_COMMAND_H_
