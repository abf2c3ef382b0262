#include "zebcomn/util/make_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "tests/support/error_slot.h"
#include "tests/support/fresh_process.h"
#include "tests/support/private_host.h"
#include "tests/support/scratch_dir.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::PrivateHost;
using zebcomn_test::RunInPrivateHost;
using zebcomn_test::ScratchDir;
using zebcomn_test::WhyNoPrivateHost;

constexpr uint32_t kFailure = 0x80000008;

bool IsDirectory(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

class MakeDirectoryTest : public ::testing::Test {
 protected:
  MakeDirectoryTest() { zebcomn_test::ClearErrorSlot(); }
  ~MakeDirectoryTest() override { EXPECT_EQ(nErrno, kErrorLeftAlone); }

  /// Makes a path by one of the two calls; the result is always the same.
  void Make(const std::string& path, bool wide) const {
    if (wide) {
      std::wstring text(path.begin(), path.end());
      EXPECT_EQ(tivmcomn_MakeRecursiveDirectoryW(text.data()), kFailure);
    } else {
      std::string text(path);
      EXPECT_EQ(tivmcomn_MakeRecursiveDirectoryA(text.data()), kFailure);
      EXPECT_EQ(text, path) << "the path is only read";
    }
  }

  ScratchDir scratch_;
};

TEST_F(MakeDirectoryTest, ResultIsTheFailureCodeWhetherOrNotAnythingIsMade) {
  for (const bool wide : {false, true}) {
    Make("", wide);
    Make("/", wide);
    Make("/proc/none/none/", wide);
    Make(scratch_ / "made/", wide);
  }
  EXPECT_TRUE(IsDirectory(scratch_ / "made"));
}

TEST_F(MakeDirectoryTest, NullPathFails) {
  EXPECT_EQ(tivmcomn_MakeRecursiveDirectoryA(nullptr), kFailure);
  EXPECT_EQ(tivmcomn_MakeRecursiveDirectoryW(nullptr), kFailure);
}

TEST_F(MakeDirectoryTest, DirectoriesBeforeASlashAreMadeAndTheLastNameIsNot) {
  for (const bool wide : {false, true}) {
    const std::string base = scratch_ / (wide ? "wide" : "narrow");
    Make(base + "/x/y/z.txt", wide);
    EXPECT_TRUE(IsDirectory(base + "/x/y"));
    EXPECT_NE(access((base + "/x/y/z.txt").c_str(), F_OK), 0);
  }
}

TEST_F(MakeDirectoryTest, PathThatEndsWithASlashIsMadeWhole) {
  for (const bool wide : {false, true}) {
    const std::string base = scratch_ / (wide ? "wide" : "narrow");
    Make(base + "/x/", wide);
    EXPECT_TRUE(IsDirectory(base + "/x"));
  }
}

TEST_F(MakeDirectoryTest, ExistingDirectoriesAndDoubleSlashesAreNoObstacle) {
  Make(scratch_ / "x/", false);
  Make(scratch_ / "x//y/../z/", false);
  EXPECT_TRUE(IsDirectory(scratch_ / "x/y"));
  EXPECT_TRUE(IsDirectory(scratch_ / "x/z"));
}

TEST_F(MakeDirectoryTest, NewDirectoriesHaveMode0700) {
  const mode_t mask = umask(0);
  Make(scratch_ / "x/", false);
  umask(mask);
  struct stat status = {};
  ASSERT_EQ(stat((scratch_ / "x").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700u);
}

TEST_F(MakeDirectoryTest, FileInTheWayStops) {
  scratch_.Write("x", "file");
  Make(scratch_ / "x/y/", false);
  EXPECT_EQ(zebcomn_test::ReadFile(scratch_ / "x"), "file");
}

TEST_F(MakeDirectoryTest, SlashesAtIndexesZeroToThreeMakeNothing) {
  const std::string found = zebcomn_test::RunInFreshProcess([this] {
    if (chdir(scratch_.path().c_str()) != 0) return std::string("no chdir");
    std::string result;
    for (std::string path : {"a/", "ab/", "abc/", "abcd/", "p/q/rest", "./e/", "./ef/"}) {
      tivmcomn_MakeRecursiveDirectoryA(path.data());
      result += IsDirectory(path) || IsDirectory("p/q") ? '1' : '0';
    }
    return result;
  });
  // "./ef/" has its slash at index 4.
  EXPECT_EQ(found, "0001001");
}

TEST_F(MakeDirectoryTest, FirstComponentOfThreeBytesIsMadeAndOfTwoIsNot) {
  if (const std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string found = RunInPrivateHost([](PrivateHost& host) {
    host.PutEmptyDirectory("/mnt");
    if (chroot("/mnt") != 0 || chdir("/") != 0) return std::string("no chroot");
    std::string result;
    for (std::string path : {"/opt/", "/op/", "/tmp/x/y/z.txt"}) {
      tivmcomn_MakeRecursiveDirectoryA(path.data());
    }
    for (const char* made : {"/opt", "/op", "/tmp", "/tmp/x", "/tmp/x/y", "/tmp/x/y/z.txt"}) {
      result += IsDirectory(made) ? '1' : '0';
    }
    return result;
  });
  EXPECT_EQ(found, "101110");
}

TEST_F(MakeDirectoryTest, PathIsFollowedForAsLongAsItFitsTheBuffer) {
  for (const bool wide : {false, true}) {
    std::string base = scratch_ / (wide ? "wide" : "narrow");
    while (base.size() < 240) base += "/.";
    base += base.size() == 240 ? "" : "/";
    // The slash after the last name stands at these indexes.
    for (const size_t index : {257u, 258u, 259u, 260u, 299u}) {
      const std::string path = base + "/" + std::string(index - base.size() - 1, 'd');
      ASSERT_EQ(path.size(), index);
      Make(path + "/", wide);
      EXPECT_EQ(IsDirectory(path), index <= 258) << index;
    }
  }
}

TEST_F(MakeDirectoryTest, NothingOfALongNameIsMadeInAnotherPlace) {
  Make(scratch_ / (std::string(250, 'd') + "/x/"), false);
  Make(scratch_ / (std::string(250, 'd') + "/x/"), true);
  EXPECT_EQ(rmdir(scratch_.path().c_str()), 0) << "the scratch directory is empty";
  ASSERT_EQ(mkdir(scratch_.path().c_str(), 0700), 0);
}

TEST_F(MakeDirectoryTest, WideCharactersKeepTheirLowEightBits) {
  std::wstring path;
  for (const char c : scratch_ / "") path += static_cast<wchar_t>(c);
  path += static_cast<wchar_t>(0x100 + 'a');
  path += L"b/";
  EXPECT_EQ(tivmcomn_MakeRecursiveDirectoryW(path.data()), kFailure);
  EXPECT_TRUE(IsDirectory(scratch_ / "ab"));
}

TEST_F(MakeDirectoryTest, WideCharacterThatNarrowsToASlashIsNoSeparator) {
  std::wstring path;
  for (const char c : scratch_ / "") path += static_cast<wchar_t>(c);
  path += L"x";
  path += static_cast<wchar_t>(0x100 + '/');
  path += L"y";
  EXPECT_EQ(tivmcomn_MakeRecursiveDirectoryW(path.data()), kFailure);
  EXPECT_FALSE(IsDirectory(scratch_ / "x"));
  // With a true separator after it, the directory is tried under its narrowed name.
  ASSERT_EQ(mkdir((scratch_ / "x").c_str(), 0700), 0);
  path += L"/";
  EXPECT_EQ(tivmcomn_MakeRecursiveDirectoryW(path.data()), kFailure);
  EXPECT_TRUE(IsDirectory(scratch_ / "x/y"));
}

}  // namespace
