// Files by name, file objects, searches, and what the system says of users and disks.
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "tests/portable/owned_handle.h"
#include "tests/reliability/sweep.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/util/disk_space.h"
#include "zebcomn/util/file_copy.h"
#include "zebcomn/util/find_files.h"
#include "zebcomn/util/make_directory.h"
#include "zebcomn/util/tivfio.h"
#include "zebcomn/util/user_name.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::PrivateHost;
using zebcomn_test::ReadFile;
using zebcomn_test::RecordOf;
using zebcomn_test::ScratchDir;
using zebcomn_test::Trial;

uint32_t StatusOf(bool success) {
  return success ? ZEBCOMN_STATUS_OK : ZEBCOMN_STATUS_FAILURE;
}

bool Exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

TiFile* Open(const std::string& path) {
  TiFile* file = nullptr;
  EXPECT_EQ(tiCreateFile(path.c_str(), static_cast<int>(TIV_ACCESS_READ_WRITE), 0, TIV_OPEN_ALWAYS,
                         0, &file),
            ZEBCOMN_STATUS_OK);
  return file;
}

ZEBCOMN_USE(FileObjectFailures, Creation, "tiCreateFile") {
  const ScratchDir dir;
  const std::string path = dir / "file";
  const std::string before = dir.Write("before", "");
  TiFile* const held = Open(before);
  TiFile* file = held;
  uint32_t status = 77;
  trial.Call([&] {
    status = tiCreateFile(path.c_str(), static_cast<int>(TIV_ACCESS_READ_WRITE), 0, TIV_OPEN_ALWAYS,
                          0, &file);
  });
  EXPECT_EQ(status, StatusOf(!trial.Failed()));
  EXPECT_EQ(file == nullptr, trial.Failed());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tiCloseFile(file), ZEBCOMN_STATUS_OK);
  EXPECT_EQ(tiCloseFile(held), ZEBCOMN_STATUS_OK);
}

ZEBCOMN_USE(FileObjectFailures, Transfer, "tiWriteFile", "tiReadFile", "tiGetFileSize") {
  const ScratchDir dir;
  TiFile* const file = Open(dir.Write("file", "abc"));
  char text[4] = "";
  unsigned int got = 77;
  unsigned int written = 77;
  unsigned int size = 77;
  uint32_t statuses[3] = {77, 77, 77};
  trial.Call([&] { statuses[0] = tiReadFile(file, text, 3, &got); });
  trial.Call([&] { statuses[1] = tiWriteFile(file, "def", 3, &written); });
  trial.Call([&] { statuses[2] = tiGetFileSize(file, &size); });
  EXPECT_EQ(statuses[0], StatusOf(!trial.FailedIn("read")));
  EXPECT_EQ(statuses[1], StatusOf(!trial.FailedIn("write")));
  EXPECT_EQ(statuses[2], StatusOf(!trial.FailedIn("fstat")));
  EXPECT_STREQ(text, trial.FailedIn("read") ? "" : "abc");
  // What was not read is written over.
  const unsigned int whole = trial.FailedIn("read") || trial.FailedIn("write") ? 3 : 6;
  EXPECT_EQ(size, trial.FailedIn("fstat") ? TIV_INVALID_DWORD : whole);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tiCloseFile(file), ZEBCOMN_STATUS_OK);
}

// The object is gone whatever happens; the handle underneath stays where its close fails, as the
// close of a handle alone does.
ZEBCOMN_USE(FileObjectFailures, Close, "tiCloseFile") {
  const ScratchDir dir;
  TiFile* const file = Open(dir / "file");
  HANDLE handle = file->handle;
  uint32_t status = 77;
  trial.Call([&] { status = tiCloseFile(file); });
  EXPECT_EQ(status, StatusOf(!trial.Failed()));
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  if (trial.FailedIn("pthread_mutex_lock")) {
    EXPECT_EQ(tivCloseHandle(handle), TRUE);
  } else if (trial.FailedIn("pthread_mutex_unlock")) {
    RecordOf(handle)->nRefCount = 1;
    EXPECT_EQ(tivCloseHandle(handle), TRUE);
  } else if (trial.Failed()) {
    std::free(RecordOf(handle)->pObject);
    std::free(handle);
  }
}

ZEBCOMN_USE(FileHelperFailures, Looks, "tiFolderExists", "tivmcomn_get_file_sizeA") {
  const ScratchDir dir;
  std::string folder = dir.path();
  std::string path = dir.Write("file", "abc");
  BOOL exists = 77;
  uint32_t status = 77;
  unsigned int size = 77;
  trial.Call([&] { exists = tiFolderExists(folder.data()); });
  trial.Call([&] { status = tivmcomn_get_file_sizeA(path.data(), &size); });
  const bool first = trial.FailedIn("stat", 1);
  const bool second = trial.FailedIn("stat", 2);
  EXPECT_EQ(trial.Failed(), first || second);
  EXPECT_EQ(exists, first ? FALSE : TRUE);
  EXPECT_EQ(status, StatusOf(!second));
  EXPECT_EQ(size, second ? 0U : 3U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(FileHelperFailures, Disk, "tivmcomn_get_disk_free_spaceA") {
  const ScratchDir dir;
  std::string folder = dir.path();
  ULONGLONG free_space = 77;
  uint32_t status = 77;
  trial.Call([&] { status = tivmcomn_get_disk_free_spaceA(folder.data(), &free_space); });
  EXPECT_EQ(status, StatusOf(!trial.Failed()));
  EXPECT_EQ(free_space == 77, trial.Failed());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(FileHelperFailures, User, "tivmcomn_get_user_name") {
  const bool is_known = getpwuid(getuid()) != nullptr;
  char name[256] = "as it was";
  uint32_t status = 77;
  trial.Call([&] { status = tivmcomn_get_user_name(name, sizeof name); });
  EXPECT_EQ(status, StatusOf(is_known && !trial.Failed()));
  EXPECT_EQ(std::string(name) == "as it was", status != ZEBCOMN_STATUS_OK);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// A user whose entry does not fit the first buffer.
void PutLongEntry(PrivateHost& host) {
  host.PutFile("/etc/nsswitch.conf", "passwd: files\n");
  host.PutFile("/etc/passwd", "somebody:x:0:0:" + std::string(3000, 'x') + ":/:/bin/sh\n");
}

ZEBCOMN_HOST_USE(FileHelperFailures, UserOfALongEntry, PutLongEntry, "tivmcomn_get_user_name") {
  char name[256] = "as it was";
  uint32_t status = 77;
  trial.Call([&] { status = tivmcomn_get_user_name(name, sizeof name); });
  EXPECT_EQ(status, StatusOf(!trial.Failed()));
  EXPECT_STREQ(name, trial.Failed() ? "as it was" : "somebody");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// How many directories of the path are asked for: each "/" is one, but for those at the front.
int DirectoriesOf(const std::string& path) {
  return static_cast<int>(std::count(path.begin() + 4, path.end(), '/'));
}

// The destination cannot be made, or is not filled; it may hold a part then. What the copy can do
// without, does no harm: a large buffer, directories that exist, the look at the destination.
void CheckCopy(Trial& trial, int overwrite, const std::string& old_text, size_t size = 3000,
               const std::string& name = "destination") {
  const ScratchDir dir;
  const std::string text(size, 'x');
  std::string source = dir.Write("source", text);
  std::string destination = dir / name;
  if (!old_text.empty()) dir.Write(name, old_text);
  BOOL copied = 77;
  trial.Call([&] { copied = tivmcomn_copy_file(source.data(), destination.data(), overwrite); });
  // The directories of the name are the last ones that are asked for.
  bool no_directory = false;
  for (int i = 0; i < std::count(name.begin(), name.end(), '/'); ++i) {
    no_directory = no_directory || trial.FailedIn("mkdir", DirectoriesOf(destination) - i);
  }
  const bool writes_nothing =
      size == 0 && (trial.FailedIn("fwrite") || trial.FailedIn("fwrite_unlocked"));
  const bool harmless = trial.FailedInAllocation() || trial.FailedIn("open", 1) ||
                        trial.FailedIn("close") || trial.FailedIn("fclose", 1) || writes_nothing ||
                        (trial.FailedIn("mkdir") && !no_directory);
  const bool refused = overwrite == 0 && !old_text.empty();
  EXPECT_EQ(copied, refused || (trial.Failed() && !harmless) ? FALSE : TRUE);
  if (copied == TRUE) {
    EXPECT_EQ(ReadFile(destination), text);
  } else if (refused) {
    EXPECT_EQ(ReadFile(destination), old_text);
  }
  EXPECT_EQ(ReadFile(source), text);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(FileHelperFailures, CopyToANewFile, "tivmcomn_copy_file") {
  CheckCopy(trial, 0, "");
}

ZEBCOMN_USE(FileHelperFailures, CopyOfSeveralBlocks, "tivmcomn_copy_file") {
  constexpr size_t kLargeBlockSize = size_t{256} * 1024;
  CheckCopy(trial, 0, "", 2 * kLargeBlockSize + 1);
}

ZEBCOMN_USE(FileHelperFailures, CopyOverAFile, "tivmcomn_copy_file") {
  CheckCopy(trial, 1, "something else");
}

ZEBCOMN_USE(FileHelperFailures, CopyIntoNewDirectories, "tivmcomn_copy_file") {
  CheckCopy(trial, 0, "", 3000, "new/directories/destination");
}

ZEBCOMN_USE(FileHelperFailures, CopyOfAnEmptyFile, "tivmcomn_copy_file") {
  CheckCopy(trial, 0, "", 0);
}

// Whatever is not known of the two files, neither loses anything.
ZEBCOMN_USE(FileHelperFailures, CopyOntoItself, "tivmcomn_copy_file") {
  const ScratchDir dir;
  std::string file = dir.Write("file", "text");
  std::string other_name = dir / "other name";
  EXPECT_EQ(link(file.c_str(), other_name.c_str()), 0);
  BOOL copied = 77;
  trial.Call([&] { copied = tivmcomn_copy_file(file.data(), other_name.data(), 1); });
  EXPECT_EQ(copied, FALSE);
  EXPECT_EQ(ReadFile(file), "text");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(FileHelperFailures, RefusedCopy, "tivmcomn_copy_file") {
  CheckCopy(trial, 0, "something else");
}

// A directory that cannot be made is passed over, and what lies below it cannot be made either.
template <typename Text>
void CheckDirectories(Trial& trial, uint32_t (*make)(typename Text::value_type*)) {
  const ScratchDir dir;
  const std::string path = dir / "a/b/";
  Text argument(path.begin(), path.end());
  const int calls = DirectoriesOf(path);
  uint32_t status = 77;
  trial.Call([&] { status = make(argument.data()); });
  EXPECT_EQ(status, ZEBCOMN_STATUS_FAILURE) << "in every case";
  const bool no_first = trial.FailedIn("mkdir", calls - 1);
  EXPECT_EQ(Exists(dir / "a"), !no_first);
  EXPECT_EQ(Exists(dir / "a/b"), !no_first && !trial.FailedIn("mkdir", calls));
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(FileHelperFailures, Directories, "tivmcomn_MakeRecursiveDirectoryA") {
  CheckDirectories<std::string>(trial, tivmcomn_MakeRecursiveDirectoryA);
}

ZEBCOMN_USE(FileHelperFailures, DirectoriesByAWideName, "tivmcomn_MakeRecursiveDirectoryW") {
  CheckDirectories<std::wstring>(trial, tivmcomn_MakeRecursiveDirectoryW);
}

ZEBCOMN_USE(FileHelperFailures, SearchBegun, "tivmcomn_findfirstA") {
  const ScratchDir dir;
  dir.Write("found", "abc");
  const std::string pattern = dir / "fou*";
  TivFindData data = {};
  int32_t search = 77;
  trial.Call([&] { search = tivmcomn_findfirstA(pattern.c_str(), &data); });
  const bool fails = trial.FailedIn("opendir") || trial.FailedIn("malloc") ||
                     trial.FailedIn("pthread_mutex_lock") || trial.FailedIn("readdir");
  EXPECT_EQ(search == 0, fails);
  EXPECT_STREQ(data.name, fails ? "" : "found");
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? EAGAIN : kErrorLeftAlone);
  if (!fails) {
    EXPECT_EQ(tivmcomn_findclose(search), TRUE);
  }
}

ZEBCOMN_USE(FileHelperFailures, SearchGoneOnAndEnded, "tivmcomn_findnextA", "tivmcomn_findclose") {
  const ScratchDir dir;
  dir.Write("found1", "");
  dir.Write("found2", "");
  const std::string pattern = dir / "found*";
  TivFindData data = {};
  const int32_t search = tivmcomn_findfirstA(pattern.c_str(), &data);
  BOOL found = 77;
  BOOL closed = 77;
  trial.Call([&] { found = tivmcomn_findnextA(search, &data); });
  trial.Call([&] { closed = tivmcomn_findclose(search); });
  EXPECT_EQ(found, trial.FailedIn("readdir") ? FALSE : TRUE);
  EXPECT_EQ(closed, trial.FailedIn("closedir") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

}  // namespace
