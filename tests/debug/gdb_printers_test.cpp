// What gdb shows of the library's objects: the session of docs/debugging.md, repeated.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/command.h"
#include "tests/support/scratch_dir.h"

namespace zebcomn_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const std::string kPrompt = "(gdb) ";

struct Exchange {
  std::string command;
  std::string answer;
};

// The session of the page: each line behind the prompt with the lines that follow it.
std::vector<Exchange> SessionOfThePage() {
  std::istringstream page(ReadFile(DEBUGGING_PAGE));
  std::vector<Exchange> session;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    const bool is_command = line.rfind(kPrompt, 0) == 0;
    inside = (inside || is_command) && line != "```";
    if (is_command) {
      session.push_back({line.substr(kPrompt.size()), ""});
    } else if (inside) {
      session.back().answer += line + '\n';
    }
  }
  return session;
}

// Without what differs from run to run: addresses, the kernel's numbers of threads, and the
// descriptor, which depends on those that the test was started with.
std::string Comparable(const std::string& text) {
  const std::string addresses = std::regex_replace(text, std::regex("0x[0-9a-f]{2,}"), "0xADDRESS");
  const std::string threads = std::regex_replace(addresses, std::regex("LWP [0-9]+"), "LWP N");
  return std::regex_replace(threads, std::regex("descriptor [0-9]+"), "descriptor N");
}

using Words = std::vector<std::string>;

// What a gdb without anybody's settings says to these commands, given its options and a program.
CommandResult Gdb(const Words& options, const Words& commands) {
  Words words = {"gdb", "--batch", "-nx", "-q"};
  words.insert(words.end(), options.begin(), options.end());
  for (const std::string& command : commands) {
    words.emplace_back("-ex");
    words.push_back(command);
  }
  words.emplace_back(DEBUGGED_PROGRAM);
  return RunCommand(words, {{"DEBUGINFOD_URLS", ""}});
}

// A command whose answer stands between marks.
Words Marked(const std::vector<Exchange>& session) {
  Words commands;
  for (const Exchange& exchange : session) {
    commands.emplace_back("echo \\n@@\\n");
    commands.push_back(exchange.command);
  }
  commands.emplace_back("echo \\n@@\\n");
  return commands;
}

Words Answers(const std::string& text) {
  const std::string mark = "\n@@\n";
  Words answers;
  std::size_t begin = text.find(mark);
  while (begin != std::string::npos) {
    begin += mark.size();
    const std::size_t end = text.find(mark, begin - 1);
    if (end == std::string::npos) break;
    answers.push_back(end < begin ? "" : text.substr(begin, end - begin));
    begin = end;
  }
  return answers;
}

std::string WhyNoGdb() {
  if (!EmulatorWords().empty()) return "gdb debugs programs of this machine only";
  if (RunCommand({"which", "gdb"}).exit_status != 0) return "gdb is not installed";
  const CommandResult trial = Gdb({}, {"run"});
  if (trial.out.find("exited") != std::string::npos) return "";
  return "gdb may not run a program here: " + trial.err;
}

class GdbPrinters : public ::testing::Test {
 protected:
  void SetUp() override {
    static const std::string why_not = WhyNoGdb();
    if (!why_not.empty()) GTEST_SKIP() << why_not;
  }

  static void ExpectSession(const Words& options) {
    const std::vector<Exchange> session = SessionOfThePage();
    ASSERT_GE(session.size(), 10u);
    const CommandResult result = Gdb(options, Marked(session));
    const Words answers = Answers(result.out);
    ASSERT_EQ(answers.size(), session.size()) << result.out << result.err;
    for (std::size_t i = 0; i < session.size(); ++i) {
      if (session[i].answer.empty()) continue;
      EXPECT_EQ(Comparable(answers[i]), Comparable(session[i].answer)) << session[i].command;
    }
  }
};

TEST_F(GdbPrinters, AreLoadedFromTheBuildFolderAndShowWhatThePageSays) {
  ExpectSession({"-iex", "add-auto-load-safe-path " LIBRARY_FOLDER});
}

TEST_F(GdbPrinters, AreLoadedFromAnInstallationAndShowWhatThePageSays) {
  const ScratchDir prefix;
  const CommandResult installed =
      RunCommand({CMAKE_PROGRAM, "--install", BUILD_FOLDER, "--prefix", prefix.path()});
  ASSERT_EQ(installed.exit_status, 0) << installed.err;
  const std::string scripts = prefix / "share/gdb/auto-load";
  ExpectSession({"-iex", "add-auto-load-scripts-directory " + scripts, "-iex",
                 "add-auto-load-safe-path " + scripts, "-iex",
                 "set environment LD_LIBRARY_PATH " + (prefix / "lib")});
}

TEST_F(GdbPrinters, AreNotLoadedFromAPlaceThatIsNotTrusted) {
  const CommandResult result = Gdb({"-iex", "set auto-load safe-path /nowhere"},
                                   {"break LookAt", "run", "up", "print event"});
  EXPECT_THAT(result.out, Not(HasSubstr("not signalled")));
}

TEST_F(GdbPrinters, SurviveWhatIsNoHandleAndNoList) {
  const CommandResult result = Gdb(
      {"-iex", "add-auto-load-safe-path " LIBRARY_FOLDER},
      {"break LookAt", "run", "up", "print (HANDLE)8", "print (HANDLE)-1", "print (HANDLE)lock",
       "set var queue->head.next = (tiLL_element_t*)8", "print queue->head",
       "set var tasks[0].link.next = &tasks[0].link", "set var queue->head.next = &tasks[0].link",
       "zebcomn-elements 5", "zebcomn-elements", "print queue->head"});
  EXPECT_THAT(result.out, HasSubstr("= 0x8 no handle record\n"));
  EXPECT_THAT(result.out, HasSubstr("ff no handle\n"));
  EXPECT_THAT(result.out, HasSubstr("no handle record\n"));
  EXPECT_THAT(result.out, HasSubstr("list of 1 element, then a broken link = {0x8}"));
  EXPECT_THAT(result.err, HasSubstr("5 is no list"));
  EXPECT_THAT(result.err, HasSubstr("usage: zebcomn-elements LIST [TYPE]"));
  EXPECT_THAT(result.out, HasSubstr("list of 200 elements or more = {"));
}

}  // namespace
}  // namespace zebcomn_test
