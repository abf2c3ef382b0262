// The example agent and its plug-in, from the start to the stop, as a service manager runs them:
// told by signals, watched through the system log.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/child_program.h"
#include "tests/support/command.h"
#include "tests/support/private_host.h"
#include "tests/support/scratch_dir.h"
#include "tests/support/system_log_receiver.h"

namespace {

using ::testing::MatchesRegex;
using zebcomn_test::ChildProgram;
using zebcomn_test::CommandResult;
using zebcomn_test::EmulatorWords;
using zebcomn_test::PrivateHost;
using zebcomn_test::RunCommand;
using zebcomn_test::RunInPrivateHost;
using zebcomn_test::RunTargetCommand;
using zebcomn_test::ScratchDir;
using zebcomn_test::SystemLogReceiver;
using zebcomn_test::WhyNoPrivateHost;

using Words = std::vector<std::string>;

/// A host with a name, and with a system log that the test reads.
class LoggedHost {
 public:
  explicit LoggedHost(PrivateHost& host) : receiver_(host) {
    host.SetNodeName("alpha");
    host.PutFile("/etc/hosts", "127.0.0.1 localhost alpha\n");
    host.PutFile("/etc/resolv.conf", "");
    host.PutFile("/etc/fstab", "none / none defaults 0 0\n");
  }

  /// Takes the next `count` lines off the log: the level and the text of each, and a line feed.
  std::string Lines(int count) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += WithoutDate(receiver_.Next());
    return lines;
  }
  /// Takes what is there, which should be nothing.
  std::string Rest() {
    std::string lines;
    for (const std::string& line : receiver_.Arrived()) lines += "(rest) " + WithoutDate(line);
    return lines;
  }

 private:
  static std::string WithoutDate(const std::string& line) {
    const size_t level_end = line.find('>');
    const size_t ident = line.find("[PELU]");
    if (level_end == std::string::npos || ident == std::string::npos) return "(odd) " + line + "\n";
    return line.substr(0, level_end + 1) + line.substr(ident) + "\n";
  }

  SystemLogReceiver receiver_;
};

/// The examples of this build, or those under the folder that ZEBCOMN_EXAMPLES_DIR names.
std::string ExampleFile(const std::string& name, const char* built) {
  const char* folder = std::getenv("ZEBCOMN_EXAMPLES_DIR");
  return folder == nullptr ? built : folder + ("/" + name);
}
std::string AgentFile() {
  return ExampleFile("agent/example_agent", EXAMPLE_AGENT);
}
std::string PlugInFile() {
  return ExampleFile("plugin/example_plugin.so", EXAMPLE_PLUGIN);
}

/// The words that run the agent for this target, after those of a checker, if any.
Words AgentWords(const Words& checker, const std::string& plug_in) {
  Words words = checker;
  for (const std::string& word : EmulatorWords()) words.push_back(word);
  words.push_back(AgentFile());
  words.push_back(plug_in);
  return words;
}

constexpr const char* kStarts =
    "<14>\\[PELU\\]: KZUAGENT4600WRLX \\{[-0-9A-F]+\\} starts\n"
    "<14>\\[PELU\\]: plug-in Example 1\\.2\\.3\\.4 loaded\n"
    "<14>\\[PELU\\]: catalogue of alpha: [1-9][0-9]* properties\n";
constexpr const char* kReloads =
    "<14>\\[PELU\\]: reloading\n"
    "<14>\\[PELU\\]: plug-in Example 1\\.2\\.3\\.4 loaded\n"
    "<14>\\[PELU\\]: catalogue of alpha: [1-9][0-9]* properties\n";
constexpr const char* kStops =
    "<14>\\[PELU\\]: Received signal to stop PELU\n"
    "<14>\\[PELU\\]: KZUAGENT4600WRLX stopped\n";

/// Starts the agent, reloads it twice and stops it: all that it logged, and its exit status.
std::string WholeLife(PrivateHost& host, const Words& checker, int stop_signal) {
  LoggedHost logged(host);
  ChildProgram agent(AgentWords(checker, PlugInFile()));
  std::string story = logged.Lines(3);
  agent.Send(SIGHUP);
  story += logged.Lines(3);
  agent.Send(SIGHUP);
  story += logged.Lines(3);
  agent.Send(stop_signal);
  story += logged.Lines(2);
  const int status = agent.Wait();
  story += logged.Rest();
  return story + "status " + std::to_string(status);
}

std::string ExpectedLife() {
  return std::string(kStarts) + kReloads + kReloads + kStops + "status 0";
}

class ExampleAgent : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  }
};

TEST_F(ExampleAgent, StartsReloadsOnHangupAndStopsOnTerm) {
  const std::string story =
      RunInPrivateHost([](PrivateHost& host) { return WholeLife(host, {}, SIGTERM); });
  EXPECT_THAT(story, MatchesRegex(ExpectedLife()));
}

TEST_F(ExampleAgent, StopsOnInterrupt) {
  const std::string story =
      RunInPrivateHost([](PrivateHost& host) { return WholeLife(host, {}, SIGINT); });
  EXPECT_THAT(story, MatchesRegex(ExpectedLife()));
}

TEST_F(ExampleAgent, StopAtOnceIsCleanToo) {
  const std::string story = RunInPrivateHost([](PrivateHost& host) {
    LoggedHost logged(host);
    ChildProgram agent(AgentWords({}, PlugInFile()));
    const std::string starts = logged.Lines(2);
    agent.Send(SIGTERM);
    const int status = agent.Wait();
    return starts.substr(0, 12) + " status " + std::to_string(status);
  });
  EXPECT_EQ(story, "<14>[PELU]:  status 0");
}

TEST_F(ExampleAgent, ReloadWithoutThePlugInGoesOnWithoutIt) {
  const ScratchDir scratch;
  const std::string plug_in = scratch / "plugin.so";
  std::filesystem::copy_file(PlugInFile(), plug_in);
  const std::string story = RunInPrivateHost([&plug_in](PrivateHost& host) {
    LoggedHost logged(host);
    // The loader leaves the record of a load that failed behind, as it is meant to.
    setenv("LSAN_OPTIONS", "suppressions=" LEAKS_MEANT ":print_suppressions=0", 1);
    ChildProgram agent(AgentWords({}, plug_in));
    std::string lines = logged.Lines(3);
    unlink(plug_in.c_str());
    agent.Send(SIGHUP);
    lines += logged.Lines(3);
    agent.Send(SIGTERM);
    lines += logged.Lines(2);
    const int status = agent.Wait();
    return lines + "status " + std::to_string(status);
  });
  EXPECT_THAT(story, MatchesRegex(std::string(kStarts) + "<14>\\[PELU\\]: reloading\n" +
                                  "<11>\\[PELU\\]: plug-in [^\n]*: .*No such file or directory\n" +
                                  "<14>\\[PELU\\]: catalogue of alpha: [1-9][0-9]* properties\n" +
                                  kStops + "status 0"));
}

TEST_F(ExampleAgent, PlugInForNoPlatformIsRefused) {
  const std::string story = RunInPrivateHost([](PrivateHost& host) {
    LoggedHost logged(host);
    const CommandResult result = RunTargetCommand({AgentFile(), PLUGIN_WITHOUT_TEXTS});
    std::string lines = logged.Lines(2);
    lines += logged.Rest();
    return lines + result.err + "status " + std::to_string(result.exit_status);
  });
  EXPECT_THAT(story, MatchesRegex("<14>\\[PELU\\]: KZUAGENT4600WRLX \\{[-0-9A-F]+\\} starts\n"
                                  "<11>\\[PELU\\]: plug-in [^\n]*: no support for WRLX:4:6:0\n"
                                  "[^\n]*example_agent: plug-in [^\n]*: no support for WRLX:4:6:0\n"
                                  "status 1"));
}

TEST_F(ExampleAgent, WithoutAPlugInItTellsWhoeverStartsIt) {
  const std::string story = RunInPrivateHost([](PrivateHost&) {
    // The loader leaves the record of a load that failed behind, as it is meant to.
    const CommandResult result =
        RunTargetCommand({AgentFile(), "/nowhere/plugin.so"},
                         {{"LSAN_OPTIONS", "suppressions=" LEAKS_MEANT ":print_suppressions=0"}});
    return result.out + result.err + "status " + std::to_string(result.exit_status);
  });
  EXPECT_THAT(story, MatchesRegex("[^\n]*example_agent: plug-in /nowhere/plugin.so: "
                                  ".*No such file or directory\nstatus 1"));
}

TEST_F(ExampleAgent, WithoutItsArgumentItTellsItsUse) {
  const CommandResult result = RunTargetCommand({AgentFile()});
  EXPECT_EQ(result.exit_status, 2);
  EXPECT_THAT(result.err, MatchesRegex("usage: .*example_agent PLUGIN\n"));
}

/// Why valgrind cannot check the agent here; empty when it can.
std::string WhyNoValgrind() {
  if (!EmulatorWords().empty()) return "valgrind checks native programs only";
#ifdef ZEBCOMN_UNDER_VALGRIND
  return "every agent of this build runs under valgrind";
#endif
  if (*SANITIZERS != '\0') return "valgrind cannot run a program built with sanitizers";
  const CommandResult probe = RunCommand({"valgrind", "--quiet", AgentFile()});
  if (probe.exit_status == 127) return "valgrind is not installed";
  if (probe.err.find("debuginfo reader") != std::string::npos) {
    return "this valgrind cannot read the debug information of this compiler";
  }
  return "";
}

TEST_F(ExampleAgent, UnderValgrindThereIsNoErrorAndNoLostBlock) {
  if (const std::string why = WhyNoValgrind(); !why.empty()) GTEST_SKIP() << why;
  const std::string story = RunInPrivateHost([](PrivateHost& host) {
    return WholeLife(host,
                     {"valgrind", "--quiet", "--error-exitcode=99", "--leak-check=full",
                      "--errors-for-leak-kinds=definite,indirect,possible",
                      std::string("--suppressions=") + VALGRIND_SUPPRESSIONS},
                     SIGTERM);
  });
  EXPECT_THAT(story, MatchesRegex(ExpectedLife()));
}

}  // namespace
