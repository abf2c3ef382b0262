// What the file helpers leave behind when a call underneath them fails.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/failing_call.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/util/disk_space.h"
#include "zebcomn/util/file_copy.h"
#include "zebcomn/util/find_files.h"
#include "zebcomn/util/tivfio.h"
#include "zebcomn/util/user_name.h"

namespace {

using zebcomn_test::FailingCall;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::ReadFile;
using zebcomn_test::ScratchDir;

constexpr uint32_t kFailure = 0x80000008;

class FileHelpersFailuresTest : public ::testing::Test {
 protected:
  FileHelpersFailuresTest() { zebcomn_test::ClearErrorSlot(); }
  ~FileHelpersFailuresTest() override {
    EXPECT_EQ(nErrno, kErrorLeftAlone);
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_);
  }

  const int open_before_ = zebcomn_test::OpenDescriptorCount();
  ScratchDir scratch_;
};

using CopyFailuresTest = FileHelpersFailuresTest;

TEST_F(CopyFailuresTest, CallsThatFailBeforeTheDestinationIsOpenLeaveItAsItWas) {
  // The open calls are the probe and the opening, the fstat calls the source and the destination.
  const std::vector<std::pair<const char*, int>> calls = {
      {"fopen", 1}, {"fstat", 1}, {"open", 2}, {"fstat", 2}, {"ftruncate", 1}};
  for (const auto& [function, nth] : calls) {
    std::string source = scratch_.Write("source", "new");
    std::string destination = scratch_.Write("destination", "old");
    const FailingCall failing(function, nth);
    EXPECT_EQ(tivmcomn_copy_file(source.data(), destination.data(), 1), FALSE) << function << nth;
    EXPECT_TRUE(failing.Happened()) << function << nth;
    EXPECT_EQ(ReadFile(destination), "old") << function << nth;
    EXPECT_EQ(ReadFile(source), "new") << function << nth;
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_) << function << nth;
  }
}

TEST_F(CopyFailuresTest, FailedProbeDoesNotCostAnExistingFileItsContent) {
  std::string source = scratch_.Write("source", "new");
  std::string destination = scratch_.Write("destination", "old");
  {
    const FailingCall failing("open", 1, EMFILE);
    EXPECT_EQ(tivmcomn_copy_file(source.data(), destination.data(), 0), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(ReadFile(destination), "old");
  {
    const FailingCall failing("open", 1, EMFILE);
    EXPECT_EQ(tivmcomn_copy_file(source.data(), source.data(), 1), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(ReadFile(source), "new") << "the same file is a failure without the probe too";
}

TEST_F(CopyFailuresTest, StreamThatCannotBeMadeIsAFailure) {
  std::string source = scratch_.Write("source", "new");
  std::string destination = scratch_ / "destination";
  const FailingCall failing("fdopen", 1, ENOMEM);
  EXPECT_EQ(tivmcomn_copy_file(source.data(), destination.data(), 1), FALSE);
  EXPECT_TRUE(failing.Happened());
}

TEST_F(CopyFailuresTest, LastFlushThatFailsIsAFailure) {
  std::string source = scratch_.Write("source", "new");
  std::string destination = scratch_ / "destination";
  // The first stream to close is the source, whose close does not matter.
  for (const int nth : {1, 2}) {
    const FailingCall failing("fclose", nth, ENOSPC);
    EXPECT_EQ(tivmcomn_copy_file(source.data(), destination.data(), 1), nth == 1 ? TRUE : FALSE);
    EXPECT_TRUE(failing.Happened());
  }
}

TEST_F(CopyFailuresTest, NoMemoryForLargeBuffersStillCopies) {
  const std::string content(300000, 'c');
  std::string source = scratch_.Write("source", content);
  std::string destination = scratch_ / "destination";
  int failures = 0;
  for (int nth = 1; nth <= 20; ++nth) {
    const FailingCall failing("malloc", nth, ENOMEM);
    const BOOL copied = tivmcomn_copy_file(source.data(), destination.data(), 1);
    if (!failing.Happened()) break;
    ++failures;
    if (copied == TRUE) {
      EXPECT_TRUE(ReadFile(destination) == content) << nth;
    }
  }
  EXPECT_GE(failures, 4) << "two streams and their buffers";
}

using FileObjectFailuresTest = FileHelpersFailuresTest;

TEST_F(FileObjectFailuresTest, NoMemoryForTheObjectOrItsFileGivesNull) {
  const std::string path = scratch_.Write("file", "");
  // The object, its calls, the handle record and the file record.
  for (int nth = 1; nth <= 4; ++nth) {
    TiFile other = {};
    TiFile* file = &other;
    const FailingCall failing("malloc", nth, ENOMEM);
    EXPECT_EQ(tiCreateFile(path.c_str(), static_cast<int>(TIV_ACCESS_READ), 0, TIV_OPEN_EXISTING, 0,
                           &file),
              kFailure);
    EXPECT_TRUE(failing.Happened()) << nth;
    EXPECT_EQ(file, nullptr) << nth;
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_) << nth;
  }
}

TEST_F(FileObjectFailuresTest, ObjectIsFreedWhenItsFileDoesNotClose) {
  TiFile* file = nullptr;
  ASSERT_EQ(tiCreateFile((scratch_ / "file").c_str(), static_cast<int>(TIV_ACCESS_WRITE), 0,
                         TIV_CREATE_NEW, 0, &file),
            0u);
  auto* record = static_cast<_tivHandleObject_t*>(file->handle);
  {
    const FailingCall failing("close");
    EXPECT_EQ(tiCloseFile(file), kFailure);
    EXPECT_TRUE(failing.Happened());
  }
  // The handle that did not close is not freed; give back what it has left.
  free(record->pObject);
  free(record);
}

TEST_F(FileObjectFailuresTest, FolderThatCannotBeLookedAtDoesNotExist) {
  std::string path = scratch_.path();
  const FailingCall failing("stat", 1, EACCES);
  EXPECT_EQ(tiFolderExists(path.data()), FALSE);
  EXPECT_TRUE(failing.Happened());
}

TEST_F(FileHelpersFailuresTest, SizeThatCannotBeReadStoresZero) {
  std::string path = scratch_.Write("file", "content");
  unsigned int size = 77;
  const FailingCall failing("stat");
  EXPECT_EQ(tivmcomn_get_file_sizeA(path.data(), &size), kFailure);
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(size, 0u);
}

TEST_F(FileHelpersFailuresTest, DiskThatCannotBeMeasuredStoresNothing) {
  ULONGLONG space = 77;
  const FailingCall failing("statfs");
  EXPECT_EQ(tivmcomn_get_disk_free_spaceA(const_cast<char*>("/"), &space), kFailure);
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(space, 77u);
}

TEST_F(FileHelpersFailuresTest, UserNameThatCannotBeReadStoresNothing) {
  char buffer[64] = "u";
  for (const char* function : {"getpwuid_r", "malloc"}) {
    const FailingCall failing(function, 1, EIO);
    EXPECT_EQ(tivmcomn_get_user_name(buffer, sizeof(buffer)), kFailure) << function;
    EXPECT_TRUE(failing.Happened()) << function;
  }
  EXPECT_STREQ(buffer, "u");
}

}  // namespace
