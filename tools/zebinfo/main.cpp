// zebinfo: what the library knows about this host, on the command line.
#include <ctime>
#include <exception>
#include <iostream>
#include <new>

#include "tools/zebinfo/command_error.h"
#include "tools/zebinfo/command_line.h"

namespace {

int Complain(const std::string& what, const std::string& advice, int status) {
  std::cout.flush();
  std::cerr << "zebinfo: " << what << '\n';
  if (!advice.empty()) std::cerr << advice << '\n';
  return status;
}

int RunAndReport(int argc, char** argv) {
  try {
    const int status = zebinfo::RunCommandLine(argc, argv);
    std::cout.flush();
    if (std::cout) return status;
    return Complain("cannot write the output", "Is the disk full, or the pipe closed?",
                    zebinfo::kFailure);
  } catch (const zebinfo::CommandError& error) {
    return Complain(error.what(), error.advice(), error.status());
  } catch (const std::bad_alloc&) {
    return Complain("out of memory", "", zebinfo::kFailure);
  } catch (const std::exception& error) {
    return Complain(error.what(), "", zebinfo::kFailure);
  }
}

}  // namespace

int main(int argc, char** argv) {
  // The library reports the zone that the process has set up.
  tzset();
  return RunAndReport(argc, argv);
}
