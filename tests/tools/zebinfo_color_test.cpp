// Where the text of zebinfo has colours: on a terminal, unless somebody does not want them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tools/terminal.h"
#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const std::string kEscape = "\x1B[";

// What zebinfo shows at a terminal, with nothing but these variables in its environment.
std::string OnTerminal(const std::vector<std::string>& variables,
                       const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {"env", "-i"};
  command.insert(command.end(), variables.begin(), variables.end());
  for (const std::string& word : ZebinfoWords(arguments)) command.push_back(word);
  Terminal terminal(command);
  std::string shown = terminal.ReadAll();
  EXPECT_EQ(terminal.Wait(), 0);
  return shown;
}

TEST(ZebinfoColor, OfNamesAndUnknownValuesOnATerminal) {
  EXPECT_EQ(OnTerminal({"TERM=xterm"}, {"OSType", "CPUSerialNumber"}),
            "\x1B[36mOSType\x1B[0m           Linux\n"
            "\x1B[36mCPUSerialNumber\x1B[0m  \x1B[2mN/A\x1B[0m\n");
}

TEST(ZebinfoColor, OfTitlesAndHeadsOnATerminal) {
  EXPECT_THAT(OnTerminal({"TERM=xterm"}, {"keys", "SiteList"}),
              StartsWith("\x1B[1mSiteList\x1B[0m (policy, section_sitelist)\n  uiNumberOfSites"));
  if (std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const auto with_port = [](PrivateHost& host) {
    host.AddVeth("port0");
    host.Ip("addr add 192.0.2.7/24 dev port0");
  };
  EXPECT_THAT(ZebinfoOn(with_port, {"interfaces", "--color=always"}),
              StartsWith("\x1B[1mIndex\x1B[0m  \x1B[1mName\x1B[0m "));
}

TEST(ZebinfoColor, IsTheSameTextOtherwise) {
  std::string shown = OnTerminal({"TERM=xterm", "TZ=UTC0"}, {"keys"});
  EXPECT_THAT(shown, HasSubstr(kEscape));
  for (const char* const style : {"\x1B[0m", "\x1B[1m", "\x1B[2m", "\x1B[36m"}) {
    for (std::size_t at = 0; (at = shown.find(style, at)) != std::string::npos;) {
      shown.erase(at, std::string(style).size());
    }
  }
  EXPECT_EQ(shown, Zebinfo({"keys"}).out);
}

TEST(ZebinfoColor, IsNotOfABareValueNorOfJson) {
  EXPECT_EQ(OnTerminal({"TERM=xterm"}, {"CPUSerialNumber"}), "N/A\n");
  EXPECT_THAT(OnTerminal({"TERM=xterm"}, {"keys", "--json", "--color=always"}),
              Not(HasSubstr(kEscape)));
}

TEST(ZebinfoColor, IsNotWhereThereIsNoTerminal) {
  EXPECT_EQ(Zebinfo({"OSType", "IsPortable"}, {{"TERM", "xterm"}, {"NO_COLOR", ""}}).out,
            "OSType      Linux\nIsPortable  -1\n");
}

TEST(ZebinfoColor, IsNotWhereTheEnvironmentSaysSo) {
  const std::string plain = "OSType      Linux\nIsPortable  -1\n";
  EXPECT_EQ(OnTerminal({"TERM=xterm", "NO_COLOR=1"}, {"OSType", "IsPortable"}), plain);
  EXPECT_EQ(OnTerminal({"TERM=dumb"}, {"OSType", "IsPortable"}), plain);
  EXPECT_EQ(OnTerminal({"TERM=xterm"}, {"OSType", "IsPortable", "--color", "never"}), plain);
}

TEST(ZebinfoColor, AnEmptyNoColorMeansNothing) {
  EXPECT_THAT(OnTerminal({"TERM=xterm", "NO_COLOR="}, {"OSType", "IsPortable"}),
              HasSubstr(kEscape));
}

TEST(ZebinfoColor, AlwaysIsAlways) {
  EXPECT_THAT(Zebinfo({"OSType", "IsPortable", "--color=always"}, {{"NO_COLOR", "1"}}).out,
              HasSubstr(kEscape));
  EXPECT_THAT(Zebinfo({"--color", "always", "time"}, {{"TERM", "dumb"}}).out, HasSubstr(kEscape));
}

TEST(ZebinfoColor, AnotherChoiceIsRefused) {
  for (const char* const choice : {"blue", "", "ALWAYS"}) {
    EXPECT_EQ(Everything(Zebinfo({"--color", choice})),
              std::string("exit status 2\nzebinfo: \"") + choice +
                  "\" is no choice for --color\nChoose auto, always or never.\n");
  }
}

}  // namespace
}  // namespace zebcomn_test
