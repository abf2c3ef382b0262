// The record behind a handle, and the end of a handle.
#include "zebcomn/portable/handle.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/portable/owned_handle.h"
#include "tests/support/descriptors.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/error.h"
#include "zebcomn/portable/file_record_internal.h"
#include "zebcomn/portable/global_mutexes.h"

namespace {

using zebcomn::FileRecord;
using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::RecordOf;

// A file handle as opening `path` makes it.
HANDLE FileHandle(const std::string& path, int32_t delete_on_close) {
  auto* file = static_cast<FileRecord*>(std::calloc(1, sizeof(FileRecord)));
  file->descriptor = open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
  file->delete_on_close = delete_on_close;
  path.copy(file->path, sizeof(file->path) - 1);
  auto* record = static_cast<_tivHandleObject_t*>(std::calloc(1, sizeof(_tivHandleObject_t)));
  record->pObject = file;
  record->nType = TIV_HANDLE_FILE;
  record->nRefCount = 1;
  pthread_cond_init(&record->cond, nullptr);
  pthread_mutex_init(&record->mutex, nullptr);
  return record;
}

// Ends a file handle whose close has failed.
void Discard(HANDLE handle) {
  std::free(RecordOf(handle)->pObject);
  std::free(handle);
}

TEST(Handle, FieldsStandInTheirOrder) {
  const size_t offsets[] = {offsetof(_tivHandleObject_t, pObject),
                            offsetof(_tivHandleObject_t, nType),
                            offsetof(_tivHandleObject_t, nRefCount),
                            offsetof(_tivHandleObject_t, bSignalled),
                            offsetof(_tivHandleObject_t, cond),
                            offsetof(_tivHandleObject_t, mutex),
                            offsetof(_tivHandleObject_t, ppThreadSignalled)};
  EXPECT_EQ(offsets[0], 0u);
  for (size_t field = 1; field < std::size(offsets); ++field) {
    EXPECT_LT(offsets[field - 1], offsets[field]) << field;
  }
}

TEST(CloseHandle, InvalidHandlesAreAHarmlessSuccess) {
  nErrno = 77;
  EXPECT_EQ(tivCloseHandle(nullptr), TRUE);
  EXPECT_EQ(tivCloseHandle(TIV_INVALID_HANDLE), TRUE);
  EXPECT_EQ(nErrno, 77);
}

TEST(CloseHandle, EndsEveryKind) {
  EXPECT_EQ(tivCloseHandle(NewEvent(1)), TRUE);
  EXPECT_EQ(tivCloseHandle(tivCreateMutex(nullptr, 0, nullptr)), TRUE);
  HANDLE thread = NewThread([](void*) -> DWORD { return 0; }, nullptr);
  EXPECT_EQ(tivWaitForSingleObject(thread, TIV_WAIT_INFINITE), TIV_WAIT_SIGNALLED);
  EXPECT_EQ(tivCloseHandle(thread), TRUE);
}

TEST(CloseHandle, OwnedMutexIsClosedWithoutAnError) {
  EXPECT_EQ(tivCloseHandle(tivCreateMutex(nullptr, 1, nullptr)), TRUE);
}

TEST(CloseHandle, OnlyTheLastReferenceEndsTheHandle) {
  HANDLE event = NewEvent();
  RecordOf(event)->nRefCount = 3;
  EXPECT_EQ(tivCloseHandle(event), TRUE);
  EXPECT_EQ(RecordOf(event)->nRefCount, 2u);
  EXPECT_EQ(tivCloseHandle(event), TRUE);
  EXPECT_EQ(tivSetEvent(event), TRUE);
  EXPECT_EQ(tivCloseHandle(event), TRUE);
}

TEST(CloseHandle, FileIsClosedAndKept) {
  const zebcomn_test::ScratchDir dir;
  const std::string path = dir / "file";
  const auto open_before = zebcomn_test::OpenDescriptorCount();
  HANDLE file = FileHandle(path, 0);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before);
  EXPECT_EQ(access(path.c_str(), F_OK), 0);
}

TEST(CloseHandle, FileOpenedForDeletionIsRemoved) {
  const zebcomn_test::ScratchDir dir;
  const std::string path = dir / "file";
  EXPECT_EQ(tivCloseHandle(FileHandle(path, 1)), TRUE);
  EXPECT_NE(access(path.c_str(), F_OK), 0);
}

TEST(CloseHandle, OnlyOneAsDeletionFlagRemoves) {
  const zebcomn_test::ScratchDir dir;
  const std::string path = dir / "file";
  EXPECT_EQ(tivCloseHandle(FileHandle(path, 2)), TRUE);
  EXPECT_EQ(access(path.c_str(), F_OK), 0);
}

TEST(CloseHandle, FailingCloseOfTheDescriptorFreesNothing) {
  const zebcomn_test::ScratchDir dir;
  const std::string path = dir / "file";
  HANDLE file = FileHandle(path, 1);
  auto* payload = static_cast<FileRecord*>(RecordOf(file)->pObject);
  close(payload->descriptor);
  payload->descriptor = -1;
  nErrno = 77;
  EXPECT_EQ(tivCloseHandle(file), FALSE);
  EXPECT_EQ(nErrno, 77);
  EXPECT_EQ(access(path.c_str(), F_OK), 0);
  EXPECT_STREQ(payload->path, path.c_str());
  Discard(file);
}

TEST(CloseHandle, FailingRemovalFreesNothing) {
  const zebcomn_test::ScratchDir dir;
  const std::string path = dir / "file";
  HANDLE file = FileHandle(path, 1);
  unlink(path.c_str());
  EXPECT_EQ(tivCloseHandle(file), FALSE);
  EXPECT_STREQ(static_cast<FileRecord*>(RecordOf(file)->pObject)->path, path.c_str());
  Discard(file);
}

TEST(CloseHandle, RetryAfterAFailedLastCloseSucceedsAndFreesNothing) {
  const zebcomn_test::ScratchDir dir;
  HANDLE file = FileHandle((dir / "file"), 1);
  unlink((dir / "file").c_str());
  EXPECT_EQ(tivCloseHandle(file), FALSE);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  EXPECT_EQ(RecordOf(file)->nRefCount, 0xFFFFFFFFu);
  Discard(file);
}

TEST(CloseHandle, RecordOfUnknownTypeIsRefusedAndKept) {
  for (const int32_t type : {4, -1}) {
    HANDLE event = NewEvent();
    RecordOf(event)->nType = type;
    EXPECT_EQ(tivCloseHandle(event), FALSE) << type;
    RecordOf(event)->nType = TIV_HANDLE_EVENT;
    RecordOf(event)->nRefCount = 1;
    EXPECT_EQ(tivCloseHandle(event), TRUE);
  }
}

TEST(GlobalMutexes, FourSeparateLocksAreReadyFromTheStart) {
  pthread_mutex_t* const mutexes[] = {&MutexInterlockedLong, &MutexInterlockedExchange,
                                      &MutexDynamicLibraryList, &MutexDirEnt};
  for (pthread_mutex_t* mutex : mutexes) EXPECT_EQ(pthread_mutex_trylock(mutex), 0);
  for (pthread_mutex_t* mutex : mutexes) EXPECT_EQ(pthread_mutex_unlock(mutex), 0);
}

}  // namespace
