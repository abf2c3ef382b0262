#include "zebcomn/portable/file.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/mutex.h"
#include "zebcomn/portable/unique_fd_internal.h"

namespace {

using zebcomn_test::ClearErrorSlot;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::ReadFile;
using zebcomn_test::ScratchDir;

HANDLE Open(const std::string& path, DWORD access, DWORD disposition, DWORD flags = 0) {
  return tivCreateFileAW(path.c_str(), access, 0, nullptr, disposition, flags, nullptr);
}

HANDLE OpenToRead(const std::string& path) {
  return Open(path, TIV_ACCESS_READ, TIV_OPEN_EXISTING);
}

bool Exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

std::string ReadSome(HANDLE file, DWORD count) {
  std::string bytes(count, '\0');
  DWORD got = 0;
  if (tivReadFile(file, bytes.data(), count, &got, nullptr) != TRUE) return "failed";
  bytes.resize(got);
  return bytes;
}

BOOL Write(HANDLE file, const std::string& bytes) {
  DWORD written = 0;
  const BOOL result = tivWriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written);
  EXPECT_EQ(written, bytes.size());
  return result;
}

class FileTest : public ::testing::Test {
 protected:
  FileTest() { ClearErrorSlot(); }
  ~FileTest() override { EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_); }

  const int open_before_ = zebcomn_test::OpenDescriptorCount();
  ScratchDir scratch_;
};

TEST_F(FileTest, AccessOtherThanReadWriteOrBothIsRefusedWith22) {
  const std::string path = scratch_.Write("file", "");
  for (const DWORD access : {0x10000000u, 0u, 1u, 0x80000001u, 0x20000000u, 0xE0000000u}) {
    ClearErrorSlot();
    EXPECT_EQ(Open(path, access, TIV_OPEN_EXISTING), nullptr) << std::hex << access;
    EXPECT_EQ(nErrno, EINVAL) << std::hex << access;
  }
}

TEST_F(FileTest, DispositionOutsideOneToFourIsRefusedWith22) {
  for (const DWORD disposition : {0u, 5u, 6u, 0x80000001u, 0xFFFFFFFFu}) {
    ClearErrorSlot();
    EXPECT_EQ(Open(scratch_ / "new", TIV_ACCESS_WRITE, disposition), nullptr) << disposition;
    EXPECT_EQ(nErrno, EINVAL) << disposition;
  }
  EXPECT_FALSE(Exists(scratch_ / "new"));
}

TEST_F(FileTest, FlagsOtherThanNormalOrDeleteOnCloseAreRefusedWith22) {
  for (const DWORD flags : {0x80u | 0x04000000u, 1u, 0x20u, 0x04000001u, 0x81u, 0xFFFFFFFFu}) {
    ClearErrorSlot();
    EXPECT_EQ(Open(scratch_ / "new", TIV_ACCESS_WRITE, TIV_CREATE_NEW, flags), nullptr) << flags;
    EXPECT_EQ(nErrno, EINVAL) << flags;
  }
  EXPECT_FALSE(Exists(scratch_ / "new"));
}

TEST_F(FileTest, NullPathIsRefusedWith22) {
  EXPECT_EQ(tivCreateFileAW(nullptr, TIV_ACCESS_READ, 0, nullptr, TIV_OPEN_EXISTING, 0, nullptr),
            nullptr);
  EXPECT_EQ(nErrno, EINVAL);
}

TEST_F(FileTest, NewRecordHasTheDescribedFields) {
  const HANDLE file = Open(scratch_ / "new", TIV_ACCESS_WRITE, TIV_CREATE_NEW);
  ASSERT_NE(file, nullptr);
  const auto* record = static_cast<_tivHandleObject_t*>(file);
  EXPECT_EQ(record->nType, TIV_HANDLE_FILE);
  EXPECT_EQ(record->nRefCount, 1u);
  EXPECT_EQ(record->bSignalled, 0);
  EXPECT_NE(record->pObject, nullptr);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, FailedOpenLeavesTheReasonInErrnoAndNErrnoAlone) {
  errno = 0;
  EXPECT_EQ(OpenToRead(scratch_ / "absent"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(tivGetLastError(), 38u);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(FileTest, CreateNewMakesAFileThatMustNotExist) {
  const HANDLE file = Open(scratch_ / "new", TIV_ACCESS_WRITE, TIV_CREATE_NEW);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(Write(file, "text"), TRUE);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  EXPECT_EQ(Open(scratch_ / "new", TIV_ACCESS_WRITE, TIV_CREATE_NEW), nullptr);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(ReadFile(scratch_ / "new"), "text");
}

TEST_F(FileTest, CreateAlwaysMakesOrEmptiesTheFile) {
  const std::string old_file = scratch_.Write("old", "content");
  for (const std::string& path : {old_file, scratch_ / "new"}) {
    const HANDLE file = Open(path, TIV_ACCESS_WRITE, TIV_CREATE_ALWAYS);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(tivCloseHandle(file), TRUE);
    EXPECT_EQ(ReadFile(path), "");
  }
}

TEST_F(FileTest, OpenExistingNeedsTheFileAndKeepsItsContent) {
  EXPECT_EQ(Open(scratch_ / "new", TIV_ACCESS_WRITE, TIV_OPEN_EXISTING), nullptr);
  const std::string path = scratch_.Write("old", "content");
  const HANDLE file = Open(path, TIV_ACCESS_WRITE, TIV_OPEN_EXISTING);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(Write(file, "CON"), TRUE);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  EXPECT_EQ(ReadFile(path), "CONtent");
}

TEST_F(FileTest, OpenAlwaysMakesTheFileOrKeepsItsContent) {
  const std::string old_file = scratch_.Write("old", "content");
  for (const std::string& path : {old_file, scratch_ / "new"}) {
    const HANDLE file = Open(path, TIV_ACCESS_READ_WRITE, TIV_OPEN_ALWAYS, TIV_FLAG_NORMAL);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(tivCloseHandle(file), TRUE);
  }
  EXPECT_EQ(ReadFile(old_file), "content");
  EXPECT_EQ(ReadFile(scratch_ / "new"), "");
}

TEST_F(FileTest, NewFileHasMode0660LessTheFileMask) {
  const mode_t mask = umask(0);
  const HANDLE file = Open(scratch_ / "new", TIV_ACCESS_WRITE, TIV_CREATE_NEW);
  umask(mask);
  struct stat status = {};
  ASSERT_EQ(stat((scratch_ / "new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0660u);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, AccessLimitsWhatTheHandleCanDo) {
  const std::string path = scratch_.Write("file", "content");
  const HANDLE reader = OpenToRead(path);
  DWORD count = 77;
  EXPECT_EQ(tivWriteFile(reader, "x", 1, &count), FALSE);
  EXPECT_EQ(ReadSome(reader, 3), "con");
  const HANDLE writer = Open(path, TIV_ACCESS_WRITE, TIV_OPEN_EXISTING);
  char byte = 0;
  EXPECT_EQ(tivReadFile(writer, &byte, 1, &count, nullptr), FALSE);
  EXPECT_EQ(count, 77u) << "a failed transfer leaves the count alone";
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(reader), TRUE);
  EXPECT_EQ(tivCloseHandle(writer), TRUE);
}

TEST_F(FileTest, DeleteOnCloseRemovesTheFileAtTheLastClose) {
  const std::string path = scratch_ / "short-lived";
  const HANDLE file = Open(path, TIV_ACCESS_READ_WRITE, TIV_CREATE_NEW, TIV_FLAG_DELETE_ON_CLOSE);
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(Exists(path));
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  EXPECT_FALSE(Exists(path));
}

TEST_F(FileTest, WithoutDeleteOnCloseTheFileStays) {
  const HANDLE file = Open(scratch_ / "file", TIV_ACCESS_WRITE, TIV_CREATE_NEW, TIV_FLAG_NORMAL);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  EXPECT_TRUE(Exists(scratch_ / "file"));
}

/// A path of `length` bytes to `name` in the directory, filled up with "/." components.
std::string PathOfLength(const ScratchDir& directory, const std::string& name, size_t length) {
  std::string path = directory.path();
  const size_t tail = 1 + name.size();
  while (path.size() + 2 + tail <= length) path += "/.";
  if (path.size() + tail < length) path += "/";
  path += "/" + name;
  EXPECT_EQ(path.size(), length);
  return path;
}

TEST_F(FileTest, PathsOf259And260BytesAreRememberedForDeleteOnClose) {
  for (const size_t length : {259u, 260u}) {
    const std::string path = PathOfLength(scratch_, "file", length);
    const HANDLE file = Open(path, TIV_ACCESS_WRITE, TIV_CREATE_NEW, TIV_FLAG_DELETE_ON_CLOSE);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(tivCloseHandle(file), TRUE);
    EXPECT_FALSE(Exists(path)) << length;
  }
}

TEST_F(FileTest, PathOf300BytesIsNotDeletedNorIsWhatItsBeginningNames) {
  // The first 260 bytes of the long path name a file of their own.
  const std::string other = PathOfLength(scratch_, "file", 260);
  zebcomn_test::WriteFile(other, "other");
  const std::string path = other + std::string(40, 'x');
  const HANDLE file = Open(path, TIV_ACCESS_WRITE, TIV_CREATE_NEW, TIV_FLAG_DELETE_ON_CLOSE);
  ASSERT_NE(file, nullptr);
  auto* record = static_cast<_tivHandleObject_t*>(file);
  EXPECT_EQ(tivCloseHandle(file), FALSE);
  EXPECT_TRUE(Exists(path));
  EXPECT_EQ(ReadFile(other), "other");
  // A failed removal frees nothing; give back what the close has left.
  free(record->pObject);
  free(record);
}

/// What the payload of a file handle looks like.
struct PayloadFields {
  int32_t descriptor;
  int32_t delete_on_close;
  int32_t end_of_file;
  char path[261];
};

TEST_F(FileTest, PayloadHoldsDescriptorFlagsAndThePathCutAt260Bytes) {
  for (const size_t length : {260u, 261u, 300u}) {
    const std::string path = PathOfLength(scratch_, "file", length);
    const HANDLE file = Open(path, TIV_ACCESS_WRITE, TIV_CREATE_ALWAYS);
    ASSERT_NE(file, nullptr);
    const auto* payload =
        static_cast<const PayloadFields*>(static_cast<_tivHandleObject_t*>(file)->pObject);
    struct stat by_descriptor = {};
    struct stat by_path = {};
    EXPECT_EQ(fstat(payload->descriptor, &by_descriptor), 0);
    EXPECT_EQ(stat(path.c_str(), &by_path), 0);
    EXPECT_EQ(by_descriptor.st_ino, by_path.st_ino);
    EXPECT_EQ(payload->delete_on_close, 0);
    EXPECT_EQ(payload->end_of_file, 0);
    EXPECT_EQ(std::string(payload->path), path.substr(0, 260)) << length;
    EXPECT_EQ(tivCloseHandle(file), TRUE);
  }
}

TEST_F(FileTest, PayloadSaysWhenTheFileIsToBeDeleted) {
  const HANDLE file =
      Open(scratch_ / "file", TIV_ACCESS_WRITE, TIV_CREATE_NEW, TIV_FLAG_DELETE_ON_CLOSE);
  const auto* payload =
      static_cast<const PayloadFields*>(static_cast<_tivHandleObject_t*>(file)->pObject);
  EXPECT_EQ(payload->delete_on_close, 1);
  EXPECT_EQ(payload->path, scratch_ / "file");
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, ReadsContinueWhereTheLastOneEnded) {
  const HANDLE file = OpenToRead(scratch_.Write("file", "abcdef"));
  EXPECT_EQ(ReadSome(file, 4), "abcd");
  EXPECT_EQ(ReadSome(file, 4), "ef");
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, EndOfFileIsASuccessWithNoBytesAndMarksTheRecord) {
  const HANDLE file = OpenToRead(scratch_.Write("file", "a"));
  // The record's third field.
  const int32_t* end_of_file =
      static_cast<int32_t*>(static_cast<_tivHandleObject_t*>(file)->pObject) + 2;
  EXPECT_EQ(ReadSome(file, 4), "a");
  EXPECT_EQ(*end_of_file, 0);
  EXPECT_EQ(ReadSome(file, 4), "");
  EXPECT_EQ(*end_of_file, 1);
  EXPECT_EQ(tivSetFilePointer(file, 0, nullptr, 0), 0);
  EXPECT_EQ(ReadSome(file, 4), "a");
  EXPECT_EQ(*end_of_file, 1) << "nothing clears it";
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, ReadOfNoBytesMarksTheRecordToo) {
  const HANDLE file = OpenToRead(scratch_.Write("file", "a"));
  EXPECT_EQ(ReadSome(file, 0), "");
  EXPECT_EQ(static_cast<const PayloadFields*>(static_cast<_tivHandleObject_t*>(file)->pObject)
                ->end_of_file,
            1);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, TransfersRefuseANullHandleAndANullCountWith22) {
  const HANDLE file = OpenToRead(scratch_.Write("file", "a"));
  DWORD count = 77;
  char byte = 'x';
  const std::vector<std::pair<HANDLE, DWORD*>> refused = {{nullptr, &count}, {file, nullptr}};
  for (const auto& [handle, done] : refused) {
    ClearErrorSlot();
    EXPECT_EQ(tivReadFile(handle, &byte, 1, done, nullptr), FALSE);
    EXPECT_EQ(nErrno, EINVAL);
    ClearErrorSlot();
    EXPECT_EQ(tivWriteFile(handle, &byte, 1, done), FALSE);
    EXPECT_EQ(nErrno, EINVAL);
  }
  EXPECT_EQ(count, 77u);
  EXPECT_EQ(ReadSome(file, 1), "a") << "a refused read takes nothing";
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, HandlesOfOtherKindsAreRefusedWith22) {
  DWORD count = 77;
  char byte = 'x';
  for (const HANDLE handle :
       {tivCreateEvent(nullptr, 1, 0, nullptr), tivCreateMutex(nullptr, 0, nullptr)}) {
    const auto expect_refusal = [](bool refused, const char* call) {
      EXPECT_TRUE(refused) << call;
      EXPECT_EQ(nErrno, EINVAL) << call;
      ClearErrorSlot();
    };
    ClearErrorSlot();
    expect_refusal(tivReadFile(handle, &byte, 1, &count, nullptr) == FALSE, "read");
    expect_refusal(tivWriteFile(handle, &byte, 1, &count) == FALSE, "write");
    expect_refusal(tivSetFilePointer(handle, 0, nullptr, 0) == -1, "set pointer");
    expect_refusal(tivSetEndOfFile(handle) == FALSE, "set end");
    expect_refusal(tivGetFileSize(handle, &count) == TIV_INVALID_DWORD, "size");
    EXPECT_EQ(tivCloseHandle(handle), TRUE);
  }
  EXPECT_EQ(count, 77u);
}

TEST_F(FileTest, PointerMovesFromStartFromHereAndFromTheEnd) {
  const HANDLE file = OpenToRead(scratch_.Write("file", "0123456789"));
  LONG high = 55;
  EXPECT_EQ(tivSetFilePointer(file, 4, &high, 0), 4);
  EXPECT_EQ(ReadSome(file, 1), "4");
  EXPECT_EQ(tivSetFilePointer(file, -2, &high, 1), 3);
  EXPECT_EQ(ReadSome(file, 1), "3");
  EXPECT_EQ(tivSetFilePointer(file, -1, &high, 2), 9);
  EXPECT_EQ(ReadSome(file, 1), "9");
  EXPECT_EQ(tivSetFilePointer(file, 100, nullptr, 2), 110);
  EXPECT_EQ(high, 55) << "the high part is ignored";
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, PointerBeforeTheStartOrWithAnUnknownMethodFails) {
  const HANDLE file = OpenToRead(scratch_.Write("file", "0123456789"));
  EXPECT_EQ(tivSetFilePointer(file, -1, nullptr, 0), -1);
  EXPECT_EQ(tivSetFilePointer(file, 0, nullptr, 77), -1);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, PositionBeyondFourGiBIsCutTo32Bits) {
  const HANDLE file = OpenToRead(scratch_.Write("file", ""));
  EXPECT_EQ(tivSetFilePointer(file, 0x7FFFFFFF, nullptr, 0), 0x7FFFFFFF);
  EXPECT_EQ(tivSetFilePointer(file, 0x7FFFFFFF, nullptr, 1), -2);
  EXPECT_EQ(tivSetFilePointer(file, 3, nullptr, 1), 1);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, EndOfFileIsSetAtTheCurrentPosition) {
  const std::string path = scratch_.Write("file", "0123456789");
  const HANDLE file = Open(path, TIV_ACCESS_READ_WRITE, TIV_OPEN_EXISTING);
  EXPECT_EQ(tivSetFilePointer(file, 4, nullptr, 0), 4);
  EXPECT_EQ(tivSetEndOfFile(file), TRUE);
  EXPECT_EQ(ReadFile(path), "0123");
  EXPECT_EQ(tivSetFilePointer(file, 6, nullptr, 0), 6);
  EXPECT_EQ(tivSetEndOfFile(file), TRUE);
  EXPECT_EQ(ReadFile(path), std::string("0123\0\0", 6));
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, EndOfFileCannotBeSetThroughAReader) {
  const std::string path = scratch_.Write("file", "0123456789");
  const HANDLE file = OpenToRead(path);
  EXPECT_EQ(tivSetEndOfFile(file), FALSE);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(ReadFile(path), "0123456789");
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, SizeOfANullHandleIsRefusedWith22) {
  DWORD high = 77;
  EXPECT_EQ(tivGetFileSize(nullptr, &high), 0xFFFFFFFFu);
  EXPECT_EQ(nErrno, EINVAL);
  EXPECT_EQ(high, 77u);
}

struct SizeCase {
  off_t size;
  DWORD low;
  DWORD high;
};

TEST_F(FileTest, HighPartOfTheSizeIsTheSizeDividedBy65535) {
  const std::string path = scratch_ / "file";
  const HANDLE file = Open(path, TIV_ACCESS_WRITE, TIV_CREATE_NEW);
  const off_t four_gib = off_t{1} << 32;
  for (const SizeCase& c : {SizeCase{0, 0, 0}, SizeCase{65534, 65534, 0}, SizeCase{65535, 65535, 1},
                            SizeCase{70000, 70000, 1}, SizeCase{four_gib + 5, 5, 65537},
                            SizeCase{3 * four_gib, 0, 196611}}) {
    ASSERT_EQ(truncate(path.c_str(), c.size), 0) << errno;
    DWORD high = 77;
    EXPECT_EQ(tivGetFileSize(file, &high), c.low) << c.size;
    EXPECT_EQ(high, c.high) << c.size;
    EXPECT_EQ(tivGetFileSize(file, nullptr), c.low) << c.size;
  }
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

TEST_F(FileTest, HighPartOfAHugeSizeIsCutTo32Bits) {
  // Files in memory can be larger than most file systems let them be.
  const zebcomn::UniqueFd memory(memfd_create("huge", 0));
  const off_t size = (off_t{65535} << 32) + 65535 * off_t{3};
  if (!memory.IsOpen() || ftruncate(memory.get(), size) != 0) {
    GTEST_SKIP() << "no files of 256 TiB here";
  }
  const HANDLE file = OpenToRead("/proc/self/fd/" + std::to_string(memory.get()));
  ASSERT_NE(file, nullptr);
  DWORD high = 77;
  EXPECT_EQ(tivGetFileSize(file, &high), 65535u * 3u);
  EXPECT_EQ(high, 3u);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

}  // namespace
