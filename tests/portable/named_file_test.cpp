#include "zebcomn/portable/named_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/fresh_process.h"
#include "tests/support/huge_text.h"
#include "tests/support/scratch_dir.h"

namespace {

using zebcomn_test::ClearErrorSlot;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::ReadFile;
using zebcomn_test::ScratchDir;

bool Exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

class NamedFileTest : public ::testing::Test {
 protected:
  NamedFileTest() { ClearErrorSlot(); }
  ~NamedFileTest() override { EXPECT_EQ(nErrno, kErrorLeftAlone); }

  ScratchDir scratch_;
};

TEST_F(NamedFileTest, TemporaryNameIsDirectoryPrefixAndSixCharacters) {
  const int open_before = zebcomn_test::OpenDescriptorCount();
  std::array<char, 512> name{};
  EXPECT_EQ(tivGetTempFileName(scratch_.path().c_str(), "pre", 7, name.data()), 7u);
  const std::string path(name.data());
  EXPECT_EQ(path.size(), (scratch_ / "preXXXXXX").size());
  EXPECT_EQ(path.substr(0, path.size() - 6), scratch_ / "pre");
  EXPECT_EQ(ReadFile(path), "") << "the empty file stays on disk";
  EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before);
}

// A process without a standard input is given its number for the next file.
TEST_F(NamedFileTest, DescriptorZeroIsGivenBackToo) {
  const std::string zero = zebcomn_test::RunInFreshProcess([this] {
    close(0);
    std::array<char, 512> name{};
    const UINT made = tivGetTempFileName(scratch_.path().c_str(), "pre", 7, name.data());
    return std::string(made == 7 && fcntl(0, F_GETFD) == -1 ? "free" : "taken");
  });
  EXPECT_EQ(zero, "free");
}

TEST_F(NamedFileTest, TemporaryNamesDiffer) {
  std::array<char, 512> first{};
  std::array<char, 512> second{};
  EXPECT_EQ(tivGetTempFileName(scratch_.path().c_str(), "x", 1, first.data()), 1u);
  EXPECT_EQ(tivGetTempFileName(scratch_.path().c_str(), "x", 1, second.data()), 1u);
  EXPECT_STRNE(first.data(), second.data());
}

TEST_F(NamedFileTest, UniqueNumberZeroGivesOneAndIsNoPartOfTheName) {
  std::array<char, 512> name{};
  EXPECT_EQ(tivGetTempFileName(scratch_.path().c_str(), nullptr, 0, name.data()), 1u);
  EXPECT_EQ(std::string(name.data()).size(), (scratch_ / "XXXXXX").size());
  EXPECT_EQ(tivGetTempFileName(scratch_.path().c_str(), "", 0xFFFFFFFF, name.data()), 0xFFFFFFFFu);
  EXPECT_EQ(std::string(name.data()).size(), (scratch_ / "XXXXXX").size());
}

TEST_F(NamedFileTest, TemporaryNameNeedsADirectoryThatExistsAndABuffer) {
  std::array<char, 512> name = {'u'};
  EXPECT_EQ(tivGetTempFileName(nullptr, "x", 1, name.data()), 0u);
  EXPECT_EQ(tivGetTempFileName(scratch_.path().c_str(), "x", 1, nullptr), 0u);
  EXPECT_EQ(tivGetTempFileName((scratch_ / "absent").c_str(), "x", 1, name.data()), 0u);
  EXPECT_STREQ(name.data(), "u");
}

TEST_F(NamedFileTest, TemporaryNameIsCopiedWithoutALimit) {
  std::string directory = scratch_.path();
  while (directory.size() < 600) directory += "/.";
  std::vector<char> name(directory.size() + 8);
  EXPECT_EQ(tivGetTempFileName(directory.c_str(), nullptr, 1, name.data()), 1u);
  EXPECT_EQ(std::string(name.data()).size(), directory.size() + 7);
}

TEST_F(NamedFileTest, TemporaryNameInTheEmptyDirectoryBeginsAtTheRoot) {
  std::array<char, 512> name{};
  const std::string prefix = (scratch_ / "pre").substr(1);
  EXPECT_EQ(tivGetTempFileName("", prefix.c_str(), 1, name.data()), 1u);
  EXPECT_EQ(std::string(name.data()).find(scratch_ / "pre"), 0u) << name.data();
  EXPECT_TRUE(Exists(name.data()));
}

TEST_F(NamedFileTest, CopyTakesTheOppositeFlagOfTheUtility) {
  const std::string source = scratch_.Write("source", "new");
  const std::string target = scratch_.Write("target", "old");
  for (const BOOL fail_if_exists : {1, 2, -1}) {
    EXPECT_EQ(tivCopyFile(source.c_str(), target.c_str(), fail_if_exists), FALSE);
    EXPECT_EQ(ReadFile(target), "old");
  }
  EXPECT_EQ(tivCopyFile(source.c_str(), target.c_str(), 0), TRUE);
  EXPECT_EQ(ReadFile(target), "new");
  EXPECT_EQ(tivCopyFile(source.c_str(), (scratch_ / "fresh").c_str(), 1), TRUE);
  EXPECT_EQ(ReadFile(scratch_ / "fresh"), "new");
}

TEST_F(NamedFileTest, CopyOfNullFails) {
  const std::string source = scratch_.Write("source", "new");
  EXPECT_EQ(tivCopyFile(nullptr, (scratch_ / "fresh").c_str(), 0), FALSE);
  EXPECT_EQ(tivCopyFile(source.c_str(), nullptr, 0), FALSE);
}

TEST_F(NamedFileTest, MoveRenamesAndReplaces) {
  const std::string source = scratch_.Write("source", "new");
  const std::string target = scratch_.Write("target", "old");
  EXPECT_EQ(tivMoveFile(source.c_str(), target.c_str()), TRUE);
  EXPECT_FALSE(Exists(source));
  EXPECT_EQ(ReadFile(target), "new");
}

TEST_F(NamedFileTest, MoveOfAnAbsentOrNullNameFails) {
  const std::string target = scratch_.Write("target", "old");
  EXPECT_EQ(tivMoveFile((scratch_ / "absent").c_str(), target.c_str()), FALSE);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(tivMoveFile(nullptr, target.c_str()), FALSE);
  EXPECT_EQ(tivMoveFile(target.c_str(), nullptr), FALSE);
  EXPECT_EQ(ReadFile(target), "old");
}

TEST_F(NamedFileTest, SettingAttributesIsAlwaysASuccessThatDoesNothing) {
  const std::string path = scratch_.Write("file", "text");
  EXPECT_EQ(tivSetFileAttributes(path.c_str(), 1), TRUE);
  EXPECT_EQ(tivSetFileAttributes((scratch_ / "absent").c_str(), 0xFFFFFFFF), TRUE);
  EXPECT_EQ(tivSetFileAttributes(nullptr, 0), TRUE);
  EXPECT_FALSE(Exists(scratch_ / "absent"));
}

TEST_F(NamedFileTest, FilesHaveNoVersionResource) {
  char data = 'u';
  UINT length = 77;
  void* value = &data;
  EXPECT_EQ(tivGetFileVersionInfo("/bin/sh", 0, 1, &data), FALSE);
  EXPECT_EQ(tivGetFileVersionInfo(nullptr, 0, 0, nullptr), FALSE);
  EXPECT_EQ(tivVerQueryValue(&data, "\\", &value, &length), FALSE);
  EXPECT_EQ(tivVerQueryValue(nullptr, nullptr, nullptr, nullptr), FALSE);
  EXPECT_EQ(data, 'u');
  EXPECT_EQ(length, 77u);
  EXPECT_EQ(value, &data);
}

TEST_F(NamedFileTest, ATemporaryNameThatNoTextTakesIsAFailure) {
  if (sizeof(void*) != 4) GTEST_SKIP() << "a text takes every name that there is in 64 bits";
  const zebcomn_test::HugeText text(zebcomn_test::kLongerThanAnyText);
  if (!text.IsMapped()) GTEST_SKIP() << "no room for it between what the process has mapped";
  char name[] = "old";
  EXPECT_NO_THROW(EXPECT_EQ(tivGetTempFileName(text.c_str(), nullptr, 1, name), 0u));
  EXPECT_STREQ(name, "old");
}

}  // namespace
