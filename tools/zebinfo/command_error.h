#ifndef ZEBCOMN_TOOLS_ZEBINFO_COMMAND_ERROR_H_
#define ZEBCOMN_TOOLS_ZEBINFO_COMMAND_ERROR_H_

#include <stdexcept>
#include <string>

namespace zebinfo {

/// The exit statuses, as the man page lists them.
enum ExitStatus : int {
  kSuccess = 0,
  kFailure = 1,              ///< The command could not be done.
  kUsage = 2,                ///< The command line is wrong, an unknown name included.
  kVersionNotSupported = 3,  ///< platform-match: the platform is listed, its version is not.
  kPlatformNotListed = 4,    ///< platform-match: no entry names the platform.
};

/// What to do about a path that this user may not follow or read.
constexpr const char* kRunAsAnotherUser = "Run it as a user who may read that path.";

/// Ends a command: what is wrong, and what to do about it.
class CommandError : public std::runtime_error {
 public:
  CommandError(ExitStatus status, const std::string& what, std::string advice)
      : std::runtime_error(what), status_(status), advice_(std::move(advice)) {}

  ExitStatus status() const { return status_; }
  /// A whole sentence.
  const std::string& advice() const { return advice_; }

 private:
  ExitStatus status_;
  std::string advice_;
};

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_COMMAND_ERROR_H_
