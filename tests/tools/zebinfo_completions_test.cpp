// What each shell offers after "zebinfo", with the completions of this build. The shells run here;
// the zebinfo that they ask for names is that of the target.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/scratch_dir.h"
#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using nlohmann::json;
using ::testing::IsSubsetOf;
using ::testing::IsSupersetOf;

struct Shell {
  const char* name;
  std::vector<std::string> offer;  // What is run, in front of the words.
};

const std::string kCompletions = COMPLETIONS_FOLDER "/";
const std::string kOffer = TEST_FOLDER "/offer.";

Words Properties() {
  Words names;
  const json groups = Members(Zebinfo({"--list", "--json"}).out).at("groups");
  for (const auto& group : groups) {
    for (const auto& name : group) names.insert(name.get<std::string>());
  }
  return names;
}

class ZebinfoCompletion : public ::testing::TestWithParam<Shell> {
 protected:
  void SetUp() override {
    if (RunCommand({"which", GetParam().name}).exit_status != 0) {
      GTEST_SKIP() << GetParam().name << " is not installed";
    }
    std::string script = "#!/bin/sh\nexec";
    for (const std::string& word : EmulatorWords()) script += " " + word;
    const std::string program = folder_.Write("zebinfo", script + " '" ZEBINFO "' \"$@\"\n");
    ASSERT_EQ(chmod(program.c_str(), 0755), 0);
  }

  // What the shell offers in place of the last word.
  Words Offered(const std::vector<std::string>& words) {
    std::vector<std::string> command = GetParam().offer;
    command.emplace_back("zebinfo");
    command.insert(command.end(), words.begin(), words.end());
    const CommandResult result =
        RunCommand(command, {{"PATH", folder_.path() + ":" + getenv("PATH")},
                             {"HOME", folder_.path()},
                             {"COMPDUMP", SharedFolder() / "compdump"},
                             {"LC_ALL", "C.UTF-8"},
                             {"TERM", "dumb"}});
    EXPECT_EQ(result.exit_status, 0) << ::testing::PrintToString(words);
    EXPECT_EQ(result.err, "") << ::testing::PrintToString(words);
    return Lines(result.out);
  }

  const ScratchDir& folder() const { return folder_; }

 private:
  static const ScratchDir& SharedFolder() {
    static const ScratchDir folder;
    return folder;
  }

  ScratchDir folder_;
};

TEST_P(ZebinfoCompletion, OffersTheCommandsAndThePropertiesFirst) {
  Words all = Properties();
  EXPECT_EQ(all.size(), 30u);
  all.insert(kCommands.begin(), kCommands.end());
  EXPECT_EQ(Offered({""}), all);
  EXPECT_EQ(Offered({"lo"}), Words({"local-address"}));
  EXPECT_EQ(Offered({"--json", "CPU"}), Words({"CPUType", "CPUSpeed", "CPUSerialNumber"}));
}

TEST_P(ZebinfoCompletion, OffersPropertiesAloneAfterAProperty) {
  EXPECT_EQ(Offered({"CPUType", "Num"}), Words({"NumOfCPU", "NumberOfFileSystems"}));
  EXPECT_EQ(Offered({"CPUType", "inter"}), Words());
}

TEST_P(ZebinfoCompletion, OffersEveryOptionOfTheHelp) {
  const Words options = OptionsOf(Zebinfo({"--help"}).out);
  EXPECT_THAT(options, IsSupersetOf({"-h", "--help", "--json", "--list", "--watch", "--version"}));
  EXPECT_EQ(Offered({"-"}), options);
}

TEST_P(ZebinfoCompletion, OffersEveryOptionOfACommandsHelp) {
  for (const std::string& command : kCommands) {
    const Words options = OptionsOf(Zebinfo({command, "--help"}).out);
    EXPECT_THAT(options, IsSupersetOf({"-h", "--help", "--json"}));
    EXPECT_EQ(Offered({command, "-"}), options) << command;
  }
}

TEST_P(ZebinfoCompletion, OffersTheValuesOfAnOptionAndGoesOnBehindThem) {
  EXPECT_EQ(Offered({"--color", ""}), Words({"auto", "always", "never"}));
  EXPECT_EQ(Offered({"time", "--color", "n"}), Words({"never"}));
  EXPECT_EQ(Offered({"--watch", "2", "--color", "auto", "inter"}), Words({"interfaces"}));
  EXPECT_EQ(Offered({"path", "--base", "/", "--co"}), Words({"--color"}));
}

TEST_P(ZebinfoCompletion, OffersTheSectionsOfTheConfiguration) {
  EXPECT_EQ(Offered({"keys", "S"}), Words({"SiteList"}));
  EXPECT_EQ(Offered({"keys", "Agent"}),
            Words({"AgentEvents", "AgentListenServer", "AgentLogging"}));
}

TEST_P(ZebinfoCompletion, OffersFilesAndFoldersWhereTheyAreMeant) {
  folder().Write("there/module.so", "");
  folder().Write("there/sub/file", "");
  const std::string there = folder() / "there/";
  const auto names = [&](const std::vector<std::string>& words) {
    Words offered;
    for (std::string path : Offered(words)) {
      if (path.back() == '/') path.pop_back();
      offered.insert(path.substr(path.rfind('/') + 1));
    }
    return offered;
  };
  EXPECT_EQ(names({"plugin-version", there}), Words({"module.so", "sub"}));
  EXPECT_EQ(names({"path", there}), Words({"module.so", "sub"}));
  EXPECT_EQ(names({"path", "a", "--base", there}), Words({"sub"}));
}

TEST_P(ZebinfoCompletion, OffersNothingWhereNothingIsMeant) {
  // Some shells offer the options where there is nothing else.
  const Words options = {"-h", "--help", "--json", "--color"};
  EXPECT_THAT(Offered({"guid", ""}), IsSubsetOf(options));
  EXPECT_THAT(Offered({"keys", "SiteList", ""}), IsSubsetOf(options));
  EXPECT_EQ(Offered({"time", "CPU"}), Words());
}

INSTANTIATE_TEST_SUITE_P(
    EachShell, ZebinfoCompletion,
    ::testing::Values(
        Shell{"bash", {"bash", "--norc", kOffer + "bash", kCompletions + "zebinfo.bash"}},
        Shell{"zsh", {"zsh", "-f", kOffer + "zsh", kCompletions + "_zebinfo"}},
        Shell{"fish", {"fish", "--no-config", kOffer + "fish", kCompletions + "zebinfo.fish"}}),
    [](const auto& shell) { return std::string(shell.param.name); });

}  // namespace
}  // namespace zebcomn_test
