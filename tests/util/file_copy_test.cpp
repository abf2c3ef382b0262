#include "zebcomn/util/file_copy.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/fresh_process.h"
#include "tests/support/private_host.h"
#include "tests/support/scratch_dir.h"
#include "tests/util/same_number.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::ReadFile;
using zebcomn_test::ScratchDir;

BOOL Copy(std::string source, std::string destination, int overwrite = 1) {
  return tivmcomn_copy_file(source.data(), destination.data(), overwrite);
}

bool Exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

/// Bytes of every value, in no short period.
std::string Content(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 31 + i / 251) & 0xFF);
  return bytes;
}

class FileCopyTest : public ::testing::Test {
 protected:
  FileCopyTest() { zebcomn_test::ClearErrorSlot(); }
  ~FileCopyTest() override {
    EXPECT_EQ(nErrno, kErrorLeftAlone);
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_);
  }

  const int open_before_ = zebcomn_test::OpenDescriptorCount();
  ScratchDir scratch_;
};

TEST_F(FileCopyTest, CopiesEverySizeAroundABlockAndAStreamBuffer) {
  for (const size_t size : {0u, 1u, 511u, 512u, 513u, 1023u, 1024u, 1025u, 262143u, 262144u,
                            262145u, 262656u, 300000u, 524287u, 524288u, 524289u}) {
    const std::string source = scratch_.Write("source", Content(size));
    EXPECT_EQ(Copy(source, scratch_ / "copy"), TRUE) << size;
    EXPECT_TRUE(ReadFile(scratch_ / "copy") == Content(size)) << size;
    EXPECT_TRUE(ReadFile(source) == Content(size)) << size;
  }
}

TEST_F(FileCopyTest, ExistingDestinationIsNotTouchedWithoutOverwrite) {
  const std::string source = scratch_.Write("source", "new");
  for (const std::string& content : {std::string("old"), std::string()}) {
    const std::string destination = scratch_.Write("destination", content);
    EXPECT_EQ(Copy(source, destination, 0), FALSE);
    EXPECT_EQ(ReadFile(destination), content);
  }
}

TEST_F(FileCopyTest, ExistingDestinationIsReplacedWithOverwrite) {
  const std::string source = scratch_.Write("source", "new");
  const std::string destination = scratch_.Write("destination", "old and longer");
  for (const int overwrite : {1, 2, -1}) {
    EXPECT_EQ(Copy(source, destination, overwrite), TRUE);
    EXPECT_EQ(ReadFile(destination), "new");
  }
}

TEST_F(FileCopyTest, NothingOfTheOldDestinationIsLeftHoweverShortItWas) {
  const std::string source = scratch_.Write("source", "");
  const std::string destination = scratch_.Write("destination", "o");
  EXPECT_EQ(Copy(source, destination), TRUE);
  EXPECT_EQ(ReadFile(destination), "");
}

TEST_F(FileCopyTest, NewDestinationNeedsNoOverwrite) {
  EXPECT_EQ(Copy(scratch_.Write("source", "new"), scratch_ / "copy", 0), TRUE);
  EXPECT_EQ(ReadFile(scratch_ / "copy"), "new");
}

TEST_F(FileCopyTest, NewDestinationHasMode0666LessTheFileMask) {
  const std::string source = scratch_.Write("source", "new");
  const mode_t mask = umask(022);
  EXPECT_EQ(Copy(source, scratch_ / "copy"), TRUE);
  umask(mask);
  struct stat status = {};
  ASSERT_EQ(stat((scratch_ / "copy").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0644u);
}

TEST_F(FileCopyTest, DirectoriesToTheDestinationAreMade) {
  EXPECT_EQ(Copy(scratch_.Write("source", "new"), scratch_ / "a/b/copy"), TRUE);
  EXPECT_EQ(ReadFile(scratch_ / "a/b/copy"), "new");
}

TEST_F(FileCopyTest, NullPathsFail) {
  std::string path = scratch_.Write("source", "content");
  EXPECT_EQ(tivmcomn_copy_file(nullptr, path.data(), 1), FALSE);
  EXPECT_EQ(tivmcomn_copy_file(path.data(), nullptr, 1), FALSE);
  EXPECT_EQ(tivmcomn_copy_file(nullptr, nullptr, 1), FALSE);
  EXPECT_EQ(ReadFile(path), "content");
}

TEST_F(FileCopyTest, SourceThatCannotBeOpenedLeavesTheDestinationAsItWas) {
  const std::string destination = scratch_.Write("destination", "old");
  EXPECT_EQ(Copy(scratch_ / "absent", destination), FALSE);
  EXPECT_EQ(ReadFile(destination), "old");
  EXPECT_EQ(Copy(scratch_ / "absent", scratch_ / "folder/copy"), FALSE);
  EXPECT_FALSE(Exists(scratch_ / "folder")) << "no directory is made either";
}

TEST_F(FileCopyTest, SourceThatIsADirectoryLeavesTheDestinationAsItWas) {
  const std::string destination = scratch_.Write("destination", "old");
  EXPECT_EQ(Copy(scratch_.path(), destination), FALSE);
  EXPECT_EQ(ReadFile(destination), "old");
}

TEST_F(FileCopyTest, FileIsNotCopiedOntoItselfUnderAnyName) {
  const std::string source = scratch_.Write("source", "content");
  ASSERT_EQ(link(source.c_str(), (scratch_ / "hard").c_str()), 0);
  ASSERT_EQ(symlink("source", (scratch_ / "soft").c_str()), 0);
  for (const std::string& name :
       {source, scratch_ / "./source", scratch_ / "hard", scratch_ / "soft"}) {
    EXPECT_EQ(Copy(source, name), FALSE) << name;
    EXPECT_EQ(Copy(name, source), FALSE) << name;
    EXPECT_EQ(ReadFile(source), "content") << name;
  }
}

TEST_F(FileCopyTest, FileOfTheSameNumberInAnotherFileSystemIsAnother) {
  if (const std::string why = zebcomn_test::WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  const std::string result = zebcomn_test::RunInPrivateHost([](zebcomn_test::PrivateHost& host) {
    host.PutEmptyDirectory("/mnt");
    const auto write_old = [](const std::string& path) { zebcomn_test::WriteFile(path, "old"); };
    zebcomn_test::WriteFile("/mnt/source", "new");
    const std::string twin =
        zebcomn_test::EntryWithTheNumberOf("/mnt/source", "/mnt/twins", write_old);
    if (twin.empty()) return std::string("no twin");
    const BOOL copied = Copy("/mnt/source", twin);
    return std::to_string(copied) + " " + ReadFile(twin);
  });
  if (result == "no twin") GTEST_SKIP() << "file systems here do not count by themselves";
  EXPECT_EQ(result, "1 new");
}

TEST_F(FileCopyTest, PathThatLeadsBackThroughANewDirectoryDoesNotEmptyTheSource) {
  const std::string source = scratch_.Write("source", "content");
  EXPECT_EQ(Copy(source, scratch_ / "new/../source"), FALSE);
  EXPECT_EQ(ReadFile(source), "content");
}

TEST_F(FileCopyTest, DestinationThatIsADirectoryFails) {
  const std::string source = scratch_.Write("source", "content");
  ASSERT_EQ(mkdir((scratch_ / "folder").c_str(), 0700), 0);
  EXPECT_EQ(Copy(source, scratch_ / "folder"), FALSE);
  EXPECT_EQ(Copy(source, scratch_ / "source/below"), FALSE);
}

TEST_F(FileCopyTest, SourceAndDestinationWithoutPermissionFail) {
  ASSERT_EQ(chmod(scratch_.path().c_str(), 0777), 0);
  const std::string unreadable = scratch_.Write("unreadable", "secret");
  const std::string unwritable = scratch_.Write("unwritable", "old");
  const std::string readable = scratch_.Write("readable", "new");
  ASSERT_EQ(chmod(unreadable.c_str(), 0), 0);
  ASSERT_EQ(chmod(unwritable.c_str(), 0444), 0);
  ASSERT_EQ(chmod(readable.c_str(), 0444), 0);
  const std::string result = zebcomn_test::RunInFreshProcess([&] {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) return std::string("skip");
    return std::to_string(Copy(unreadable, scratch_ / "copy")) +
           std::to_string(Copy(readable, unwritable)) +
           std::to_string(Copy(readable, scratch_ / "copy"));
  });
  if (result == "skip") GTEST_SKIP() << "this root cannot become another user";
  EXPECT_EQ(result, "001");
  EXPECT_EQ(ReadFile(unwritable), "old");
}

TEST_F(FileCopyTest, DestinationThatTakesNothingFails) {
  struct stat status = {};
  if (stat("/dev/full", &status) != 0 || !S_ISCHR(status.st_mode)) {
    GTEST_SKIP() << "there is no /dev/full here";
  }
  // Less than a stream buffer fails at the last flush, more than one on the way.
  for (const size_t size : {1u, 512u, 500000u}) {
    EXPECT_EQ(Copy(scratch_.Write("source", Content(size)), "/dev/full"), FALSE) << size;
  }
}

TEST_F(FileCopyTest, SourceThatCannotBeReadFails) {
  // The first page of a process is never mapped, so that reading it is an error.
  EXPECT_EQ(Copy("/proc/self/mem", scratch_ / "copy"), FALSE);
  EXPECT_EQ(ReadFile(scratch_ / "copy"), "");
}

TEST_F(FileCopyTest, PartlyWrittenDestinationStays) {
  const std::string source = scratch_.Write("source", Content(500000));
  const std::string result = zebcomn_test::RunInFreshProcess([&] {
    signal(SIGXFSZ, SIG_IGN);
    if (!zebcomn_test::LimitFileSize(200000)) return std::string("no limit");
    return std::to_string(Copy(source, scratch_ / "copy"));
  });
  EXPECT_EQ(result, "0");
  EXPECT_TRUE(ReadFile(scratch_ / "copy") == Content(500000).substr(0, 200000));
}

TEST_F(FileCopyTest, PipeWithoutAWriterIsNotWaitedForWhenItIsInTheWay) {
  const std::string pipe = scratch_ / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Copy(scratch_.Write("source", "content"), pipe, 0), FALSE);
}

TEST_F(FileCopyTest, PipesAreReadAndWrittenAsTheyAre) {
  const std::string from = scratch_ / "from";
  const std::string to = scratch_ / "to";
  ASSERT_EQ(mkfifo(from.c_str(), 0600), 0);
  ASSERT_EQ(mkfifo(to.c_str(), 0600), 0);
  const std::string content = Content(300000);  // More than a pipe holds.
  std::string arrived;
  std::thread writer([&] { std::ofstream(from, std::ios::binary) << content; });
  std::thread reader([&] { arrived = ReadFile(to); });
  EXPECT_EQ(Copy(from, to), TRUE);
  writer.join();
  reader.join();
  EXPECT_TRUE(arrived == content) << arrived.size();
}

TEST_F(FileCopyTest, DestinationThatIsADanglingLinkIsMadeWhereTheLinkLeads) {
  ASSERT_EQ(symlink("target", (scratch_ / "link").c_str()), 0);
  EXPECT_EQ(Copy(scratch_.Write("source", "new"), scratch_ / "link", 0), TRUE);
  EXPECT_EQ(ReadFile(scratch_ / "target"), "new");
}

TEST_F(FileCopyTest, LongPathsAreCopied) {
  const std::string source = scratch_.Write("source", "new");
  for (const size_t length : {259u, 260u, 300u}) {
    std::string folder = scratch_.path();
    while (folder.size() + 7 <= length) folder += "/.";
    const std::string destination = folder + "/" + std::string(length - folder.size() - 1, 'n');
    ASSERT_EQ(destination.size(), length);
    EXPECT_EQ(Copy(source, destination), TRUE);
    EXPECT_EQ(ReadFile(destination), "new");
  }
}

}  // namespace
