#ifndef ZEBCOMN_TOOLS_ZEBINFO_COMMAND_LINE_H_
#define ZEBCOMN_TOOLS_ZEBINFO_COMMAND_LINE_H_

namespace zebinfo {

/// Parses the command line and does what it says.
/// \return The exit status. Throws CommandError for a wrong command line and a failed command.
int RunCommandLine(int argc, char** argv);

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_COMMAND_LINE_H_
