// What the calls on files, directories and names leave behind when a call underneath them fails.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <array>
#include <string>

#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/failing_call.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/fresh_process.h"
#include "tests/support/next_function.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/global_mutexes.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/named_file.h"

extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  static auto* const next = zebcomn_test::NextFunction<int(pthread_mutex_t*)>("pthread_mutex_lock");
  if (mutex == &MutexDirEnt && zebcomn_test::IsToFail("table lock")) return EDEADLK;
  return next(mutex);
}

namespace {

using zebcomn_test::ClearErrorSlot;
using zebcomn_test::FailingCall;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::ReadFile;
using zebcomn_test::ScratchDir;

class FileFailuresTest : public ::testing::Test {
 protected:
  FileFailuresTest() { ClearErrorSlot(); }
  ~FileFailuresTest() override { EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_); }

  HANDLE OpenFile() const {
    return tivCreateFileAW(path_.c_str(), TIV_ACCESS_READ_WRITE, 0, nullptr, TIV_OPEN_EXISTING, 0,
                           nullptr);
  }

  const int open_before_ = zebcomn_test::OpenDescriptorCount();
  ScratchDir scratch_;
  const std::string path_ = scratch_.Write("file", "content");
};

TEST_F(FileFailuresTest, FileCannotBeOpened) {
  const FailingCall failing("open", 1, EMFILE);
  EXPECT_EQ(OpenFile(), nullptr);
  EXPECT_EQ(tivGetLastError(), 259u);
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(FileFailuresTest, NoMemoryForEitherRecordClosesTheDescriptor) {
  for (const int nth : {1, 2}) {
    const FailingCall failing("malloc", nth, ENOMEM);
    EXPECT_EQ(OpenFile(), nullptr) << nth;
    EXPECT_TRUE(failing.Happened()) << nth;
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_) << nth;
  }
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(ReadFile(path_), "content");
}

TEST_F(FileFailuresTest, LocksOfTheRecordThatCannotBeMadeCloseTheDescriptor) {
  for (const char* function : {"pthread_cond_init", "pthread_mutex_init"}) {
    const FailingCall failing(function);
    EXPECT_EQ(OpenFile(), nullptr) << function;
    EXPECT_TRUE(failing.Happened()) << function;
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_) << function;
  }
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(FileFailuresTest, FailedReadLeavesCountAndEndOfFileFlagAlone) {
  const HANDLE file = OpenFile();
  const int32_t* end_of_file =
      static_cast<int32_t*>(static_cast<_tivHandleObject_t*>(file)->pObject) + 2;
  char byte = 'u';
  DWORD count = 77;
  {
    const FailingCall failing("read");
    EXPECT_EQ(tivReadFile(file, &byte, 1, &count, nullptr), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(count, 77u);
  EXPECT_EQ(*end_of_file, 0);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileFailuresTest, FailedWriteLeavesTheCountAlone) {
  const HANDLE file = OpenFile();
  DWORD count = 77;
  {
    const FailingCall failing("write", 1, ENOSPC);
    EXPECT_EQ(tivWriteFile(file, "x", 1, &count), FALSE);
    EXPECT_EQ(tivGetLastError(), 259u);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(count, 77u);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

// One call of the system each: what it did not take or give is the caller's to ask for again.
TEST_F(FileFailuresTest, WriteThatIsCutShortIsASuccessWithItsCount) {
  const std::string found = zebcomn_test::RunInFreshProcess([this] {
    if (!zebcomn_test::LimitFileSize(4)) return std::string("no limit");
    const HANDLE file = OpenFile();
    DWORD count = 77;
    const BOOL result = tivWriteFile(file, "0123456789", 10, &count);
    tivCloseHandle(file);
    return std::to_string(result) + " " + std::to_string(count) + " " + ReadFile(path_);
  });
  EXPECT_EQ(found, "1 4 0123ent");
}

TEST_F(FileFailuresTest, ReadGivesWhatIsThereAndDoesNotWaitForMore) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  ASSERT_EQ(write(ends[1], "abc", 3), 3);
  const std::string path = "/proc/self/fd/" + std::to_string(ends[0]);
  const HANDLE file =
      tivCreateFileAW(path.c_str(), TIV_ACCESS_READ, 0, nullptr, TIV_OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(file, nullptr);
  std::array<char, 8> bytes{};
  DWORD count = 77;
  EXPECT_EQ(tivReadFile(file, bytes.data(), 8, &count, nullptr), TRUE);
  EXPECT_EQ(count, 3u);
  EXPECT_STREQ(bytes.data(), "abc");
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  close(ends[0]);
  close(ends[1]);
}

TEST_F(FileFailuresTest, FailedSeekAndTruncateAreReported) {
  const HANDLE file = OpenFile();
  {
    const FailingCall failing("lseek");
    EXPECT_EQ(tivSetFilePointer(file, 0, nullptr, 0), -1);
    EXPECT_TRUE(failing.Happened());
  }
  for (const char* function : {"lseek", "ftruncate"}) {
    const FailingCall failing(function);
    EXPECT_EQ(tivSetEndOfFile(file), FALSE) << function;
    EXPECT_TRUE(failing.Happened()) << function;
  }
  EXPECT_EQ(ReadFile(path_), "content");
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileFailuresTest, SizeThatCannotBeReadIsAllOnesAndLeavesTheHighPartAlone) {
  const HANDLE file = OpenFile();
  DWORD high = 77;
  {
    const FailingCall failing("fstat");
    EXPECT_EQ(tivGetFileSize(file, &high), 0xFFFFFFFFu);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(high, 77u);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileFailuresTest, FailedCloseFreesNothing) {
  const HANDLE file = OpenFile();
  auto* record = static_cast<_tivHandleObject_t*>(file);
  {
    const FailingCall failing("close");
    EXPECT_EQ(tivCloseHandle(file), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(record->nRefCount, 0u);
  free(record->pObject);
  free(record);
}

TEST_F(FileFailuresTest, TemporaryFileThatCannotBeMadeGivesZero) {
  std::array<char, 512> name = {'u'};
  const FailingCall failing("mkostemp");
  EXPECT_EQ(tivGetTempFileName(scratch_.path().c_str(), "x", 1, name.data()), 0u);
  EXPECT_TRUE(failing.Happened());
  EXPECT_STREQ(name.data(), "u");
}

TEST_F(FileFailuresTest, NoMemoryForATemporaryNameGivesZeroAndMakesNoFile) {
  std::array<char, 512> name = {'u'};
  std::string directory = scratch_.path();
  while (directory.size() < 100) directory += "/.";
  int failures = 0;
  for (int nth = 1; nth <= 10; ++nth) {
    const FailingCall failing("malloc", nth, ENOMEM);
    const UINT result = tivGetTempFileName(directory.c_str(), "x", 1, name.data());
    if (!failing.Happened()) {
      EXPECT_EQ(result, 1u);
      break;
    }
    ++failures;
    EXPECT_EQ(result, 0u) << nth;
    EXPECT_STREQ(name.data(), "u") << nth;
  }
  EXPECT_GE(failures, 1);
}

TEST_F(FileFailuresTest, FailedRenameIsReported) {
  const FailingCall failing("rename");
  EXPECT_EQ(tivMoveFile(path_.c_str(), (scratch_ / "other").c_str()), FALSE);
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(FileFailuresTest, SearchThatCannotOpenItsDirectoryLeavesNothing) {
  TivFindData data = {};
  const FailingCall failing("opendir", 1, EMFILE);
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "*").c_str(), &data), -1);
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(pDirEntTable[0], nullptr);
}

TEST_F(FileFailuresTest, SearchThatCannotLockTheTableTakesNoEntryAndClosesItsDirectory) {
  TivFindData data = {};
  const FailingCall failing("table lock");
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "*").c_str(), &data), -1);
  EXPECT_TRUE(failing.Happened()) << "an entry is claimed under the table's lock";
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(pDirEntTable[0], nullptr);
}

TEST_F(FileFailuresTest, NoMemoryForASearchClosesTheDirectoryWith11) {
  TivFindData data = {};
  const std::string pattern = scratch_ / "*";
  bool record_failed = false;
  // The directory stream takes memory first, the search record last.
  for (int nth = 1; nth <= 10; ++nth) {
    ClearErrorSlot();
    const FailingCall failing("malloc", nth, ENOMEM);
    const int32_t id = tivFindFirstDirEnt(pattern.c_str(), &data);
    if (!failing.Happened()) {
      EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
      break;
    }
    EXPECT_EQ(id, -1) << nth;
    record_failed = nErrno == EAGAIN;
    EXPECT_EQ(pDirEntTable[0], nullptr);
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_) << nth;
  }
  EXPECT_TRUE(record_failed);
}

TEST_F(FileFailuresTest, PathThatCannotBeRemovedAtTheCloseIsReported) {
  const HANDLE file = tivCreateFileAW(path_.c_str(), TIV_ACCESS_READ, 0, nullptr, TIV_OPEN_EXISTING,
                                      TIV_FLAG_DELETE_ON_CLOSE, nullptr);
  auto* record = static_cast<_tivHandleObject_t*>(file);
  {
    const FailingCall failing("remove", 1, EBUSY);
    EXPECT_EQ(tivCloseHandle(file), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(ReadFile(path_), "content");
  free(record->pObject);
  free(record);
}

TEST_F(FileFailuresTest, SearchWhoseFirstReadFailsIsClosed) {
  TivFindData data = {};
  const FailingCall failing("readdir");
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "*").c_str(), &data), -1);
  EXPECT_TRUE(failing.Happened());
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(pDirEntTable[0], nullptr);
}

TEST_F(FileFailuresTest, ReadErrorCountsAsTheEndOfTheDirectory) {
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt((scratch_ / "*").c_str(), &data);
  {
    const FailingCall failing("readdir");
    EXPECT_EQ(tivFindNextDirEnt(id, &data), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

TEST_F(FileFailuresTest, EntryWhoseStatusCannotBeReadHasOnlyItsName) {
  TivFindData data = {};
  const FailingCall failing("stat");
  const int32_t id = tivFindFirstDirEnt(path_.c_str(), &data);
  EXPECT_TRUE(failing.Happened());
  EXPECT_STREQ(data.name, "file");
  EXPECT_EQ(data.size, 0u);
  EXPECT_EQ(data.last_write_time, 0u);
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

TEST_F(FileFailuresTest, SearchWhoseDirectoryDoesNotCloseHasEndedAllTheSame) {
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt((scratch_ / "*").c_str(), &data);
  {
    const FailingCall failing("closedir");
    EXPECT_EQ(tivFindCloseDirEnt(id), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(pDirEntTable[id - 1], nullptr);
}

}  // namespace
