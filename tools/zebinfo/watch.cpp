#include "tools/zebinfo/watch.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tools/zebinfo/command_error.h"
#include "tools/zebinfo/output.h"
#include "tools/zebinfo/text.h"

namespace zebinfo {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr double kLeastSeconds = 0.1;
constexpr double kMostSeconds = 86400;
constexpr unsigned long kMostTimes = 1000000000;
constexpr double kMillisecondsPerSecond = 1000;

// To the upper left corner, and nothing left on the screen.
constexpr const char* kClearScreen = "\x1B[H\x1B[2J";

volatile sig_atomic_t interrupted = 0;

// Takes Ctrl-C while it lives. The first one ends the watch after the collection that is under way;
// a second one, when that takes too long, ends the process. Where it is ignored, as for a job that
// a script has put into the background, it stays ignored.
class InterruptWatch {
 public:
  InterruptWatch() {
    sigaction(SIGINT, nullptr, &former_action_);
    if (former_action_.sa_handler == SIG_IGN) return;
    struct sigaction action = {};
    action.sa_handler = [](int) { interrupted = 1; };
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
  }
  ~InterruptWatch() { sigaction(SIGINT, &former_action_, nullptr); }
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  // Waits until then, or for Ctrl-C; tells whether it was pressed. It is held back between the look
  // at the flag and the wait, so that it is not missed there.
  bool WaitUntil(steady_clock::time_point end) const {
    sigset_t interrupt, former_mask;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    sigprocmask(SIG_BLOCK, &interrupt, &former_mask);
    while (interrupted == 0 && steady_clock::now() < end) {
      const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now()).count();
      const timespec timeout = {static_cast<time_t>(left / 1000),
                                static_cast<long>(left % 1000 * 1000000)};
      if (left > 0) ppoll(nullptr, 0, &timeout, &former_mask);
    }
    sigprocmask(SIG_SETMASK, &former_mask, nullptr);
    return interrupted != 0;
  }

 private:
  struct sigaction former_action_ = {};
};

// The whole text as a number, or a value that is none.
double Number(const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  const bool is_whole = !text.empty() && end == text.c_str() + text.size();
  return is_whole ? number : std::nan("");
}

}  // namespace

WatchPlan ParseWatchPlan(const std::string& seconds, const std::optional<std::string>& count) {
  const double interval = Number(seconds);
  if (!(interval >= kLeastSeconds && interval <= kMostSeconds)) {
    throw CommandError(kUsage, Quoted(seconds) + " is no interval for --watch",
                       "Give a number of seconds from 0.1 to 86400, such as 2 or 0.5.");
  }
  const double times = count ? Number(*count) : 0;
  if (count && !(times >= 1 && times <= double{kMostTimes} && times == std::floor(times))) {
    throw CommandError(kUsage, Quoted(*count) + " is no number of times for --count",
                       "Give a whole number from 1 to 1000000000.");
  }
  return {milliseconds(std::lround(interval * kMillisecondsPerSecond)),
          static_cast<unsigned long>(times)};
}

void Watch(const WatchPlan& plan, Spacing spacing, const std::function<void()>& show) {
  const InterruptWatch interrupt;
  const bool redraws =
      spacing != Spacing::kJsonLines && !IsDumbTerminal() && isatty(STDOUT_FILENO) != 0;
  auto next = steady_clock::now();
  for (unsigned long done = 0; plan.count == 0 || done < plan.count; ++done) {
    if (done > 0 && interrupt.WaitUntil(next)) return;
    if (redraws) {
      Print(kClearScreen);
    } else if (done > 0 && spacing == Spacing::kBlocks) {
      Print("\n");
    }
    show();
    Flush();
    // What was missed is not made up for.
    next = std::max(next + plan.interval, steady_clock::now());
  }
}

}  // namespace zebinfo
