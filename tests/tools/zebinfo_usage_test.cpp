// The command line of zebinfo: help, version, man page, wrong usage, and output that goes nowhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/scratch_dir.h"
#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(ZebinfoHelp, HasAnExampleOfEveryCommand) {
  const CommandResult help = Zebinfo({"--help"});
  EXPECT_EQ(help.exit_status, 0);
  EXPECT_EQ(help.err, "");
  EXPECT_EQ(Zebinfo({"-h"}).out, help.out);
  for (const std::string& command : kCommands) {
    EXPECT_THAT(help.out, HasSubstr("\n  zebinfo " + command));
  }
  for (const char* const option : {"--json", "--list", "--version"}) {
    EXPECT_THAT(help.out, HasSubstr(option));
  }
}

TEST(ZebinfoHelp, OfACommandHasItsExample) {
  for (const std::string& command : kCommands) {
    const CommandResult help = Zebinfo({command, "--help"});
    EXPECT_EQ(help.exit_status, 0) << command;
    EXPECT_EQ(help.err, "") << command;
    EXPECT_THAT(help.out, HasSubstr("Example:\n  zebinfo " + command));
    EXPECT_THAT(help.out, HasSubstr("--json"));
  }
}

TEST(ZebinfoHelp, FitsALineOfAHundredColumns) {
  const std::string help = Zebinfo({"--help"}).out;
  for (std::size_t begin = 0; begin < help.size();) {
    const std::size_t end = help.find('\n', begin);
    EXPECT_LE(end - begin, 100u) << help.substr(begin, end - begin);
    begin = end + 1;
  }
}

TEST(ZebinfoVersion, IsTheLibrarys) {
  EXPECT_EQ(Everything(Zebinfo({"--version"})), "zebinfo " PROJECT_VERSION "\n");
}

// The text of the manual page as it is read.
std::string ManualPage() {
  std::string page = ReadFile(MANUAL_PAGE);
  for (std::size_t at = 0; (at = page.find('\\', at)) != std::string::npos;) {
    page.erase(at, page[at + 1] == 'f' ? 3 : 1);
  }
  return page;
}

TEST(ZebinfoManualPage, HasEveryCommandOptionAndExitStatus) {
  const std::string page = ManualPage();
  EXPECT_THAT(page, HasSubstr("zebcomn " PROJECT_VERSION));
  for (const std::string& command : kCommands) EXPECT_THAT(page, HasSubstr("\nzebinfo " + command));
  for (const char* const option :
       {"--json", "--list", "--version", "--help", "--loopback", "--ipv4", "--base"}) {
    EXPECT_THAT(page, HasSubstr(option));
  }
  for (const char* const status : {".B 0", ".B 1", ".B 2", ".B 3", ".B 4"}) {
    EXPECT_THAT(page, HasSubstr(std::string("\n.TP\n") + status + "\n"));
  }
}

TEST(ZebinfoUsage, AWrongCommandLineIsRefused) {
  const std::vector<std::vector<std::string>> wrong = {
      {"--nonsense"},
      {"-x"},
      {"time", "--nonsense"},
      {"time", "surplus"},
      {"interfaces", "eth0"},
      {"resolve"},
      {"resolve", "a", "b"},
      {"local-address"},
      {"local-address", "peer"},
      {"local-address", "peer", "80", "surplus"},
      {"plugin-version"},
      {"platform-match", "WRLX"},
      {"path"},
      {"path", "a", "--base"},
      {"keys", "General", "Network"},
      {"--list", "OSType"},
  };
  for (const std::vector<std::string>& arguments : wrong) {
    const CommandResult result = Zebinfo(arguments);
    EXPECT_EQ(result.exit_status, 2) << ::testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("zebinfo: "));
    EXPECT_THAT(result.err, HasSubstr("\n\"zebinfo --help\" shows how it is used.\n"));
  }
}

TEST(ZebinfoUsage, AControlCharacterInAWrongOptionIsNotPrinted) {
  EXPECT_THAT(Zebinfo({"--a\x1B[2J"}).err, HasSubstr("--a\\x1b[2J\n"));
}

TEST(ZebinfoUsage, APortBeyondTheHighestIsRefused) {
  for (const char* const port : {"65536", "99999", "0065536", "100000000000000000000"}) {
    EXPECT_EQ(Everything(Zebinfo({"local-address", "127.0.0.1", port})),
              std::string("exit status 2\nzebinfo: \"") + port +
                  "\" is no port\nGive a number up to 65535, or the name of a service.\n");
  }
  EXPECT_EQ(Zebinfo({"local-address", "127.0.0.1", "0"}).exit_status, 1);
}

TEST(ZebinfoUsage, ACommandTakesNoPropertyNamesAndNoList) {
  const std::string refusal =
      "exit status 2\nzebinfo: a command takes no property names and no --list\n"
      "Put them into a call of their own, without the command.\n";
  EXPECT_EQ(Everything(Zebinfo({"OSType", "time"})), refusal);
  EXPECT_EQ(Everything(Zebinfo({"--list", "time"})), refusal);
}

TEST(ZebinfoUsage, OneCommandAtATime) {
  EXPECT_EQ(Zebinfo({"guid", "time"}).exit_status, 2);
}

TEST(ZebinfoOutput, ThatCannotBeWrittenIsAnError) {
  std::vector<std::string> command = {"sh", "-c", "exec \"$@\" >/dev/full", "sh"};
  for (const std::string& word : EmulatorWords()) command.push_back(word);
  command.insert(command.end(), {ZEBINFO, "--list"});
  EXPECT_EQ(Everything(RunCommand(command)),
            "exit status 1\nzebinfo: cannot write the output\nIs the disk full, or the pipe "
            "closed?\n");
}

}  // namespace
}  // namespace zebcomn_test
