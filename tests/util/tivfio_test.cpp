#include "zebcomn/util/tivfio.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/handle.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::ReadFile;
using zebcomn_test::ScratchDir;

constexpr uint32_t kFailure = 0x80000008;

class TiFileTest : public ::testing::Test {
 protected:
  TiFileTest() { zebcomn_test::ClearErrorSlot(); }
  ~TiFileTest() override { EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_); }

  static TiFile* Open(const std::string& path, DWORD access, unsigned int disposition) {
    TiFile* file = nullptr;
    EXPECT_EQ(tiCreateFile(path.c_str(), static_cast<int>(access), 0, disposition, 0, &file), 0u);
    return file;
  }

  const int open_before_ = zebcomn_test::OpenDescriptorCount();
  ScratchDir scratch_;
};

TEST_F(TiFileTest, ObjectHoldsItsCallsAndAFileHandle) {
  TiFile* file = Open(scratch_ / "file", TIV_ACCESS_WRITE, TIV_CREATE_NEW);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->ops->close, &tiCloseFile);
  EXPECT_EQ(file->ops->read, &tiReadFile);
  EXPECT_EQ(file->ops->write, &tiWriteFile);
  EXPECT_EQ(file->ops->get_size, &tiGetFileSize);
  EXPECT_EQ(static_cast<_tivHandleObject_t*>(file->handle)->nType, TIV_HANDLE_FILE);
  EXPECT_EQ(file->ops->close(file), 0u);
}

TEST_F(TiFileTest, WhatIsWrittenIsReadBackThroughTheTable) {
  TiFile* file = Open(scratch_ / "file", TIV_ACCESS_READ_WRITE, TIV_CREATE_NEW);
  unsigned int done = 0;
  EXPECT_EQ(file->ops->write(file, "content", 7, &done), 0u);
  EXPECT_EQ(done, 7u);
  unsigned int size = 0;
  EXPECT_EQ(file->ops->get_size(file, &size), 0u);
  EXPECT_EQ(size, 7u);
  EXPECT_EQ(tivSetFilePointer(file->handle, 0, nullptr, 0), 0);
  std::array<char, 20> buffer{};
  EXPECT_EQ(file->ops->read(file, buffer.data(), 20, &done), 0u);
  EXPECT_EQ(done, 7u);
  EXPECT_STREQ(buffer.data(), "content");
  EXPECT_EQ(file->ops->close(file), 0u);
  EXPECT_EQ(ReadFile(scratch_ / "file"), "content");
}

TEST_F(TiFileTest, FileThatDoesNotOpenGivesNullAndFailure) {
  for (const std::string& path : {scratch_ / "absent", std::string()}) {
    TiFile other = {};
    TiFile* file = &other;
    EXPECT_EQ(tiCreateFile(path.c_str(), static_cast<int>(TIV_ACCESS_READ), 0, TIV_OPEN_EXISTING, 0,
                           &file),
              kFailure);
    EXPECT_EQ(file, nullptr);
  }
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(TiFileTest, ArgumentsAreThoseOfTheLayersCall) {
  const std::string path = scratch_.Write("file", "content");
  TiFile* file = nullptr;
  EXPECT_EQ(tiCreateFile(path.c_str(), 0x10000000, 0, TIV_OPEN_EXISTING, 0, &file), kFailure);
  EXPECT_EQ(nErrno, EINVAL);
  EXPECT_EQ(tiCreateFile(path.c_str(), static_cast<int>(TIV_ACCESS_READ), 0, 5, 0, &file),
            kFailure);
  EXPECT_EQ(tiCreateFile(nullptr, static_cast<int>(TIV_ACCESS_READ), 0, 3, 0, &file), kFailure);
  EXPECT_EQ(tiCreateFile(path.c_str(), static_cast<int>(TIV_ACCESS_READ), 7, TIV_OPEN_EXISTING,
                         TIV_FLAG_DELETE_ON_CLOSE, &file),
            0u);
  EXPECT_EQ(tiCloseFile(file), 0u);
  EXPECT_NE(access(path.c_str(), F_OK), 0) << "the file was to be deleted on close";
}

TEST_F(TiFileTest, NullOutPointerFails) {
  EXPECT_EQ(tiCreateFile("/", static_cast<int>(TIV_ACCESS_READ), 0, TIV_OPEN_EXISTING, 0, nullptr),
            kFailure);
}

TEST_F(TiFileTest, EndOfFileIsAFailureThatStoresZero) {
  TiFile* file = Open(scratch_.Write("file", "ab"), TIV_ACCESS_READ, TIV_OPEN_EXISTING);
  std::array<char, 20> buffer{};
  unsigned int done = 77;
  EXPECT_EQ(tiReadFile(file, buffer.data(), 20, &done), 0u);
  EXPECT_EQ(done, 2u);
  EXPECT_EQ(tiReadFile(file, buffer.data(), 20, &done), kFailure);
  EXPECT_EQ(done, 0u);
  EXPECT_EQ(tiCloseFile(file), 0u);
}

TEST_F(TiFileTest, FailedTransferLeavesTheCountAlone) {
  const std::string path = scratch_.Write("file", "ab");
  TiFile* reader = Open(path, TIV_ACCESS_READ, TIV_OPEN_EXISTING);
  TiFile* writer = Open(path, TIV_ACCESS_WRITE, TIV_OPEN_EXISTING);
  char byte = 0;
  unsigned int done = 77;
  EXPECT_EQ(tiWriteFile(reader, "x", 1, &done), kFailure);
  EXPECT_EQ(tiReadFile(writer, &byte, 1, &done), kFailure);
  EXPECT_EQ(done, 77u);
  EXPECT_EQ(tiCloseFile(reader), 0u);
  EXPECT_EQ(tiCloseFile(writer), 0u);
}

TEST_F(TiFileTest, SizeIsCutTo32BitsAndAllOnesCountsAsFailure) {
  const std::string path = scratch_.Write("file", "");
  TiFile* file = Open(path, TIV_ACCESS_READ, TIV_OPEN_EXISTING);
  unsigned int size = 77;
  ASSERT_EQ(truncate(path.c_str(), (off_t{1} << 32) + 3), 0);
  EXPECT_EQ(tiGetFileSize(file, &size), 0u);
  EXPECT_EQ(size, 3u);
  ASSERT_EQ(truncate(path.c_str(), (off_t{1} << 32) - 1), 0);
  EXPECT_EQ(tiGetFileSize(file, &size), kFailure);
  EXPECT_EQ(size, 0xFFFFFFFFu);
  EXPECT_EQ(tiCloseFile(file), 0u);
}

TEST_F(TiFileTest, NullArgumentsFailExceptForTheClose) {
  TiFile* file = Open(scratch_.Write("file", "ab"), TIV_ACCESS_READ_WRITE, TIV_OPEN_EXISTING);
  char byte = 0;
  unsigned int done = 77;
  EXPECT_EQ(tiReadFile(nullptr, &byte, 1, &done), kFailure);
  EXPECT_EQ(tiReadFile(file, &byte, 1, nullptr), kFailure);
  EXPECT_EQ(tiReadFile(file, nullptr, 1, &done), kFailure);
  EXPECT_EQ(tiWriteFile(nullptr, &byte, 1, &done), kFailure);
  EXPECT_EQ(tiWriteFile(file, &byte, 1, nullptr), kFailure);
  EXPECT_EQ(tiWriteFile(file, nullptr, 1, &done), kFailure);
  EXPECT_EQ(tiGetFileSize(nullptr, &done), kFailure);
  EXPECT_EQ(tiGetFileSize(file, nullptr), kFailure);
  EXPECT_EQ(done, 77u);
  EXPECT_EQ(tiCloseFile(nullptr), 0u);
  EXPECT_EQ(tiCloseFile(file), 0u);
  EXPECT_EQ(ReadFile(scratch_ / "file"), "ab");
}

BOOL FolderExists(std::string path) {
  return tiFolderExists(path.data());
}

TEST(FolderExists, OnlyDirectoriesAndLinksToThemExist) {
  zebcomn_test::ClearErrorSlot();
  const ScratchDir scratch;
  const std::string file = scratch.Write("file", "");
  ASSERT_EQ(symlink(scratch.path().c_str(), (scratch / "link").c_str()), 0);
  EXPECT_EQ(FolderExists(scratch.path()), TRUE);
  EXPECT_EQ(FolderExists(scratch / ""), TRUE) << "a slash at the end";
  EXPECT_EQ(FolderExists(scratch / "link"), TRUE);
  EXPECT_EQ(FolderExists("/"), TRUE);
  EXPECT_EQ(FolderExists(file), FALSE);
  EXPECT_EQ(FolderExists(file + "/"), FALSE);
  EXPECT_EQ(FolderExists(scratch / "absent"), FALSE);
  EXPECT_EQ(FolderExists(""), FALSE);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST(FolderExists, OneBackslashAtTheEndIsLeftOut) {
  const ScratchDir scratch;
  EXPECT_EQ(FolderExists(scratch.path() + "\\"), TRUE);
  EXPECT_EQ(FolderExists(scratch.path() + "\\\\"), FALSE);
  EXPECT_EQ(FolderExists(scratch.path() + "/\\"), TRUE);
  EXPECT_EQ(FolderExists(scratch.path() + "\\/"), FALSE);
  EXPECT_EQ(FolderExists("\\"), FALSE);
  EXPECT_EQ(FolderExists(scratch.Write("file", "") + "\\"), FALSE);
  ASSERT_EQ(mkdir((scratch / "back\\slash").c_str(), 0700), 0);
  EXPECT_EQ(FolderExists(scratch / "back\\slash"), TRUE);
}

TEST(FolderExists, PathIsCutAt259Bytes) {
  const ScratchDir scratch;
  std::string path = scratch.path() + "/";
  while (path.size() + 2 <= 259) path += "./";
  if (path.size() < 259) path += "/";
  EXPECT_EQ(FolderExists(path), TRUE);
  EXPECT_EQ(FolderExists(path + "absent"), TRUE) << "what follows byte 259 does not count";
  EXPECT_EQ(FolderExists(path + std::string(41, 'x')), TRUE);
  EXPECT_EQ(FolderExists(path.substr(0, 258) + "\\x"), TRUE) << "byte 259 is a backslash";
}

}  // namespace
