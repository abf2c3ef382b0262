#ifndef ZEBCOMN_TOOLS_ZEBINFO_WATCH_H_
#define ZEBCOMN_TOOLS_ZEBINFO_WATCH_H_

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace zebinfo {

struct WatchPlan {
  std::chrono::milliseconds interval;
  unsigned long count;  ///< How often; 0 is until the user ends it.
};

/// Makes a plan of what the command line says; throws CommandError for what is no such number.
WatchPlan ParseWatchPlan(const std::string& seconds, const std::optional<std::string>& count);

/// What is watched: blocks of text, with an empty line between them where they are not on a
/// terminal, lines of text, or lines of JSON.
enum class Spacing { kBlocks, kLines, kJsonLines };

/// Shows something again and again, until the count is reached or the user presses Ctrl-C. On a
/// terminal each text takes the place of the one before; elsewhere, and on a dumb one, they follow
/// each other.
void Watch(const WatchPlan& plan, Spacing spacing, const std::function<void()>& show);

}  // namespace zebinfo

#endif  // ZEBCOMN_TOOLS_ZEBINFO_WATCH_H_
