// The records of the portability layer, read through the pointers that callers get and with the
// layout that the agent's components were built with, which is written down here once more.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "tests/portable/module_fixture.h"
#include "tests/portable/owned_handle.h"
#include "tests/support/scratch_dir.h"
#include "tests/support/seen_as.h"
#include "zebcomn/portable/clock.h"
#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/tls.h"
#include "zebcomn/util/tivfio.h"

namespace {

using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::ScratchDir;
using zebcomn_test::SeenAs;
using zebcomn_test::WaitForEver;

struct HandleRecord {
  void* payload;
  int32_t type;
  uint32_t references;
  int32_t signalled;
  pthread_cond_t condition;
  pthread_mutex_t lock;
  void* flag_pointer;
};

struct StartBlock {
  void* lock;
  void* condition;
  void* flag;
  TivThreadRoutine routine;
  void* parameter;
};

struct OpenFile {
  int32_t descriptor;
  int32_t delete_on_close;
  int32_t end_of_file;
  char path[261];
};

struct SearchRecord {
  void* stream;
  char pattern[261];
  char directory[261];
};

struct LibraryRecord {
  char name[264];
  void* module;
  void* entry_routine;
  int32_t references;
  int32_t thread_calls_disabled;
};

static_assert(sizeof pTlsKeyTable == 1024 * sizeof(void*) && sizeof nTlsOwnerTable == 4096);
static_assert(sizeof pDirEntTable == 50 * sizeof(void*));
static_assert(sizeof pDynamicLibraryList == 50 * sizeof(void*));

TEST(HandleRecordLayout, EventShowsItsTypeCountAndState) {
  const OwnedHandle event(NewEvent(1));
  const auto record = SeenAs<HandleRecord>(event.get());
  EXPECT_EQ(record.payload, nullptr);
  EXPECT_EQ(record.type, 1);
  EXPECT_EQ(record.references, 1U);
  EXPECT_EQ(record.signalled, 1);
}

TEST(HandleRecordLayout, MutexPayloadAndOwnLockAreMutexes) {
  const OwnedHandle mutex(tivCreateMutex(nullptr, TRUE, nullptr));
  const auto record = SeenAs<HandleRecord>(mutex.get());
  EXPECT_EQ(record.type, 3);
  EXPECT_EQ(record.signalled, 0);
  auto* payload = static_cast<pthread_mutex_t*>(record.payload);
  EXPECT_NE(pthread_mutex_trylock(payload), 0) << "the owner holds it";
  void* place = static_cast<char*>(mutex.get()) + offsetof(HandleRecord, lock);
  auto* own = static_cast<pthread_mutex_t*>(place);
  ASSERT_EQ(pthread_mutex_trylock(own), 0);
  EXPECT_EQ(pthread_mutex_unlock(own), 0);
  EXPECT_EQ(tivReleaseMutex(mutex.get()), TRUE);
}

DWORD WaitForEvent(void* event) {
  return WaitForEver(event);
}

TEST(HandleRecordLayout, ThreadLeadsToTheStartBlockOfItsThread) {
  const OwnedHandle may_end(NewEvent());
  const OwnedHandle thread(NewThread(WaitForEvent, may_end.get()));
  const auto record = SeenAs<HandleRecord>(thread.get());
  EXPECT_EQ(record.type, 2);
  EXPECT_NE(record.payload, nullptr);

  // The record points at the third field of the block.
  ASSERT_NE(record.flag_pointer, nullptr);
  const auto block =
      SeenAs<StartBlock>(static_cast<char*>(record.flag_pointer) - offsetof(StartBlock, flag));
  auto* start = static_cast<char*>(thread.get());
  EXPECT_EQ(block.lock, start + offsetof(HandleRecord, lock));
  EXPECT_EQ(block.condition, start + offsetof(HandleRecord, condition));
  EXPECT_EQ(block.flag, start + offsetof(HandleRecord, signalled));
  EXPECT_EQ(block.routine, WaitForEvent);
  EXPECT_EQ(block.parameter, may_end.get());

  EXPECT_EQ(tivSetEvent(may_end.get()), TRUE);
  WaitForEver(thread.get());
}

TEST(FileRecordLayout, PayloadShowsDescriptorFlagsAndPath) {
  const ScratchDir scratch;
  const std::string path = scratch.Write("file", "");
  const OwnedHandle file(tivCreateFileAW(path.c_str(), TIV_ACCESS_READ, 0, nullptr,
                                         TIV_OPEN_EXISTING, TIV_FLAG_DELETE_ON_CLOSE, nullptr));
  const auto record = SeenAs<HandleRecord>(file.get());
  EXPECT_EQ(record.type, 0);
  EXPECT_EQ(record.signalled, 0);
  EXPECT_EQ(SeenAs<OpenFile>(record.payload).end_of_file, 0);

  char byte = 0;
  DWORD count = 1;
  EXPECT_EQ(tivReadFile(file.get(), &byte, 1, &count, nullptr), TRUE);
  const auto open_file = SeenAs<OpenFile>(record.payload);
  EXPECT_NE(fcntl(open_file.descriptor, F_GETFD), -1);
  EXPECT_EQ(open_file.delete_on_close, 1);
  EXPECT_EQ(open_file.end_of_file, 1);
  EXPECT_EQ(open_file.path, path);
}

TEST(FindDataLayout, EntryFillsFiveNumbersAndAName) {
  const ScratchDir scratch;
  scratch.Write("entry", "12345");
  const std::string pattern = scratch / "ent*";
  // What follows the 280 bytes stays as it is.
  std::vector<char> data(300, 'x');
  void* place = data.data();
  const int32_t id = tivFindFirstDirEnt(pattern.c_str(), static_cast<TivFindData*>(place));
  ASSERT_GE(id, 1);
  uint32_t numbers[5];
  std::memcpy(numbers, data.data(), sizeof numbers);
  EXPECT_EQ(numbers[0], 0U);
  EXPECT_EQ(numbers[1], 0U);
  EXPECT_GT(numbers[2], 0U);
  EXPECT_GT(numbers[3], 0U);
  EXPECT_EQ(numbers[4], 5U);
  EXPECT_STREQ(data.data() + 20, "entry");
  EXPECT_EQ(std::string(data.data() + 280, 20), std::string(20, 'x'));

  const auto record = SeenAs<SearchRecord>(pDirEntTable[id - 1]);
  EXPECT_NE(record.stream, nullptr);
  EXPECT_STREQ(record.pattern, "ent*");
  EXPECT_EQ(record.directory, scratch.path() + "/");
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

using LibraryRecordLayout = zebcomn_test::ModuleTest;

TEST_F(LibraryRecordLayout, LoadedNameShowsItsModuleAndItsCount) {
  const std::string path = PlainModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  ASSERT_NE(module, nullptr);
  ASSERT_EQ(tivLoadLibrary(path.c_str(), nullptr), module);
  EXPECT_EQ(tivDisableThreadLibraryCalls(module), TRUE);
  const auto record = SeenAs<LibraryRecord>(pDynamicLibraryList[0]);
  EXPECT_EQ(record.name, path);
  EXPECT_EQ(record.module, module);
  EXPECT_EQ(record.entry_routine, nullptr);
  EXPECT_EQ(record.references, 2);
  EXPECT_EQ(record.thread_calls_disabled, 1);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST(SystemTimeLayout, EightShortNumbersAreFilled) {
  uint16_t fields[9];
  std::memset(fields, 0xff, sizeof fields);
  tivGetSystemTime(reinterpret_cast<TivSystemTime*>(fields));
  const uint16_t largest[] = {0x7fff, 12, 6, 31, 23, 59, 60, 0};
  for (std::size_t i = 0; i < std::size(largest); ++i) EXPECT_LE(fields[i], largest[i]) << i;
  EXPECT_GE(fields[0], 2020);
  EXPECT_EQ(fields[8], 0xffff) << "beyond the record";
}

TEST(FileObjectLayout, HolderCallsThroughTheFourPointers) {
  struct Operations {
    uint32_t (*close)(void*);
    uint32_t (*read)(void*, void*, unsigned int, unsigned int*);
    uint32_t (*write)(void*, const void*, unsigned int, unsigned int*);
    uint32_t (*get_size)(void*, unsigned int*);
  };
  struct FileObject {
    void* operations;
    void* handle;
  };
  const ScratchDir scratch;
  TiFile* file = nullptr;
  ASSERT_EQ(tiCreateFile((scratch / "file").c_str(), static_cast<int>(TIV_ACCESS_READ_WRITE), 0,
                         TIV_CREATE_NEW, 0, &file),
            0U);
  const auto object = SeenAs<FileObject>(file);
  EXPECT_EQ(SeenAs<HandleRecord>(object.handle).type, 0);
  const auto operations = SeenAs<Operations>(object.operations);
  EXPECT_EQ(reinterpret_cast<void*>(operations.close), reinterpret_cast<void*>(tiCloseFile));
  EXPECT_EQ(reinterpret_cast<void*>(operations.read), reinterpret_cast<void*>(tiReadFile));
  EXPECT_EQ(reinterpret_cast<void*>(operations.write), reinterpret_cast<void*>(tiWriteFile));
  EXPECT_EQ(reinterpret_cast<void*>(operations.get_size), reinterpret_cast<void*>(tiGetFileSize));
  EXPECT_EQ(tiCloseFile(file), 0U);
}

}  // namespace
