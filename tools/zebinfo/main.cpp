// zebinfo: what the library knows about this host, on the command line.
#include <unistd.h>

#include <ctime>
#include <exception>
#include <new>
#include <string>

#include "tools/zebinfo/command_error.h"
#include "tools/zebinfo/command_line.h"
#include "tools/zebinfo/output.h"

namespace {

int Complain(const std::string& what, const std::string& advice, int status) {
  std::string text = "zebinfo: " + what + '\n';
  if (!advice.empty()) text += advice + '\n';
  // There is nobody else to tell when this fails.
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
  return status;
}

// What the command has printed comes in front of what is wrong.
int RunAndFlush(int argc, char** argv) {
  try {
    const int status = zebinfo::RunCommandLine(argc, argv);
    zebinfo::Flush();
    return status;
  } catch (const zebinfo::CommandError&) {
    zebinfo::Flush();
    throw;
  }
}

int RunAndReport(int argc, char** argv) {
  try {
    return RunAndFlush(argc, argv);
  } catch (const zebinfo::CommandError& error) {
    return Complain(error.what(), error.advice(), error.status());
  } catch (const std::bad_alloc&) {
    return Complain("out of memory", "End other programs, or raise the limit (ulimit -v).",
                    zebinfo::kFailure);
  } catch (const std::exception& error) {
    return Complain(error.what(), "This should not happen; report it with the command line.",
                    zebinfo::kFailure);
  }
}

}  // namespace

int main(int argc, char** argv) {
  // The library reports the zone that the process has set up.
  tzset();
  return RunAndReport(argc, argv);
}
