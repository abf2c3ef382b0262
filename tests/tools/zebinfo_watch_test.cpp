// zebinfo --watch: what is shown again and again, and how that ends.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/child_program.h"
#include "tests/support/scratch_dir.h"
#include "tests/tools/terminal.h"
#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

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
  const ScratchDir dir;
  const std::string fifo = dir / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  if (std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string text = RunInPrivateHost([&fifo](PrivateHost& host) {
    host.PutFile("/etc/wrs-release", "Wind River Linux 3.0.3 standard\n");
    std::vector<std::string> command = {"sh", "-c", "exec \"$@\" >" + fifo, "sh"};
    for (const std::string& word :
         ZebinfoWords({"OSVersion", "--watch", "0.1", "--count", "600"})) {
      command.push_back(word);
    }
    ChildProgram program(command);
    FILE* const output = fopen(fifo.c_str(), "r");
    char line[64] = "";
    std::string seen = fgets(line, sizeof line, output);
    host.PutFile("/etc/wrs-release", "Wind River Linux 4.3 standard\n");
    while (fgets(line, sizeof line, output) != nullptr && seen == line) {
    }
    fclose(output);
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
  const ScratchDir dir;
  const std::string fifo = dir / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  std::vector<std::string> command = {"sh", "-c", "exec \"$@\" >" + fifo, "sh"};
  for (const std::string& word : ZebinfoWords({"OSType", "--watch", "86400"})) {
    command.push_back(word);
  }
  ChildProgram program(command);
  FILE* const output = fopen(fifo.c_str(), "r");
  char line[64] = "";
  EXPECT_STREQ(fgets(line, sizeof line, output), "Linux\n");
  program.Send(SIGINT);
  EXPECT_EQ(program.Wait(), 0);
  fclose(output);
}

TEST(ZebinfoWatch, GoesOnWhereInterruptsAreIgnored) {
  const ScratchDir dir;
  const std::string fifo = dir / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  // So it is with a job that a script has put into the background.
  std::vector<std::string> command = {"sh", "-c", "trap '' INT; exec \"$@\" >" + fifo, "sh"};
  for (const std::string& word : ZebinfoWords({"OSType", "--watch", "0.1", "--count", "3"})) {
    command.push_back(word);
  }
  ChildProgram program(command);
  FILE* const output = fopen(fifo.c_str(), "r");
  std::string seen;
  char line[64] = "";
  while (fgets(line, sizeof line, output) != nullptr) {
    seen += line;
    program.Send(SIGINT);
  }
  EXPECT_EQ(program.Wait(), 0);
  fclose(output);
  EXPECT_EQ(seen, "Linux\nLinux\nLinux\n");
}

TEST(ZebinfoWatch, EndsWithAFailureWhenItsReaderGoes) {
  std::vector<std::string> command = {
      "sh", "-c", "trap '' PIPE; { \"$@\"; echo \"exit status $?\" >&2; } | head -n 1", "sh"};
  for (const std::string& word : ZebinfoWords({"OSType", "--watch", "0.1"})) {
    command.push_back(word);
  }
  const CommandResult result = RunCommand(command);
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
