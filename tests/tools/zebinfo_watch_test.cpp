// zebinfo --watch: what is shown again and again, and how that ends.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/child_program.h"
#include "tests/tools/terminal.h"
#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

// A program that runs beside the test, which reads what it writes.
class ReadProgram {
 public:
  explicit ReadProgram(const std::vector<std::string>& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("there can be no pipe");
    output_ = fdopen(ends[0], "r");
    program_.emplace(command, ends[1]);
    close(ends[1]);
  }
  ~ReadProgram() { fclose(output_); }
  ReadProgram(const ReadProgram&) = delete;
  ReadProgram& operator=(const ReadProgram&) = delete;

  // The next line, with its end; empty behind the last.
  std::string NextLine() {
    char line[64] = "";
    return fgets(line, sizeof line, output_) == nullptr ? "" : line;
  }
  ChildProgram& program() { return *program_; }

 private:
  FILE* output_;
  std::optional<ChildProgram> program_;
};

TEST(ZebinfoWatch, GivesABareValueALineEachTime) {
  EXPECT_EQ(Everything(Zebinfo({"OSType", "--watch", "0.1", "--count", "3"})),
            "Linux\nLinux\nLinux\n");
}

TEST(ZebinfoWatch, PutsAnEmptyLineBetweenBlocks) {
  const std::string block = "OSType      Linux\nIsPortable  -1\n";
  EXPECT_EQ(Everything(Zebinfo({"--watch", ".1", "--count", "2", "OSType", "IsPortable"})),
            block + "\n" + block);
}

TEST(ZebinfoWatch, GivesAJsonObjectALine) {
  const std::string text = Everything(Zebinfo({"--json", "--watch=0.1", "--count=2"}));
  std::istringstream lines(text);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_EQ(Members(line).at("properties").size(), 30u);
  }
  EXPECT_EQ(count, 2) << text;
}

TEST(ZebinfoWatch, IsOfTheCommandsWhoseResultChanges) {
  const std::string times = Everything(Zebinfo({"time", "--watch", "0.1", "--count", "2"}));
  EXPECT_THAT(times, HasSubstr("\n\nLocal time  "));
  EXPECT_EQ(Zebinfo({"--watch", "0.1", "--count", "2", "--json", "time"}).exit_status, 0);
  for (const char* const command : {"guid", "software-id", "keys"}) {
    EXPECT_EQ(Everything(Zebinfo({"--watch", "1", command})),
              std::string("exit status 2\nzebinfo: ") + command +
                  " shows nothing that --watch could see change\n"
                  "Watch properties, \"interfaces\" or \"time\".\n");
    EXPECT_EQ(Everything(Zebinfo({command, "--watch", "1"})),
              std::string("exit status 2\nzebinfo: ") + command +
                  ": there is no option \"--watch\"\n\"zebinfo " + command +
                  " --help\" shows how it is used.\n");
  }
  EXPECT_THAT(Zebinfo({"--list", "--watch", "1"}).err, HasSubstr("--list shows nothing that"));
}

TEST(ZebinfoWatch, SeesWhatChanges) {
  if (std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string text = RunInPrivateHost([](PrivateHost& host) {
    host.PutFile("/etc/wrs-release", "Wind River Linux 3.0.3 standard\n");
    ReadProgram watch(ZebinfoWords({"OSVersion", "--watch", "0.1", "--count", "600"}));
    const std::string seen = watch.NextLine();
    host.PutFile("/etc/wrs-release", "Wind River Linux 4.3 standard\n");
    std::string line = seen;
    while (line == seen) line = watch.NextLine();
    return seen + line;
  });
  EXPECT_EQ(text, "3.0.3\n4.3\n");
}

// What two rounds of a watch show at a terminal of this kind, without colours.
std::string WatchedAtATerminal(const std::string& kind) {
  std::vector<std::string> command = {"env", "NO_COLOR=1", "TERM=" + kind};
  for (const std::string& word :
       ZebinfoWords({"OSType", "IsPortable", "--watch", "0.1", "--count", "2"})) {
    command.push_back(word);
  }
  Terminal terminal(command);
  std::string shown = terminal.ReadAll();
  EXPECT_EQ(terminal.Wait(), 0);
  return shown;
}

TEST(ZebinfoWatch, DrawsAnewOnATerminal) {
  const std::string screen = "\x1B[H\x1B[2JOSType      Linux\nIsPortable  -1\n";
  EXPECT_EQ(WatchedAtATerminal("xterm"), screen + screen);
}

TEST(ZebinfoWatch, WritesNothingButTextToADumbTerminal) {
  const std::string block = "OSType      Linux\nIsPortable  -1\n";
  EXPECT_EQ(WatchedAtATerminal("dumb"), block + "\n" + block);
}

TEST(ZebinfoWatch, EndsWellWithCtrlC) {
  for (const bool as_json : {false, true}) {
    Terminal terminal(ZebinfoWords({"OSType", "--watch", "86400", as_json ? "--json" : "OSType"}));
    terminal.ReadUntil("\n");
    terminal.Type("\x03");
    terminal.ReadAll();
    EXPECT_EQ(terminal.Wait(), 0);
  }
}

TEST(ZebinfoWatch, EndsWellWithAnInterruptWhereThereIsNoTerminal) {
  ReadProgram watch(ZebinfoWords({"OSType", "--watch", "86400"}));
  EXPECT_EQ(watch.NextLine(), "Linux\n");
  watch.program().Send(SIGINT);
  EXPECT_EQ(watch.program().Wait(), 0);
}

TEST(ZebinfoWatch, GoesOnWhereInterruptsAreIgnored) {
  // So it is with a job that a script has put into the background.
  ReadProgram watch(ZebinfoWordsInShell("trap '' INT; exec \"$@\"",
                                        {"OSType", "--watch", "0.1", "--count", "3"}));
  std::string seen;
  for (std::string line = watch.NextLine(); !line.empty(); line = watch.NextLine()) {
    seen += line;
    watch.program().Send(SIGINT);
  }
  EXPECT_EQ(watch.program().Wait(), 0);
  EXPECT_EQ(seen, "Linux\nLinux\nLinux\n");
}

TEST(ZebinfoWatch, EndsWithAFailureWhenItsReaderGoes) {
  const CommandResult result = RunCommand(
      ZebinfoWordsInShell("trap '' PIPE; { \"$@\"; echo \"exit status $?\" >&2; } | head -n 1",
                          {"OSType", "--watch", "0.1"}));
  EXPECT_EQ(result.out, "Linux\n");
  EXPECT_EQ(result.err,
            "zebinfo: cannot write the output: Broken pipe\n"
            "Send it to a terminal, a pipe or a file that can take it.\nexit status 1\n");
}

TEST(ZebinfoWatch, AnIntervalThatIsNoneIsRefused) {
  for (const char* const seconds : {"0", "0.09", "-1", "86401", "soon", "2s", "nan", "inf"}) {
    EXPECT_EQ(Everything(Zebinfo({std::string("--watch=") + seconds, "OSType"})),
              std::string("exit status 2\nzebinfo: \"") + seconds +
                  "\" is no interval for --watch\n"
                  "Give a number of seconds from 0.1 to 86400, such as 2 or 0.5.\n");
  }
}

TEST(ZebinfoWatch, ACountThatIsNoneIsRefused) {
  for (const char* const count : {"0", "-1", "1.5", "many", "1000000001", "nan"}) {
    EXPECT_EQ(Everything(Zebinfo({"OSType", "--watch", "1", std::string("--count=") + count})),
              std::string("exit status 2\nzebinfo: \"") + count +
                  "\" is no number of times for --count\n"
                  "Give a whole number from 1 to 1000000000.\n");
  }
  EXPECT_EQ(Everything(Zebinfo({"OSType", "--count", "2"})),
            "exit status 2\nzebinfo: --count requires --watch\n"
            "\"zebinfo --help\" shows how it is used.\n");
}

}  // namespace
}  // namespace zebcomn_test
