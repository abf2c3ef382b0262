// The Linux collectors on files of the test's own.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/support/descriptors.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"

namespace sysprops = quenty_com::pelu::sysprops;

namespace {

using zebcomn_test::ScratchDir;

class OsCollector : public ::testing::Test {
 protected:
  int Collect(const std::string& platform, const std::string& release) {
    return zebcomn::CollectOs(dir_.Write("platform", platform).c_str(),
                              dir_.Write("release", release).c_str(), info_);
  }

  ScratchDir dir_;
  sysprops::OSInformation info_;
};

TEST_F(OsCollector, WritesTheFixedFieldsWithoutAnyFile) {
  info_.m_wstrPlatformID = info_.m_wstrOSType = info_.m_wstrOSPlatform = L"old";
  EXPECT_EQ(zebcomn::CollectOs((dir_ / "none").c_str(), (dir_ / "none").c_str(), info_), 0);
  EXPECT_EQ(info_.m_wstrPlatformID, L"WRLNX");
  EXPECT_EQ(info_.m_wstrOSType, L"Linux");
  EXPECT_EQ(info_.m_wstrOSPlatform, L"Embedded");
  EXPECT_EQ(info_.m_wstrOSBitMode, L"0");
  EXPECT_EQ(info_.m_wstrOSOEMId, L"Wind River");
  EXPECT_EQ(info_.m_wstrOSCsdVersion, L"0");
  EXPECT_EQ(info_.m_wstrOSVersion, L"N/A");
  EXPECT_EQ(info_.m_wstrOSBuildNum, L"N/A");
}

struct PlatformCase {
  std::string file;
  std::wstring platform;
};

TEST_F(OsCollector, PlatformIsTheFirstLineAsItStands) {
  const PlatformCase kCases[] = {
      {"Edge Router 2\nmore\n", L"Edge Router 2"},
      {"Edge Router 2", L"Edge Router 2"},
      {"", L"Embedded"},
      {"\nsecond\n", L"Embedded"},
      {" \n", L" "},
      {"  padded \t\n", L"  padded \t"},
      {"windows\r\n", L"windows\r"},
      {"\xC3\xA9tage\n", L"\u00e9tage"},
      {"cut\xFF rest\n", L"cut"},
      {"\xFF\n", L""},
      {std::string(5000, 'p') + "\n", std::wstring(5000, L'p')},
  };
  for (const PlatformCase& item : kCases) {
    Collect(item.file, "");
    EXPECT_EQ(info_.m_wstrOSPlatform, item.platform) << item.file;
  }
}

struct ReleaseCase {
  std::string file;
  int result;
  std::wstring version;
};

TEST_F(OsCollector, VersionIsTheWordAfterTheProductWords) {
  const ReleaseCase kCases[] = {
      {"Wind River Linux 3.0.3 standard\n", 1, L"3.0.3"},
      {"release: Wind River Linux 3.0.3 x", 1, L"3.0.3"},
      {"Wind River Linux\t5.0 more\n", 1, L"5.0"},
      {"Wind River Linux-6.0 more\n", 1, L"6.0"},
      {"Wind River Linux  7.0 more\n", 1, L""},
      {"Wind River Linux 4.1", 0, L"old"},
      {"Wind River Linux 4.1\n", 0, L"old"},
      {"Wind River Linux 2.0\nword\n", 0, L"old"},
      {"Wind River Linux 2.0\ntwo words\n", 1, L"2.0two"},
      {"Wind River Linux\n2.0 x\n", 1, L".0"},
      {"Wind River Linux", 0, L"old"},
      {"Wind River Linux\n", 0, L"old"},
      {"Wind River Linux ", 0, L"old"},
      {"Wind River\n Linux 8.0 x\n", 1, L"8.0"},
      {"wind river linux 3.0.3 standard\n", 0, L"old"},
      {"Wind River  Linux 3.0.3 standard\n", 0, L"old"},
      {"Wind River Linux 1.0 a Wind River Linux 2.0 b", 1, L"1.0"},
      {"", 0, L"old"},
      {"Wind River Linux \xC3\xA9 x", 1, L"\u00e9"},
      {std::string(9000, 'x') + "\nWind River Linux 9.0 x\n", 1, L"9.0"},
  };
  for (const ReleaseCase& item : kCases) {
    info_.m_wstrOSVersion = L"old";
    EXPECT_EQ(Collect("", item.file), item.result) << item.file;
    EXPECT_EQ(info_.m_wstrOSVersion, item.version) << item.file;
    EXPECT_EQ(info_.m_wstrPlatformID, L"WRLNX");
    EXPECT_EQ(info_.m_wstrOSCsdVersion, L"0");
  }
}

TEST_F(OsCollector, EndlessFilesEnd) {
  EXPECT_EQ(zebcomn::CollectOs("/dev/zero", "/dev/zero", info_), 0);
  EXPECT_EQ(info_.m_wstrOSPlatform, L"");
}

class CpuCollector : public ::testing::Test {
 protected:
  void Collect(const std::string& text) {
    EXPECT_EQ(zebcomn::CollectCpu(dir_.Write("cpuinfo", text).c_str(), info_), 1);
  }

  ScratchDir dir_;
  sysprops::CPUInformation info_;
};

TEST_F(CpuCollector, CountsEveryLineThatHoldsTheWordProcessor) {
  struct {
    std::string text;
    std::wstring count;
  } const kCases[] = {
      {"", L"0"},
      {"cpu : x\n", L"0"},
      {"processor\t: 0\nprocessor\t: 1\nprocessor\t: 2\nprocessor\t: 3\n", L"4"},
      {"processor\t: 0", L"1"},
      {"Processor\t: 0\n", L"0"},
      {"processor\t: 0\nmodel name\t: A fine processor\n", L"2"},
      {"# processors : 4\nprocessor 0: version = FF\n", L"2"},
      {"processor processor\n", L"1"},
  };
  for (const auto& item : kCases) {
    Collect(item.text);
    EXPECT_EQ(info_.m_wstrNumOfCPU, item.count) << item.text;
  }
}

TEST_F(CpuCollector, SpeedKeepsTheLeadingBlankOfItsValue) {
  Collect("processor\t: 0\nclock\t\t: 1333.333330MHz\n");
  EXPECT_EQ(info_.m_wstrCPUSpeed, L" 1333.333330MHz");
}

TEST_F(CpuCollector, LastLineWithModelOrMhzWins) {
  Collect(
      "model\t: 167\nmodel name\t:\tFirst: one\ncpu MHz\t: 1\nmodel name\t:  Second \ncpu MHz\t:2");
  EXPECT_EQ(info_.m_wstrCPUType, L"  Second ");
  EXPECT_EQ(info_.m_wstrCPUSpeed, L"2");
  Collect("model name\t: named\nmodel\t: 3\n");
  EXPECT_EQ(info_.m_wstrCPUType, L" 3");
}

TEST_F(CpuCollector, OneLineMayMeetAllThreeTests) {
  Collect("model name : some processor 1500MHz\n");
  EXPECT_EQ(info_.m_wstrNumOfCPU, L"1");
  EXPECT_EQ(info_.m_wstrCPUType, L" some processor 1500MHz");
  EXPECT_EQ(info_.m_wstrCPUSpeed, L" some processor 1500MHz");
}

TEST_F(CpuCollector, TestsAreCaseSensitive) {
  Collect("cpu mhz : 5\nModel : x\n");
  EXPECT_EQ(info_.m_wstrCPUSpeed, L"");
  EXPECT_EQ(info_.m_wstrCPUType, L"");
}

TEST_F(CpuCollector, LineWithoutColonGivesAnEmptyValue) {
  Collect("model : x\nmodel y\n");
  EXPECT_EQ(info_.m_wstrCPUType, L"");
}

TEST_F(CpuCollector, WritesPortableAndLeavesTheSerialNumber) {
  Collect("");
  EXPECT_EQ(info_.m_wstrIsPortable, L"-1");
  EXPECT_EQ(info_.m_wstrCPUSerialNumber, L"N/A");
}

TEST_F(CpuCollector, InvalidUtf8EndsTheModel) {
  Collect("model : ab\xFF\x63\n");
  EXPECT_EQ(info_.m_wstrCPUType, L" ab");
}

TEST_F(CpuCollector, LineThatDoesNotFitEndsTheReading) {
  Collect("processor : 0\nmodel : kept\n" + std::string(2048, 'x') +
          "\nprocessor : 1\nmodel : lost\n");
  EXPECT_EQ(info_.m_wstrNumOfCPU, L"1");
  EXPECT_EQ(info_.m_wstrCPUType, L" kept");
  Collect("model : kept\nmodel : " + std::string(2040, 'x') + "\n");
  EXPECT_EQ(info_.m_wstrCPUType, L" kept");
  Collect("model : kept\nmodel : " + std::string(2039, 'x') + "\n");
  EXPECT_EQ(info_.m_wstrCPUType, L" " + std::wstring(2039, L'x'));
}

TEST_F(CpuCollector, FileThatCannotBeReadGivesEmptyTextsAndZero) {
  for (const std::string& path : {dir_ / "none", dir_.path(), std::string("/dev/zero")}) {
    sysprops::CPUInformation info;
    EXPECT_EQ(zebcomn::CollectCpu(path.c_str(), info), 1);
    EXPECT_EQ(info.m_wstrCPUType, L"");
    EXPECT_EQ(info.m_wstrCPUSpeed, L"");
    EXPECT_EQ(info.m_wstrNumOfCPU, L"0");
    EXPECT_EQ(info.m_wstrIsPortable, L"-1");
  }
}

class MemoryCollector : public ::testing::Test {
 protected:
  void Collect(const std::string& text) {
    EXPECT_EQ(zebcomn::CollectMemory(dir_.Write("meminfo", text).c_str(), info_), 1);
  }

  ScratchDir dir_;
  sysprops::MemoryInformation info_;
};

TEST_F(MemoryCollector, GivesBytes) {
  Collect("MemTotal:        1031428 kB\nMemFree:           81234 kB\nMemAvailable: 5 kB\n");
  EXPECT_EQ(info_.m_wstrTotalPhysicalMemory, L"1056182272");
  EXPECT_EQ(info_.m_wstrFreeMemory, L"83183616");
}

TEST_F(MemoryCollector, MissingLinesGiveZero) {
  Collect("");
  EXPECT_EQ(info_.m_wstrTotalPhysicalMemory, L"0");
  EXPECT_EQ(info_.m_wstrFreeMemory, L"0");
  Collect("MemTotal : 5 kB\nmemfree: 7 kB\n");
  EXPECT_EQ(info_.m_wstrTotalPhysicalMemory, L"0");
  EXPECT_EQ(info_.m_wstrFreeMemory, L"0");
}

TEST_F(MemoryCollector, FreeNeedsNoColonAfterItsWordButTotalDoes) {
  Collect("MemTotalX: 5 kB\nMemFreeX: 7 kB\n");
  EXPECT_EQ(info_.m_wstrTotalPhysicalMemory, L"0");
  EXPECT_EQ(info_.m_wstrFreeMemory, L"7168");
}

TEST_F(MemoryCollector, LastLineWins) {
  Collect("MemTotal: 1 kB\nMemFree: 2 kB\nMemTotal: 3 kB\nMemFree: 4 kB");
  EXPECT_EQ(info_.m_wstrTotalPhysicalMemory, L"3072");
  EXPECT_EQ(info_.m_wstrFreeMemory, L"4096");
}

TEST_F(MemoryCollector, WordsMayStandBeforeTheKey) {
  Collect("Node 0 MemTotal:  10 kB\nNode 0 MemFree:   3 kB\n");
  EXPECT_EQ(info_.m_wstrTotalPhysicalMemory, L"10240");
  EXPECT_EQ(info_.m_wstrFreeMemory, L"3072");
}

TEST_F(MemoryCollector, SixCharactersAreDroppedBeforeTheConversion) {
  struct {
    std::string value;
    std::wstring bytes;
  } const kCases[] = {
      {" 1 2 kB", L"12288"}, {"1k2K3b4B5:6", L"126418944"},
      {"\t7 kB", L"7168"},   {"-3 kB", L"-3072"},
      {"+4", L"4096"},       {"08", L"8192"},
      {"0x10", L"0"},        {"12MB", L"12288"},
      {"text", L"0"},        {"", L"0"},
      {" : kKbB", L"0"},
  };
  for (const auto& item : kCases)
    EXPECT_EQ(zebcomn::MemoryBytes(item.value), item.bytes) << item.value;
}

TEST_F(MemoryCollector, NumberPastTheHostsLongStaysAtItsEnd) {
  const auto wraps = [](long kilobytes) {
    return std::to_wstring(
        static_cast<long long>(static_cast<unsigned long long>(kilobytes) * 1024));
  };
  EXPECT_EQ(zebcomn::MemoryBytes("99999999999999999999999"), wraps(LONG_MAX));
  EXPECT_EQ(zebcomn::MemoryBytes("-99999999999999999999999"), wraps(LONG_MIN));
}

TEST_F(MemoryCollector, LineThatDoesNotFitEndsTheReading) {
  Collect("MemTotal: 1 kB\n" + std::string(3000, 'x') + "\nMemTotal: 2 kB\nMemFree: 3 kB\n");
  EXPECT_EQ(info_.m_wstrTotalPhysicalMemory, L"1024");
  EXPECT_EQ(info_.m_wstrFreeMemory, L"0");
}

TEST_F(MemoryCollector, FileThatCannotBeReadGivesZero) {
  for (const std::string& path : {dir_ / "none", dir_.path(), std::string("/dev/zero")}) {
    sysprops::MemoryInformation info;
    EXPECT_EQ(zebcomn::CollectMemory(path.c_str(), info), 1);
    EXPECT_EQ(info.m_wstrTotalPhysicalMemory, L"0");
    EXPECT_EQ(info.m_wstrFreeMemory, L"0");
  }
}

TEST(Collectors, LeaveNoDescriptorOpen) {
  const ScratchDir dir;
  const std::string file = dir.Write("file", "/dev/x / ext2 defaults 0 0\n");
  const int before = zebcomn_test::OpenDescriptorCount();
  sysprops::OSInformation os;
  sysprops::CPUInformation cpu;
  sysprops::MemoryInformation memory;
  sysprops::DiskInformation disk;
  zebcomn::CollectOs(file.c_str(), file.c_str(), os);
  zebcomn::CollectCpu(file.c_str(), cpu);
  zebcomn::CollectMemory(file.c_str(), memory);
  zebcomn::CollectDisks(file.c_str(), disk);
  EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), before);
}

TEST(LanguageId, DependsOnTwoWordsAnywhereInTheValue) {
  struct {
    const char* lang;
    const wchar_t* id;
  } const kCases[] = {
      {nullptr, L"0409"},       {"", L"0409"},
      {"en_UK.UTF-8", L"0809"}, {"en_GB.UTF-8", L"0409"},
      {"ja_JP.eucJP", L"0411"}, {"ja_JP en_UK", L"0809"},
      {"en_UK ja_JP", L"0809"}, {"xxen_UKxx", L"0809"},
      {"ja_JPen_UK", L"0809"},  {"EN_UK", L"0409"},
      {"C", L"0409"},           {"de_DE.UTF-8", L"0409"},
  };
  for (const auto& item : kCases) {
    EXPECT_STREQ(zebcomn::LanguageId(item.lang), item.id) << (item.lang ? item.lang : "unset");
  }
}

TEST(UpdateTime, IsMonthDayYearAndTheTime) {
  std::tm time{};
  time.tm_year = 2024 - 1900;
  time.tm_mon = 2;
  time.tm_mday = 5;
  time.tm_hour = 7;
  time.tm_min = 8;
  time.tm_sec = 9;
  EXPECT_EQ(zebcomn::UpdateTime(time), L"03/05/2024 07:08:09");
  time.tm_year = 999 - 1900;
  time.tm_mon = 11;
  time.tm_hour = 23;
  EXPECT_EQ(zebcomn::UpdateTime(time), L"12/05/0999 23:08:09");
  time.tm_year = INT_MAX;
  EXPECT_EQ(zebcomn::UpdateTime(time), L"12/05/2147485547 23:08:09");
}

}  // namespace
