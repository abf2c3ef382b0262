// The command line of zebinfo: help, version, man page, wrong usage, and output that goes nowhere.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/child_program.h"
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
  Words options = OptionsOf(Zebinfo({"--help"}).out);
  for (const std::string& command : kCommands) {
    EXPECT_THAT(page, HasSubstr("\nzebinfo " + command));
    options.merge(OptionsOf(Zebinfo({command, "--help"}).out));
  }
  EXPECT_EQ(options, (Words{"-h", "--help", "--json", "--color", "--watch", "--count", "--list",
                            "--version", "--loopback", "--ipv4", "--base"}));
  for (const std::string& option : options) EXPECT_THAT(page, HasSubstr(option));
}

TEST(ZebinfoManualPage, AndTheHelpHaveEveryExitStatus) {
  const std::string page = ManualPage();
  const std::string help = Zebinfo({"--help"}).out;
  for (const char* const status : {"0", "1", "2", "3", "4"}) {
    EXPECT_THAT(page, HasSubstr(std::string("\n.TP\n.B ") + status + "\n"));
    EXPECT_THAT(help, HasSubstr(std::string("\n  ") + status + "  "));
  }
}

// Each mistake of somebody who is new to zebinfo: what is wrong, and what to do about it.
TEST(ZebinfoUsage, EachMistakeIsNamedWithAdvice) {
  const struct {
    std::vector<std::string> arguments;
    const char* wrong;
    const char* advice;
  } rows[] = {
      {{"--jsn"},
       "there is no option \"--jsn\"",
       "Did you mean \"--json\"? \"zebinfo --help\" shows how it is used."},
      {{"-j"},
       "there is no option \"-j\"",
       "Did you mean \"--json\"? \"zebinfo --help\" shows how it is used."},
      {{"-V"},
       "there is no option \"-V\"",
       "Did you mean \"--version\"? \"zebinfo --help\" shows how it is used."},
      {{"-x"}, "there is no option \"-x\"", "\"zebinfo --help\" shows how it is used."},
      {{"time", "-w", "2"},
       "time: there is no option \"-w\"",
       "Did you mean \"--watch\"? \"zebinfo time --help\" shows how it is used."},
      {{"--IPAddress"},
       "there is no option \"--IPAddress\"",
       "Did you mean \"IPAddress\"? \"zebinfo --help\" shows how it is used."},
      {{"--interface"},
       "there is no option \"--interface\"",
       "Did you mean \"interfaces\"? \"zebinfo --help\" shows how it is used."},
      {{"time", "--wach=3"},
       "time: there is no option \"--wach=3\"",
       "Did you mean \"--watch\"? \"zebinfo time --help\" shows how it is used."},
      {{"resolve", "--loopback", "a"},
       "resolve: there is no option \"--loopback\"",
       "\"zebinfo resolve --help\" shows how it is used."},
      {{"help"},
       "\"help\" is neither a property nor a command",
       "Did you mean \"--help\"? \"zebinfo --list\" lists the properties, \"zebinfo --help\" the "
       "commands."},
      {{"list"},
       "\"list\" is neither a property nor a command",
       "Did you mean \"--list\"? \"zebinfo --list\" lists the properties, \"zebinfo --help\" the "
       "commands."},
      {{"help", "resolve"},
       "\"help\" is no command",
       "\"zebinfo resolve --help\" shows how it is used."},
      {{"help", "time"}, "\"help\" is no command", "\"zebinfo time --help\" shows how it is used."},
      {{"--", "time"},
       "\"time\" is a command, and no property behind \"--\"",
       "Leave the \"--\" out, or put it behind the command."},
      {{"--color", "guid", "path", "/etc/hosts"},
       "\"guid\" is no choice for --color",
       "Choose auto, always or never."},
      {{"cpu"},
       "\"cpu\" is the title of a group, not a property",
       "Name its properties: CPUType CPUSpeed NumOfCPU CPUSerialNumber IsPortable."},
      {{"OSType", "Memory"},
       "\"Memory\" is the title of a group, not a property",
       "Name its properties: TotalPhysicalMemory FreeMemory."},
      {{"guid", "time"},
       "\"time\" is one argument too many",
       "\"zebinfo guid --help\" shows how it is used."},
      {{"interfaces", "eth0"},
       "\"eth0\" is one argument too many",
       "\"zebinfo interfaces --help\" shows how it is used."},
      {{"local-address", "peer", "80", "surplus"},
       "\"surplus\" is one argument too many",
       "\"zebinfo local-address --help\" shows how it is used."},
      {{"keys", "General", "Network"},
       "\"Network\" is one argument too many",
       "\"zebinfo keys --help\" shows how it is used."},
      {{"resolve"}, "HOST is required", "\"zebinfo resolve --help\" shows how it is used."},
      {{"local-address", "peer"},
       "PORT is required",
       "\"zebinfo local-address --help\" shows how it is used."},
      {{"plugin-version"},
       "FILE is required",
       "\"zebinfo plugin-version --help\" shows how it is used."},
      {{"platform-match", "WRLX"},
       "LIST is required",
       "\"zebinfo platform-match --help\" shows how it is used."},
      {{"path", "a", "--base"},
       "--base needs a value",
       "\"zebinfo path --help\" shows how it is used."},
      {{"--watch"}, "--watch needs a value", "\"zebinfo --help\" shows how it is used."},
      {{"--watch", "1", "OSType", "--watch=2"}, "--watch is given more than once", "Give it once."},
      {{"path", "--base", "a", "b", "--base", "c"},
       "--base is given more than once",
       "Give it once."},
      {{"time", "--json=x"},
       "an option without a value was given one",
       "\"zebinfo time --help\" shows how it is used."},
      {{"OSType", "time"},
       "a command takes no property names and no --list",
       "Put them into a call of their own, without the command."},
      {{"--list", "time"},
       "a command takes no property names and no --list",
       "Put them into a call of their own, without the command."},
      {{"--list", "OSType"}, "--list takes no names", "\"zebinfo --list\" lists them all."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Everything(Zebinfo(row.arguments)),
              std::string("exit status 2\nzebinfo: ") + row.wrong + '\n' + row.advice + '\n')
        << ::testing::PrintToString(row.arguments);
  }
}

TEST(ZebinfoUsage, AControlCharacterInAWrongOptionIsNotPrinted) {
  EXPECT_THAT(Zebinfo({"--a\x1B[2J"}).err, HasSubstr("\"--a\\x1b[2J\"\n"));
}

TEST(ZebinfoUsage, APortThatIsEmptyOrHasASignOrABlankOrIsBeyondTheHighestIsRefused) {
  for (const char* const port : {"", "65536", "99999", "0065536", "100000000000000000000", "-1",
                                 "+80", " 80", " 99999", " -1"}) {
    EXPECT_EQ(Everything(Zebinfo({"local-address", "127.0.0.1", port})),
              std::string("exit status 2\nzebinfo: \"") + port +
                  "\" is no port\nGive a number up to 65535, or the name of a service.\n");
  }
  EXPECT_EQ(Zebinfo({"local-address", "127.0.0.1", "0"}).exit_status, 1);
}

// What zebinfo leaves behind when a shell has changed its standard streams.
CommandResult ZebinfoInShell(const std::string& script,
                             const std::vector<std::string>& arguments = {"--list"}) {
  return RunCommand(ZebinfoWordsInShell(script, arguments));
}

const std::string kSendItElsewhere = "Send it to a terminal, a pipe or a file that can take it.\n";

TEST(ZebinfoOutput, ThatAFullDeviceDoesNotTakeIsAnError) {
  EXPECT_EQ(Everything(ZebinfoInShell("exec \"$@\" >/dev/full")),
            "exit status 1\nzebinfo: cannot write the output: No space left on device\n" +
                kSendItElsewhere);
}

TEST(ZebinfoOutput, IntoAClosedStreamIsAnError) {
  EXPECT_EQ(
      Everything(ZebinfoInShell("exec \"$@\" >&-")),
      "exit status 1\nzebinfo: cannot write the output: Bad file descriptor\n" + kSendItElsewhere);
}

// A pipe of the smallest size whose writing end does not block, as another program can leave it.
class PipeThatDoesNotBlock {
 public:
  PipeThatDoesNotBlock() {
    if (pipe2(ends_.data(), O_CLOEXEC) != 0 || fcntl(ends_[1], F_SETFL, O_NONBLOCK) != 0) {
      throw std::runtime_error("there can be no such pipe");
    }
    capacity_ = fcntl(ends_[1], F_SETPIPE_SZ, 1);
  }
  ~PipeThatDoesNotBlock() { close(ends_[0]); }
  PipeThatDoesNotBlock(const PipeThatDoesNotBlock&) = delete;
  PipeThatDoesNotBlock& operator=(const PipeThatDoesNotBlock&) = delete;

  std::size_t capacity() const { return static_cast<std::size_t>(capacity_); }
  int writing_end() const { return ends_[1]; }
  // Leaves the writing to the program that has the end too.
  void CloseWritingEnd() const { close(ends_[1]); }
  void AwaitFull() const {
    for (int held = 0; held < capacity_;) {
      if (ioctl(ends_[0], FIONREAD, &held) != 0) throw std::runtime_error("FIONREAD failed");
      std::this_thread::yield();
    }
  }
  std::string ReadAll() const {
    std::string all;
    std::array<char, 4096> block{};
    for (ssize_t got = 0; (got = read(ends_[0], block.data(), block.size())) > 0;) {
      all.append(block.data(), static_cast<std::size_t>(got));
    }
    return all;
  }

 private:
  std::array<int, 2> ends_{};
  int capacity_ = 0;
};

TEST(ZebinfoOutput, WaitsForItsReaderWhereWritingDoesNot) {
  const std::string whole = Zebinfo({"keys"}).out;
  const PipeThatDoesNotBlock output;
  if (output.capacity() >= whole.size()) GTEST_SKIP() << "this system's pipes hold all of it";
  ChildProgram program(ZebinfoWords({"keys"}), output.writing_end());
  output.CloseWritingEnd();
  output.AwaitFull();
  const std::string seen = output.ReadAll();
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(seen, whole);
}

TEST(ZebinfoOutput, WhoseReaderHasGoneEndsItAsItEndsEveryFilter) {
  // The reader ends before zebinfo begins.
  const ScratchDir dir;
  const CommandResult result = RunCommand(
      ZebinfoWordsInShell("mkfifo \"$0\"; exec 3<>\"$0\" 4>\"$0\"; exec 3>&-; \"$@\" >&4; echo $?",
                          {"--list"}, dir / "fifo"));
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, std::to_string(128 + SIGPIPE) + "\n");
}

TEST(ZebinfoOutput, HelpAndVersionAreWrittenLikeTheRest) {
  for (const char* const option : {"--help", "--version"}) {
    EXPECT_EQ(ZebinfoInShell("exec \"$@\" >/dev/full", {option}).exit_status, 1) << option;
  }
}

TEST(ZebinfoOutput, ThatNobodyCanReadChangesNoExitStatus) {
  const CommandResult result = ZebinfoInShell("exec \"$@\" 2>&-", {"--jsn"});
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_EQ(result.out, "");
}

TEST(ZebinfoOutput, MessagesGoToStandardErrorAlone) {
  const CommandResult result = Zebinfo({"OSType", "weather", "--json"});
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, StartsWith("zebinfo: \"weather\" is neither"));
}

}  // namespace
}  // namespace zebcomn_test
