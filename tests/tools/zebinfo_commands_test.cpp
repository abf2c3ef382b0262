// The commands of zebinfo that need no host of their own: time, identity, paths and keys.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>

#include "tests/support/scratch_dir.h"
#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

TEST(ZebinfoTime, ShowsEveryFormOfNow) {
  EXPECT_THAT(Everything(Zebinfo({"time"}, {{"TZ", "XYZ-5:30"}})),
              MatchesRegex("Local time      [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\n"
                           "Local stamp     [0-9]{14}\n"
                           "UTC stamp       [0-9]{14}\n"
                           "Time zone       XYZ\n"
                           "Uptime seconds  [0-9]+\n"
                           "Tick count      [0-9]+\n"));
}

TEST(ZebinfoTime, AsJsonHasNumbersWhereTheyAreNumbers) {
  const json now = Members(Everything(Zebinfo({"time", "--json"})));
  EXPECT_TRUE(now.at("localTime").is_string());
  EXPECT_TRUE(now.at("localStamp").is_string());
  EXPECT_TRUE(now.at("utcStamp").is_string());
  EXPECT_EQ(now.at("timeZone"), "UTC");
  EXPECT_TRUE(now.at("uptimeSeconds").is_number_unsigned());
  EXPECT_TRUE(now.at("tickCount").is_number_unsigned());
}

TEST(ZebinfoTime, ReadsTheUptimeOfTheHost) {
  if (std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const auto known = [](PrivateHost& host) { host.PutFile("/proc/uptime", "86399.99 1.00\n"); };
  EXPECT_THAT(ZebinfoOn(known, {"time"}), HasSubstr("Uptime seconds  86399\n"));
  const auto unknown = [](PrivateHost& host) { host.PutFile("/proc/uptime", "2147483647.0 1\n"); };
  EXPECT_THAT(ZebinfoOn(unknown, {"time"}), HasSubstr("Uptime seconds  N/A\n"));
  EXPECT_TRUE(Members(ZebinfoOn(unknown, {"time", "--json"})).at("uptimeSeconds").is_null());
}

const std::string kGuid = "\\{[0-9A-F]{8}-[0-9A-F]{4}-1[0-9A-F]{3}-[89][0-9A-F]{3}-[0-9A-F]{12}\\}";

TEST(ZebinfoGuid, MakesANewOneEachTime) {
  const std::string first = Everything(Zebinfo({"guid"}));
  EXPECT_THAT(first, MatchesRegex(kGuid + "\n"));
  EXPECT_NE(Everything(Zebinfo({"guid"})), first);
  EXPECT_THAT(Members(Everything(Zebinfo({"guid", "--json"}))).at("guid").get<std::string>(),
              MatchesRegex(kGuid));
}

TEST(ZebinfoSoftwareId, IsTheAgents) {
  EXPECT_EQ(Everything(Zebinfo({"software-id"})), "KZUAGENT4600WRLX\n");
  EXPECT_EQ(Members(Everything(Zebinfo({"--json", "software-id"}))),
            json({{"softwareId", "KZUAGENT4600WRLX"}}));
}

std::string Module(const std::string& name) {
  return MODULE_FOLDER "/" + name + ".so";
}

TEST(ZebinfoPluginVersion, ShowsBothStamps) {
  EXPECT_EQ(Everything(Zebinfo({"plugin-version", Module("version_1_2_3_4")})),
            "Hexadecimal  0001000200030004\nDotted       1.2.3.4\n");
  EXPECT_EQ(Everything(Zebinfo({"plugin-version", Module("version_with_dllmain")})),
            "Hexadecimal  0005000600070008\nDotted       5.6.7.8\n");
  EXPECT_EQ(Members(Everything(Zebinfo({"plugin-version", "--json", Module("version_highest")}))),
            json({{"file", Module("version_highest")},
                  {"hexadecimal", "ffffffffffffffff"},
                  {"dotted", "65535.65535.65535.65535"}}));
}

TEST(ZebinfoPluginVersion, TellsWhyThereIsNone) {
  const ScratchDir dir;
  ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);
  const struct {
    std::string file;
    const char* reason;
  } rows[] = {
      {dir / "missing.so", "No such file or directory\nGive the path of a plug-in module.\n"},
      {dir.path(), "it is not a regular file\nGive the path of a plug-in module.\n"},
      {dir / "pipe", "it is not a regular file\nGive the path of a plug-in module.\n"},
      {Module("version_no_entry_point"),
       "it exports no ZUPLUGIN_GetVersion\n"
       "Give the path of a plug-in of the agent; this is another shared object.\n"},
      {Module("version_fails"),
       "its ZUPLUGIN_GetVersion reports a failure\nAsk the maker of the module.\n"},
      {Module("version_fails_negative"),
       "its ZUPLUGIN_GetVersion reports a failure\nAsk the maker of the module.\n"},
      {Module("version_refused"),
       "it cannot be loaded: dllmain returned false\n"
       "Give a shared object of this machine's kind whose own needs are met.\n"},
  };
  for (const auto& row : rows) {
    const std::string complaint =
        "exit status 1\nzebinfo: \"" + row.file + "\" has no version stamp: " + row.reason;
    EXPECT_EQ(Everything(Zebinfo({"plugin-version", row.file})), complaint);
    EXPECT_EQ(Everything(Zebinfo({"plugin-version", row.file, "--json"})), complaint);
  }
}

TEST(ZebinfoPluginVersion, PassesOnTheLoadersReason) {
  const ScratchDir dir;
  const std::string file = dir.Write("text.so", "no shared object");
  const CommandResult result = Zebinfo({"plugin-version", file});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.err, StartsWith("zebinfo: \"" + file +
                                     "\" has no version stamp: it cannot be loaded: " + file));
}

TEST(ZebinfoPluginVersion, ANameWithoutASlashIsAFileHere) {
  const ScratchDir dir;
  ASSERT_EQ(symlink(Module("version_1_2_3_4").c_str(), (dir / "libz.so").c_str()), 0);
  std::vector<std::string> command = {"sh", "-c", "cd \"$0\" && exec \"$@\"", dir.path()};
  for (const std::string& word : EmulatorWords()) command.push_back(word);
  command.insert(command.end(), {ZEBINFO, "plugin-version", "libz.so"});
  EXPECT_EQ(Everything(RunCommand(command)),
            "Hexadecimal  0001000200030004\nDotted       1.2.3.4\n");
}

TEST(ZebinfoPlatformMatch, SaysTheVerdictInWordsAndAsExitStatus) {
  const struct {
    const char* list;
    const char* words;
  } rows[] = {
      {"WRLX:4:0:0-4:9:9", "is supported by \"WRLX:4:0:0-4:9:9\"\n"},
      {"LINUX|WRLX", "is supported by \"LINUX|WRLX\"\n"},
      {"WRLX:5:0:0",
       "is not supported: \"WRLX:5:0:0\" lists the platform, but not its version\n"
       "exit status 3\n"},
      {"LINUX", "is not supported: \"LINUX\" does not list the platform\nexit status 4\n"},
      {"", "is not supported: \"\" does not list the platform\nexit status 4\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Everything(Zebinfo({"platform-match", "WRLX:4:6:0", row.list})),
              std::string("\"WRLX:4:6:0\" ") + row.words);
  }
}

TEST(ZebinfoPlatformMatch, AsJsonHasAVerdictAndTheSameExitStatus) {
  const struct {
    const char* list;
    const char* verdict;
    int exit_status;
  } rows[] = {{"WRLX", "supported", 0},
              {"WRLX:5:0:0", "version-not-supported", 3},
              {"LINUX", "platform-not-listed", 4}};
  for (const auto& row : rows) {
    const CommandResult result = Zebinfo({"platform-match", "WRLX:4:6:0", row.list, "--json"});
    EXPECT_EQ(result.exit_status, row.exit_status);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(Members(result.out),
              json({{"platform", "WRLX:4:6:0"}, {"list", row.list}, {"verdict", row.verdict}}));
  }
}

TEST(ZebinfoPlatformMatch, ATextOfWhichTheLibrarySeesOnlyTheBeginningIsRefused) {
  const std::string filler(255, 'f');
  const std::string fits = filler + "WRLX";  // 259 characters.
  EXPECT_EQ(Zebinfo({"platform-match", fits, "WRLX"}).exit_status, 0);
  EXPECT_EQ(Zebinfo({"platform-match", "WRLX", std::string(254, 'f') + "|WRLX"}).exit_status, 0);
  EXPECT_EQ(Zebinfo({"platform-match", " " + fits + " ", "W R L X"}).exit_status, 0);
  EXPECT_EQ(Everything(Zebinfo({"platform-match", "f" + fits, "WRLX"})),
            "exit status 2\nzebinfo: PLATFORM has more than 259 characters without its blanks\n"
            "The library looks at no more of it; shorten the name.\n");
  EXPECT_EQ(Everything(Zebinfo({"platform-match", "WRLX", filler + "|WRLX", "--json"})),
            "exit status 2\nzebinfo: LIST has more than 259 characters without its blanks\n"
            "The library looks at no more of it; ask for parts of the list.\n");
}

void Link(const std::string& target, const std::string& at) {
  if (symlink(target.c_str(), at.c_str()) != 0) throw std::runtime_error("symlink " + at);
}

TEST(ZebinfoPath, ShowsTheFlatFormAndTheFile) {
  const ScratchDir dir;
  const std::string file = dir.Write("sub/file", "");
  Link("sub/file", dir / "link");
  EXPECT_EQ(Everything(Zebinfo({"path", dir.path() + "/./sub/../link"})),
            "Flat  " + dir.path() + "/link\nFile  " + file + "\n");
  EXPECT_EQ(Everything(Zebinfo({"path", "../link", "--base", dir / "sub"})),
            "Flat  " + dir.path() + "/link\nFile  " + file + "\n");
  EXPECT_EQ(Members(Everything(Zebinfo({"path", "link", "--json", "--base", dir.path()}))),
            json({{"path", "link"}, {"flat", dir / "link"}, {"file", file}}));
}

TEST(ZebinfoPath, APathToNoFileStillShowsItsFlatForm) {
  const ScratchDir dir;
  const std::string file = dir.Write("file", "");
  Link("loop", dir / "loop");
  Link("nothing", dir / "dangling");
  ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);
  const struct {
    std::string path;
    std::string flat;
    const char* reason;
  } rows[] = {
      {dir / "missing", dir / "missing", "No such file or directory"},
      {dir / "dangling", dir / "dangling", "No such file or directory"},
      {dir.path(), dir.path(), "it is a directory"},
      {dir / "pipe", dir / "pipe", "it is not a regular file"},
      {file + "//", file + "/", "Not a directory"},
      {dir / "loop", dir / "loop", "Too many levels of symbolic links"},
      {"/etc/..", "", "it stands for the root directory"},
  };
  for (const auto& row : rows) {
    const std::string complaint = "exit status 1\nzebinfo: \"" + row.flat +
                                  "\" leads to no file: " + row.reason +
                                  "\nOnly a path to a regular file, or to a link to one, "
                                  "resolves.\n";
    const std::string flat_line = row.flat.empty() ? "Flat\n" : "Flat  " + row.flat + "\n";
    EXPECT_EQ(Everything(Zebinfo({"path", row.path})), flat_line + "File  none\n" + complaint);
    const CommandResult as_json = Zebinfo({"path", row.path, "--json"});
    EXPECT_EQ(as_json.exit_status, 1);
    EXPECT_EQ(Members(as_json.out),
              json({{"path", row.path}, {"flat", row.flat}, {"file", nullptr}}));
  }
}

// What zebinfo says to somebody who is not root.
std::string SaidToAnOrdinaryUser(const std::vector<std::string>& arguments) {
  std::vector<std::string> command;
  if (geteuid() == 0) command = {"setpriv", "--reuid=65534", "--clear-groups"};
  const std::vector<std::string> words = ZebinfoWords(arguments);
  command.insert(command.end(), words.begin(), words.end());
  return Everything(RunCommand(command));
}

class ZebinfoWithoutPermission : public ::testing::Test {
 protected:
  void SetUp() override {
    // Root may keep the build in a folder that nobody else can enter.
    const std::string said = SaidToAnOrdinaryUser({"--version"});
    if (!StartsWithVersion(said)) {
      GTEST_SKIP() << "an ordinary user cannot run the zebinfo of this build";
    }
    if (said.find("profiling:") != std::string::npos) {
      GTEST_SKIP() << "an ordinary user's zebinfo may not write its counts of lines, and says so";
    }
    ASSERT_EQ(chmod(dir_.path().c_str(), 0755), 0);
    dir_.Write("locked/file", "");
    ASSERT_EQ(chmod((dir_ / "locked").c_str(), 0), 0);
    dir_.Write("module.so", "");
    ASSERT_EQ(chmod((dir_ / "module.so").c_str(), 0), 0);
  }
  void TearDown() override { chmod((dir_ / "locked").c_str(), 0700); }

  static bool StartsWithVersion(const std::string& text) { return text.rfind("zebinfo ", 0) == 0; }

  ScratchDir dir_;
};

TEST_F(ZebinfoWithoutPermission, APathIsRefusedWithTheReason) {
  const std::string file = dir_ / "locked/file";
  EXPECT_EQ(SaidToAnOrdinaryUser({"path", file}),
            "Flat  " + file + "\nFile  none\nexit status 1\nzebinfo: \"" + file +
                "\" leads to no file: Permission denied\n"
                "Run it as a user who may read that path.\n");
}

TEST_F(ZebinfoWithoutPermission, AModuleIsRefusedWithTheReason) {
  for (const char* const name : {"locked/file", "module.so"}) {
    const std::string file = dir_ / name;
    EXPECT_EQ(SaidToAnOrdinaryUser({"plugin-version", file}),
              "exit status 1\nzebinfo: \"" + file +
                  "\" has no version stamp: Permission denied\n"
                  "Run it as a user who may read that path.\n");
  }
}

TEST(ZebinfoPath, AChainOfFiftyOneLinksIsTooLong) {
  const ScratchDir dir;
  dir.Write("0", "");
  for (int i = 1; i <= 51; ++i) Link(std::to_string(i - 1), dir / std::to_string(i));
  EXPECT_THAT(Everything(Zebinfo({"path", dir / "50"})), HasSubstr("File  " + (dir / "0")));
  const CommandResult result = Zebinfo({"path", dir / "51"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_THAT(result.err, HasSubstr("leads to no file: Too many levels of symbolic links\n"));
}

TEST(ZebinfoPath, ALinkThatTheSystemReadsOtherwiseIsNamed) {
  const ScratchDir dir;
  dir.Write("other/sub/here", "");
  dir.Write("other/file", "");
  Link("other/sub", dir / "alias");
  Link("alias/../file", dir / "link");
  ASSERT_EQ(access((dir / "link").c_str(), F_OK), 0) << "the system finds a file";
  EXPECT_EQ(Everything(Zebinfo({"path", dir / "link"})),
            "Flat  " + dir.path() + "/link\nFile  none\nexit status 1\nzebinfo: \"" + dir.path() +
                "/link\" leads to no file: a symbolic link is too long, or has \"..\" behind a "
                "directory that is a link\nThe library takes \"..\" out of a link's text; "
                "\"realpath\" shows where the system goes.\n");
}

TEST(ZebinfoPath, APathAboveTheRootDoesNotFlatten) {
  const std::string complaint =
      "exit status 1\nzebinfo: \"/../etc\" does not flatten: it climbs above the root\n"
      "Take a \"..\" out, or give another directory with --base.\n";
  EXPECT_EQ(Everything(Zebinfo({"path", "/../etc"})), complaint);
  EXPECT_EQ(Everything(Zebinfo({"path", "/../etc", "--json"})), complaint);
}

TEST(ZebinfoPath, ABaseAboveTheRootIsNamed) {
  const std::string complaint =
      "exit status 1\nzebinfo: \"/..\" does not flatten: it climbs above the root\n"
      "Give another directory with --base.\n";
  EXPECT_EQ(Everything(Zebinfo({"path", "etc", "--base", "/.."})), complaint);
  EXPECT_EQ(Everything(Zebinfo({"path", "/etc", "--base", "/..", "--json"})), complaint);
}

TEST(ZebinfoPath, BytesThatAreNoUtf8AreReplacedInJsonAlone) {
  const ScratchDir dir;
  const std::string file = dir.Write("a\xFFz", "");
  EXPECT_EQ(Everything(Zebinfo({"path", file})), "Flat  " + file + "\nFile  " + file + "\n");
  EXPECT_EQ(Members(Everything(Zebinfo({"path", file, "--json"}))).at("file"),
            dir / "a\xEF\xBF\xBDz");
}

TEST(ZebinfoKeys, ShowsOneSection) {
  EXPECT_EQ(Everything(Zebinfo({"keys", "AgentLogging"})),
            "AgentLogging (policy, section_logging)\n"
            "  bEnableLog        key_log_bEnableLog\n"
            "  bLimitLogSize     key_log_bLimitLogSize\n"
            "  nLogSizeLimit     key_log_nLogSizeLimit\n"
            "  bVerbose          key_log_bVerbose\n"
            "  bEnableRemoteLog  key_log_bEnableRemoteLog\n");
}

TEST(ZebinfoKeys, AsJsonHasEveryConstant) {
  const json sections = Members(Everything(Zebinfo({"keys", "--json"}))).at("sections");
  std::set<std::string> constants;
  for (const json& section : sections) {
    if (!section.at("constant").is_null()) constants.insert(section.at("constant"));
    for (const json& key : section.at("keys")) constants.insert(key.at("constant"));
  }
  EXPECT_EQ(constants.size(), 129u);
  EXPECT_EQ(sections.size(), 12u);
  EXPECT_EQ(sections.at(0).at("section"), "General");
  EXPECT_EQ(sections.at(0).at("keys").at(0),
            json({{"name", "EnforcePolicy"}, {"constant", "key_EnforcePolicy"}}));
  EXPECT_EQ(sections.at(11).at("section"), "Tasks");
  EXPECT_TRUE(sections.at(11).at("constant").is_null());
}

TEST(ZebinfoKeys, ASectionOfTwoStoresIsShownOfBoth) {
  const json sections = Members(Everything(Zebinfo({"keys", "General", "--json"}))).at("sections");
  ASSERT_EQ(sections.size(), 2u);
  EXPECT_EQ(sections.at(0).at("store"), "policy");
  EXPECT_EQ(sections.at(1).at("store"), "properties");
  const std::string text = Everything(Zebinfo({"keys", "General"}));
  EXPECT_THAT(text, StartsWith("General (policy, section_general)\n"));
  EXPECT_THAT(text, HasSubstr("\n\nGeneral (properties, props_section_general)\n"));
}

TEST(ZebinfoKeys, TheTaskSchedulersNamesStandTogether) {
  const std::string text = Everything(Zebinfo({"keys", "Tasks"}));
  EXPECT_THAT(text, StartsWith("Tasks (tasks)\n  DisplayName"));
  EXPECT_THAT(text, HasSubstr("\n  Task Dependencies      DependenciesSection\n"));
}

TEST(ZebinfoKeys, ASectionOfTheTaskSchedulerLeadsToAllOfItsNames) {
  for (const char* const name : {"Task", "Schedule", "Task Dependencies"}) {
    EXPECT_EQ(Everything(Zebinfo({"keys", name})),
              std::string("exit status 2\nzebinfo: \"") + name +
                  "\" is a section of the task scheduler, whose keys are not told apart by "
                  "section\n\"zebinfo keys Tasks\" shows them all.\n");
  }
  EXPECT_THAT(Zebinfo({"keys", "TaskName"}).err, HasSubstr("is no configuration section"));
}

TEST(ZebinfoKeys, AnUnknownSectionIsRefusedWithTheNearest) {
  EXPECT_EQ(Everything(Zebinfo({"keys", "Sitelist"})),
            "exit status 2\nzebinfo: \"Sitelist\" is no configuration section\n"
            "Did you mean \"SiteList\"? \"zebinfo keys\" shows every section.\n");
  EXPECT_EQ(Everything(Zebinfo({"keys", "weather", "--json"})),
            "exit status 2\nzebinfo: \"weather\" is no configuration section\n"
            "\"zebinfo keys\" shows every section.\n");
}

}  // namespace
}  // namespace zebcomn_test
