// Directory names, the computer's name and the stubs. `uname` is replaced here; the shared library
// under test is the shipped one.
#include "zebcomn/portable/system_names.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/utsname.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "tests/support/private_host.h"

namespace {

const char* fake_node_name = nullptr;
bool uname_fails = false;

}  // namespace

extern "C" __attribute__((visibility("default"))) int uname(utsname* names) noexcept {
  if (uname_fails) {
    errno = EFAULT;
    return -1;
  }
  const auto real = reinterpret_cast<int (*)(utsname*)>(dlsym(RTLD_NEXT, "uname"));
  const int result = real(names);
  if (fake_node_name != nullptr) std::strcpy(names->nodename, fake_node_name);
  return result;
}

namespace {

using DirectoryCall = UINT (*)(char*, UINT);

struct DirectoryCase {
  const char* description;
  DirectoryCall call;
  const char* text;
};

const DirectoryCase kDirectories[] = {
    {"windows", tivGetWindowsDirectory, "/opt"},
    {"system", tivGetSystemDirectory, "/usr"},
};

TEST(DirectoryNames, ABufferTooSmallGetsTheSizeNeededAndIsLeftAlone) {
  for (const DirectoryCase& row : kDirectories) {
    for (const UINT length : {0u, 1u, 3u, 4u}) {
      char buffer[8] = "old";
      EXPECT_EQ(row.call(buffer, length), 5u) << row.description << length;
      EXPECT_STREQ(buffer, "old") << row.description << length;
    }
    EXPECT_EQ(row.call(nullptr, 0), 5u) << row.description;
  }
}

TEST(DirectoryNames, ABufferLargeEnoughGetsTheTextAndIsFilledWithNuls) {
  for (const DirectoryCase& row : kDirectories) {
    char buffer[12] = "xxxxxxxxxxx";
    EXPECT_EQ(row.call(buffer, 5), 4u) << row.description;
    EXPECT_EQ(std::string(buffer, 7), row.text + std::string("\0xx", 3)) << row.description;
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(row.call(buffer, 10), 4u) << row.description;
    EXPECT_EQ(std::string(buffer, 12), row.text + std::string(6, '\0') + "xx") << row.description;
  }
}

TEST(DirectoryNames, ANullBufferGivesZero) {
  for (const DirectoryCase& row : kDirectories) {
    EXPECT_EQ(row.call(nullptr, 10), 0u) << row.description;
  }
}

class ComputerName : public ::testing::Test {
 protected:
  void SetUp() override { fake_node_name = "alpha"; }
  void TearDown() override {
    fake_node_name = nullptr;
    uname_fails = false;
  }
};

TEST_F(ComputerName, IsTheNodeName) {
  char buffer[16];
  std::memset(buffer, 'x', sizeof buffer);
  DWORD size = sizeof buffer;
  EXPECT_EQ(tivGetComputerName(buffer, &size), TRUE);
  EXPECT_EQ(std::string(buffer, 7), std::string("alpha\0x", 7));
  EXPECT_EQ(size, 5u);
}

TEST_F(ComputerName, FitsABufferOfItsLengthAndOne) {
  char buffer[8] = "xxxxxxx";
  DWORD size = 6;
  EXPECT_EQ(tivGetComputerName(buffer, &size), TRUE);
  EXPECT_STREQ(buffer, "alpha");
  EXPECT_EQ(size, 5u);
}

TEST_F(ComputerName, LeavesABufferTooSmallAndItsSizeAlone) {
  for (const DWORD capacity : {0u, 1u, 5u}) {
    char buffer[8] = "old";
    DWORD size = capacity;
    EXPECT_EQ(tivGetComputerName(buffer, &size), FALSE) << capacity;
    EXPECT_EQ(size, capacity);
    EXPECT_STREQ(buffer, "old");
  }
}

TEST_F(ComputerName, AnEmptyNameNeedsOneByte) {
  fake_node_name = "";
  char buffer[4] = "xxx";
  DWORD size = 1;
  EXPECT_EQ(tivGetComputerName(buffer, &size), TRUE);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(size, 0u);
}

TEST_F(ComputerName, FailsWithANullArgumentOrANamelessHost) {
  char buffer[16] = "old";
  DWORD size = sizeof buffer;
  EXPECT_EQ(tivGetComputerName(nullptr, &size), FALSE);
  EXPECT_EQ(tivGetComputerName(buffer, nullptr), FALSE);
  uname_fails = true;
  EXPECT_EQ(tivGetComputerName(buffer, &size), FALSE);
  EXPECT_EQ(size, sizeof buffer);
  EXPECT_STREQ(buffer, "old");
}

TEST(RealComputerName, IsTheHostsOwn) {
  if (auto why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string name = zebcomn_test::RunInPrivateHost([](zebcomn_test::PrivateHost& host) {
    host.SetNodeName("board-7.example");
    char buffer[65] = {};
    DWORD size = sizeof buffer;
    return tivGetComputerName(buffer, &size) == TRUE ? std::string(buffer) : "failed";
  });
  EXPECT_EQ(name, "board-7.example");
}

TEST(Stubs, TranslateMessageIsAlwaysTrue) {
  EXPECT_EQ(tivTranslateMessage(nullptr), TRUE);
  EXPECT_EQ(tivTranslateMessage("message"), TRUE);
}

TEST(Stubs, GetModuleFileNameProducesNoName) {
  char buffer[8] = "old";
  EXPECT_EQ(tivGetModuleFileName(nullptr, buffer, sizeof buffer), 0u);
  EXPECT_STREQ(buffer, "old");
  EXPECT_EQ(tivGetModuleFileName(nullptr, nullptr, 0), 0u);
}

}  // namespace
