// The property catalogue as zebinfo prints it, on hosts that are made up file by file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "tests/tools/zebinfo.h"

namespace zebcomn_test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

const std::set<std::string> kNames = {"OSType",        "OSPlatform",
                                      "OSVersion",     "OSCsdVersion",
                                      "OSBuildNum",    "OSOEMId",
                                      "OSBitMode",     "PlatformID",
                                      "CPUType",       "CPUSpeed",
                                      "NumOfCPU",      "CPUSerialNumber",
                                      "IsPortable",    "TotalPhysicalMemory",
                                      "FreeMemory",    "TotalDiskSpace",
                                      "FreeDiskSpace", "NumberOfFileSystems",
                                      "ComputerName",  "DomainName",
                                      "IPHostName",    "IPAddress",
                                      "SubnetAddress", "SubnetMask",
                                      "NETAddress",    "IPXAddress",
                                      "UserName",      "TimeZone",
                                      "DefaultLangID", "LastUpdate"};

void MountTmpfs(const std::string& where, const std::string& size) {
  const CommandResult result =
      RunCommand({"mount", "-t", "tmpfs", "-o", "size=" + size, "none", where});
  if (result.exit_status != 0) throw std::runtime_error("mount on " + where + ": " + result.err);
}

void PutBoard(PrivateHost& host) {
  host.PutFile("/etc/wrs-release", "Wind River Linux 3.0.3 standard\n");
  host.PutFile("/etc/zebosplatform.conf", "Edge Router 2\n");
  host.PutFile("/proc/cpuinfo",
               "processor\t: 0\nclock\t\t: 1333.333330MHz\nmodel\t\t: MPC8548\n"
               "processor\t: 1\nclock\t\t: 1333.333330MHz\nmodel\t\t: MPC8548\n");
  host.PutFile("/proc/meminfo", "MemTotal:      1031428 kB\nMemFree:         81234 kB\n");
  host.PutFile("/etc/fstab",
               "/dev/sda1 /srv ext3 defaults 0 0\n"
               "/dev/sda2 /opt ext3 defaults 0 0\n"
               "server:/export /media nfs defaults 0 0\n");
  MountTmpfs("/srv", "64m");
  MountTmpfs("/opt", "8m");
  host.SetNodeName("board-7.example");
  host.SetNisDomain("plant.example");
  UseHostsFile(host, "192.0.2.7 board-7.plant.example board-7.example\n");
  host.AddVeth("port0");
  host.Ip("link set port0 address 02:1a:2b:3c:4d:5e");
  host.Ip("addr add 192.0.2.7/24 dev port0");
}

// Without the one value that no host can fix.
std::string WithoutTime(std::string text) {
  const std::string name = "LastUpdate           ";
  const std::size_t value = text.find(name);
  if (value != std::string::npos) text.erase(value + name.size(), 19);
  return text;
}

class ZebinfoCatalogue : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  }
};

TEST_F(ZebinfoCatalogue, IsPrintedInAlignedGroups) {
  EXPECT_EQ(WithoutTime(ZebinfoOn(PutBoard, {})),
            "OS\n"
            "  OSType               Linux\n"
            "  OSPlatform           Edge Router 2\n"
            "  OSVersion            3.0.3\n"
            "  OSCsdVersion         0\n"
            "  OSBuildNum           N/A\n"
            "  OSOEMId              Wind River\n"
            "  OSBitMode            0\n"
            "  PlatformID           WRLNX\n"
            "\n"
            "CPU\n"
            "  CPUType              MPC8548\n"
            "  CPUSpeed             1333.333330MHz\n"
            "  NumOfCPU             2\n"
            "  CPUSerialNumber      N/A\n"
            "  IsPortable           -1\n"
            "\n"
            "Memory\n"
            "  TotalPhysicalMemory  1056182272\n"
            "  FreeMemory           83183616\n"
            "\n"
            "Disks\n"
            "  TotalDiskSpace       72.00\n"
            "  FreeDiskSpace        72.00\n"
            "  NumberOfFileSystems  2\n"
            "\n"
            "  File system  Total MB  Free MB\n"
            "  /opt             8.00     8.00\n"
            "  /srv            64.00    64.00\n"
            "\n"
            "Network\n"
            "  ComputerName         board-7\n"
            "  DomainName           plant.example\n"
            "  IPHostName           board-7.plant.example\n"
            "  IPAddress            192.0.2.7\n"
            "  SubnetAddress        192.0.2.0\n"
            "  SubnetMask           255.255.255.0\n"
            "  NETAddress           021a2b3c4d5e\n"
            "  IPXAddress           N/A\n"
            "\n"
            "Misc\n"
            "  UserName             root\n"
            "  TimeZone             UTC\n"
            "  DefaultLangID        0409\n"
            "  LastUpdate           \n");
}

TEST_F(ZebinfoCatalogue, AsJsonHasEveryNameAndTheFileSystems) {
  const json catalogue = Members(ZebinfoOn(PutBoard, {"--json"}));
  std::set<std::string> names;
  for (const auto& [name, value] : catalogue.at("properties").items()) {
    names.insert(name);
    EXPECT_TRUE(value.is_string()) << name;
  }
  EXPECT_EQ(names, kNames);
  EXPECT_EQ(names.size(), 30u);
  EXPECT_EQ(catalogue["properties"]["CPUType"], " MPC8548");
  EXPECT_EQ(catalogue["properties"]["OSPlatform"], "Edge Router 2");
  EXPECT_THAT(catalogue["properties"]["LastUpdate"].get<std::string>(),
              MatchesRegex("[0-9]{2}/[0-9]{2}/[0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2}"));
  EXPECT_EQ(catalogue.at("fileSystems"),
            json::parse(R"([{"mountPoint": "/opt", "totalMB": "8.00", "freeMB": "8.00"},
                            {"mountPoint": "/srv", "totalMB": "64.00", "freeMB": "64.00"}])"));
  EXPECT_EQ(catalogue.size(), 2u);
}

TEST_F(ZebinfoCatalogue, OneNameGivesTheBareValue) {
  EXPECT_EQ(ZebinfoOn(PutBoard, {"IPAddress"}), "192.0.2.7\n");
  EXPECT_EQ(ZebinfoOn(PutBoard, {"CPUType"}), " MPC8548\n") << "with its leading blank";
  EXPECT_EQ(ZebinfoOn(PutBoard, {"NumberOfFileSystems"}), "2\n");
}

TEST_F(ZebinfoCatalogue, SeveralNamesGiveALineEach) {
  EXPECT_EQ(ZebinfoOn(PutBoard, {"OSType", "NumberOfFileSystems", "CPUType"}),
            "OSType               Linux\n"
            "NumberOfFileSystems  2\n"
            "CPUType              MPC8548\n");
}

TEST_F(ZebinfoCatalogue, NamesGiveAJsonObject) {
  EXPECT_EQ(Members(ZebinfoOn(PutBoard, {"--json", "CPUType"})),
            json({{"properties", {{"CPUType", " MPC8548"}}}}));
  EXPECT_EQ(Members(ZebinfoOn(PutBoard, {"OSType", "FreeMemory", "--json"})),
            json({{"properties", {{"OSType", "Linux"}, {"FreeMemory", "83183616"}}}}));
}

TEST_F(ZebinfoCatalogue, EachNameAloneGivesItsValueOfTheCatalogue) {
  const std::string differences = RunInPrivateHost([](PrivateHost& host) {
    PutBoard(host);
    const json properties = Members(Zebinfo({"--json"}).out).at("properties");
    std::vector<std::string> arguments(kNames.begin(), kNames.end());
    arguments.push_back("--json");
    const json values = Members(Zebinfo(arguments).out).at("properties");
    std::string text;
    for (const std::string& name : kNames) {
      if (name != "LastUpdate" && values.at(name) != properties.at(name)) text += name + " ";
    }
    return text;
  });
  EXPECT_EQ(differences, "");
}

TEST_F(ZebinfoCatalogue, FollowsTheEnvironment) {
  EXPECT_EQ(ZebinfoOn(PutBoard, {"DefaultLangID"}, {{"LANG", "ja_JP.UTF-8"}}), "0411\n");
  EXPECT_EQ(ZebinfoOn(PutBoard, {"TimeZone"}, {{"TZ", "XYZ-5:30"}}), "XYZ\n");
}

void PutOddMountPoints(PrivateHost& host) {
  PutBoard(host);
  // A blank, a new line and a letter of two bytes, in the escapes of the table.
  host.PutFile("/etc/fstab",
               "a /srv/a\\040b ext3 d 0 0\n"
               "b /srv/c\\012d ext3 d 0 0\n"
               "c /srv/\xC3\xA9 ext3 d 0 0\n");
  for (const char* const name : {"/srv/a b", "/srv/c\nd", "/srv/\xC3\xA9"}) {
    if (RunCommand({"mkdir", name}).exit_status != 0) throw std::runtime_error("mkdir");
  }
}

TEST_F(ZebinfoCatalogue, MountPointsWithOddCharactersKeepTheirLineAndColumn) {
  EXPECT_THAT(ZebinfoOn(PutOddMountPoints, {}),
              HasSubstr("  File system  Total MB  Free MB\n"
                        "  /srv/a b        64.00    64.00\n"
                        "  /srv/c\\x0ad     64.00    64.00\n"
                        "  /srv/\xC3\xA9          64.00    64.00\n"));
  const json file_systems = Members(ZebinfoOn(PutOddMountPoints, {"--json"})).at("fileSystems");
  EXPECT_EQ(file_systems.at(1).at("mountPoint"), "/srv/c\nd");
}

void PutNoFileSystems(PrivateHost& host) {
  PutBoard(host);
  host.PutFile("/etc/fstab", "");
}

TEST_F(ZebinfoCatalogue, WithoutFileSystemsHasNoTable) {
  const std::string text = ZebinfoOn(PutNoFileSystems, {});
  EXPECT_THAT(text, HasSubstr("  NumberOfFileSystems  0\n\nNetwork\n"));
  EXPECT_EQ(Members(ZebinfoOn(PutNoFileSystems, {"--json"})).at("fileSystems"), json::array());
}

void PutNothing(PrivateHost& host) {
  PutBoard(host);
  for (const char* const file : {"/etc/wrs-release", "/etc/zebosplatform.conf", "/etc/fstab"}) {
    host.RemoveEtcFile(file);
  }
  host.PutFile("/proc/cpuinfo", "");
  host.PutFile("/proc/meminfo", "");
  host.Ip("link set port0 down");
  host.Ip("link set port0-peer down");
}

TEST_F(ZebinfoCatalogue, OnAHostThatTellsNothingStillHasEveryName) {
  const json properties = Members(ZebinfoOn(PutNothing, {"--json"})).at("properties");
  EXPECT_EQ(properties.size(), 30u);
  for (const char* const name : {"OSVersion", "NumberOfFileSystems", "IPAddress"}) {
    EXPECT_EQ(properties.at(name), "N/A") << name;
  }
  EXPECT_EQ(properties.at("CPUType"), "");
  EXPECT_EQ(properties.at("TotalPhysicalMemory"), "0");
  EXPECT_EQ(ZebinfoOn(PutNothing, {"CPUType"}), "\n");
}

void PutBadText(PrivateHost& host) {
  PutBoard(host);
  host.PutFile("/etc/zebosplatform.conf", "Edge \xFF Router\n");
  // A form of five bytes, which the library takes and which is no Unicode character.
  host.PutFile("/proc/cpuinfo", "model: a\xF8\x88\x80\x80\x80z\n");
  host.PutFile("/etc/wrs-release", "Wind River Linux 3\x1B[31m\\x41 x\n");
}

TEST_F(ZebinfoCatalogue, WhatIsNoUnicodeIsReplacedAndTheJsonStaysValid) {
  const json properties = Members(ZebinfoOn(PutBadText, {"--json"})).at("properties");
  EXPECT_EQ(properties.at("OSPlatform"), "Edge ") << "the library ends the text there";
  EXPECT_EQ(properties.at("CPUType"), " a\xEF\xBF\xBDz");
  EXPECT_EQ(properties.at("OSVersion"), "3\x1B[31m\\x41");
  EXPECT_EQ(ZebinfoOn(PutBadText, {"CPUType"}), " a\xEF\xBF\xBDz\n");
}

TEST_F(ZebinfoCatalogue, ControlCharactersDoNotReachTheTerminal) {
  EXPECT_EQ(ZebinfoOn(PutBadText, {"OSVersion"}), "3\\x1b[31m\\x5cx41\n");
  EXPECT_THAT(ZebinfoOn(PutBadText, {}), Not(HasSubstr("\x1B")));
}

TEST(ZebinfoOnThisHost, PrintsValidJsonWithEveryName) {
  const CommandResult result = Zebinfo({"--json"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.err, "");
  const json catalogue = Members(result.out);
  std::set<std::string> names;
  for (const auto& item : catalogue.at("properties").items()) names.insert(item.key());
  EXPECT_EQ(names, kNames);
}

TEST(ZebinfoList, ShowsEveryNameBesideItsGroup) {
  const std::string list = Everything(Zebinfo({"--list"}));
  EXPECT_THAT(list, HasSubstr("OS       OSType\n"));
  EXPECT_THAT(list, HasSubstr("CPU      IsPortable\nMemory   TotalPhysicalMemory\n"));
  EXPECT_THAT(list, HasSubstr("Disks    NumberOfFileSystems\nNetwork  ComputerName\n"));
  EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 30);
}

TEST(ZebinfoList, AsJsonHasTheNamesOfEachGroup) {
  const json groups = Members(Everything(Zebinfo({"--list", "--json"}))).at("groups");
  std::set<std::string> names;
  for (const auto& group : groups) {
    for (const auto& name : group) names.insert(name.get<std::string>());
  }
  EXPECT_EQ(names, kNames);
  EXPECT_EQ(groups.at("Memory"), json({"TotalPhysicalMemory", "FreeMemory"}));
}

constexpr const char* kWhereTheNamesAre =
    "\"zebinfo --list\" lists the properties, \"zebinfo --help\" the commands.\n";

TEST(ZebinfoNames, AMisspeltOneIsRefusedWithTheNearest) {
  const struct {
    const char* word;
    const char* nearest;
  } rows[] = {{"cputype", "CPUType"},        {"IPAdress", "IPAddress"},
              {"FreMemory", "FreeMemory"},   {"interface", "interfaces"},
              {"softwareid", "software-id"}, {"Timezone", "TimeZone"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Everything(Zebinfo({row.word})),
              std::string("exit status 2\nzebinfo: \"") + row.word +
                  "\" is neither a property nor a command\nDid you mean \"" + row.nearest + "\"? " +
                  kWhereTheNamesAre);
  }
}

TEST(ZebinfoNames, AnUnknownOneIsRefusedAndNothingElseIsPrinted) {
  const std::string refusal =
      "exit status 2\nzebinfo: \"weather\" is neither a property nor a command\n";
  EXPECT_EQ(Everything(Zebinfo({"weather"})), refusal + kWhereTheNamesAre);
  EXPECT_EQ(Everything(Zebinfo({"OSType", "weather"})), refusal + kWhereTheNamesAre);
  EXPECT_EQ(Everything(Zebinfo({"OSType", "weather", "--json"})), refusal + kWhereTheNamesAre);
}

TEST(ZebinfoNames, NamesThatAreNoPropertyAreRefused) {
  for (const char* const name : {"SystemInfo", "FileSystem", "Free_Disk_Space_in_MB", "", "{}"}) {
    EXPECT_EQ(Zebinfo({name}).exit_status, 2) << name;
  }
}

TEST(ZebinfoNames, AControlCharacterInAWrongNameIsNotPrinted) {
  EXPECT_THAT(Zebinfo({"a\x1B[2Jb\n"}).err, HasSubstr("\"a\\x1b[2Jb\\x0a\" is neither"));
  // The one of two bytes that a terminal takes for "\x1B["; its neighbours are letters.
  EXPECT_THAT(Zebinfo({"a\xC2\x9B\xC2\xA0\xC3\x9Bz"}).err,
              HasSubstr("\"a\\xc2\\x9b\xC2\xA0\xC3\x9Bz\" is neither"));
}

}  // namespace
}  // namespace zebcomn_test
