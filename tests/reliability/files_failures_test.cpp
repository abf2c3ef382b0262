// File handles, files by name and directory searches.
#include <dirent.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/portable/owned_handle.h"
#include "tests/portable/tables_in_use.h"
#include "tests/reliability/sweep.h"
#include "tests/reliability/working_directory.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/named_file.h"
#include "zebcomn/portable/wildcard.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::OpenSearches;
using zebcomn_test::OwnedHandle;
using zebcomn_test::ReadFile;
using zebcomn_test::RecordOf;
using zebcomn_test::ScratchDir;
using zebcomn_test::Trial;
using zebcomn_test::WorkingDirectory;

HANDLE OpenFile(const std::string& path, DWORD flags = 0) {
  return tivCreateFileAW(path.c_str(), TIV_ACCESS_READ_WRITE, 0, nullptr, TIV_OPEN_ALWAYS, flags,
                         nullptr);
}

ZEBCOMN_USE(FileFailures, Open, "tivCreateFileAW") {
  const ScratchDir dir;
  const std::string path = dir / "file";
  HANDLE file = nullptr;
  trial.Call([&] { file = OpenFile(path); });
  EXPECT_EQ(file == nullptr, trial.Failed());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
}

// What the opening has made of the file stays, also where there is no memory for a handle.
void CheckOpening(Trial& trial, DWORD access_wanted, DWORD disposition, const char* before,
                  const std::string& after) {
  const ScratchDir dir;
  const std::string path = dir / "file";
  if (before != nullptr) dir.Write("file", before);
  HANDLE file = nullptr;
  trial.Call([&] {
    file = tivCreateFileAW(path.c_str(), access_wanted, 0, nullptr, disposition, 0, nullptr);
  });
  EXPECT_EQ(file == nullptr, trial.Failed());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tivCloseHandle(file), TRUE);
  const bool is_there = access(path.c_str(), F_OK) == 0;
  EXPECT_EQ(is_there, before != nullptr || !trial.FailedIn("open"));
  if (is_there) {
    EXPECT_EQ(ReadFile(path), trial.FailedIn("open") ? before : after);
  }
}

ZEBCOMN_USE(FileFailures, OpenOfANewFile, "tivCreateFileAW") {
  CheckOpening(trial, TIV_ACCESS_WRITE, TIV_CREATE_NEW, nullptr, "");
}

ZEBCOMN_USE(FileFailures, OpenOfAFileThatIsEmptied, "tivCreateFileAW") {
  CheckOpening(trial, TIV_ACCESS_READ_WRITE, TIV_CREATE_ALWAYS, "text", "");
}

ZEBCOMN_USE(FileFailures, OpenOfAFileThatIsThere, "tivCreateFileAW") {
  CheckOpening(trial, TIV_ACCESS_READ, TIV_OPEN_EXISTING, "text", "text");
}

ZEBCOMN_USE(FileFailures, OpenOfAnAbsentFile, "tivCreateFileAW") {
  const ScratchDir dir;
  const std::string path = dir / "absent";
  HANDLE file = &trial;
  trial.Call([&] {
    file =
        tivCreateFileAW(path.c_str(), TIV_ACCESS_READ, 0, nullptr, TIV_OPEN_EXISTING, 0, nullptr);
  });
  EXPECT_EQ(file, nullptr);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(FileFailures, Close, "tivCloseHandle") {
  const ScratchDir dir;
  const std::string path = dir / "file";
  HANDLE file = OpenFile(path, TIV_FLAG_DELETE_ON_CLOSE);
  BOOL closed = FALSE;
  trial.Call([&] { closed = tivCloseHandle(file); });
  EXPECT_EQ(closed, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(access(path.c_str(), F_OK) == 0, trial.Failed());
  if (trial.FailedIn("pthread_mutex_lock")) {
    EXPECT_EQ(tivCloseHandle(file), TRUE);
  } else if (trial.Failed()) {
    if (trial.FailedIn("pthread_mutex_unlock")) {
      RecordOf(file)->nRefCount = 1;
      EXPECT_EQ(tivCloseHandle(file), TRUE);
    } else {
      std::free(RecordOf(file)->pObject);
      std::free(file);
    }
  }
}

ZEBCOMN_USE(FileFailures, Transfer, "tivReadFile", "tivWriteFile", "tivSetFilePointer") {
  const ScratchDir dir;
  const OwnedHandle file(OpenFile(dir / "file"));
  DWORD written = 77;
  DWORD got = 77;
  BOOL wrote = FALSE;
  BOOL read = FALSE;
  LONG position = 77;
  char text[8] = "";
  trial.Call([&] { wrote = tivWriteFile(file.get(), "abc", 3, &written); });
  trial.Call([&] { position = tivSetFilePointer(file.get(), 0, nullptr, 0); });
  EXPECT_EQ(wrote, trial.FailedIn("write") ? FALSE : TRUE);
  EXPECT_EQ(written, trial.FailedIn("write") ? 77U : 3U);
  EXPECT_EQ(position, trial.FailedIn("lseek") ? -1 : 0);
  tivSetFilePointer(file.get(), 0, nullptr, 0);
  trial.Call([&] { read = tivReadFile(file.get(), text, sizeof text, &got, nullptr); });
  EXPECT_EQ(read, trial.FailedIn("read") ? FALSE : TRUE);
  const DWORD expected = trial.FailedIn("write") ? 0 : 3;
  EXPECT_EQ(got, trial.FailedIn("read") ? 77U : expected);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// The end of a file is a success with nothing read.
ZEBCOMN_USE(FileFailures, ReadAtTheEnd, "tivReadFile") {
  const ScratchDir dir;
  const OwnedHandle file(OpenFile(dir / "file"));
  DWORD got = 77;
  BOOL read = 77;
  char text[8] = "";
  trial.Call([&] { read = tivReadFile(file.get(), text, sizeof text, &got, nullptr); });
  EXPECT_EQ(read, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(got, trial.Failed() ? 77U : 0U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(FileFailures, Size, "tivGetFileSize", "tivSetEndOfFile") {
  const ScratchDir dir;
  const OwnedHandle file(OpenFile(dir.Write("file", "abcdef")));
  tivSetFilePointer(file.get(), 2, nullptr, 0);
  BOOL cut = FALSE;
  DWORD size = 0;
  DWORD high = 77;
  trial.Call([&] { cut = tivSetEndOfFile(file.get()); });
  trial.Call([&] { size = tivGetFileSize(file.get(), &high); });
  const bool kept = trial.FailedIn("lseek") || trial.FailedIn("ftruncate");
  EXPECT_EQ(cut, kept ? FALSE : TRUE);
  if (trial.FailedIn("fstat")) {
    EXPECT_EQ(size, TIV_INVALID_DWORD);
    EXPECT_EQ(high, 77U);
  } else {
    EXPECT_EQ(size, kept ? 6U : 2U);
    EXPECT_EQ(high, 0U);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(NamedFileFailures, TemporaryName, "tivGetTempFileName") {
  const ScratchDir dir;
  char name[ZEBCOMN_PATH_CAPACITY] = "";
  UINT number = 77;
  trial.Call([&] { number = tivGetTempFileName(dir.path().c_str(), "prefix", 0, name); });
  const bool fails = trial.FailedInAllocation() || trial.FailedIn("mkostemp");
  EXPECT_EQ(number, fails ? 0U : 1U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(access(name, F_OK) == 0, !fails);
  EXPECT_EQ(rmdir(dir.path().c_str()) == 0, fails) << "no file is left";
}

ZEBCOMN_USE(NamedFileFailures, Copy, "tivCopyFile") {
  const ScratchDir dir;
  const std::string text(3000, 'x');
  const std::string source = dir.Write("source", text);
  const std::string destination = dir / "destination";
  BOOL copied = FALSE;
  trial.Call([&] { copied = tivCopyFile(source.c_str(), destination.c_str(), FALSE); });
  // A smaller buffer, a directory that exists already and the end of the reading do no harm.
  const bool harmless = trial.FailedInAllocation() || trial.FailedIn("mkdir") ||
                        trial.FailedIn("open", 1) || trial.FailedIn("close") ||
                        trial.FailedIn("fclose", 1);
  EXPECT_EQ(copied, trial.Failed() && !harmless ? FALSE : TRUE);
  if (copied == TRUE) {
    EXPECT_EQ(ReadFile(destination), text);
  }
  EXPECT_EQ(ReadFile(source), text);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(NamedFileFailures, Move, "tivMoveFile") {
  const ScratchDir dir;
  const std::string source = dir.Write("source", "x");
  const std::string destination = dir / "destination";
  BOOL moved = FALSE;
  trial.Call([&] { moved = tivMoveFile(source.c_str(), destination.c_str()); });
  EXPECT_EQ(moved, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(access(destination.c_str(), F_OK) == 0, moved == TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(NamedFileFailures, Stubs, "tivSetFileAttributes", "tivGetFileVersionInfo",
                          "tivVerQueryValue") {
  trial.Call([] {
    EXPECT_EQ(tivSetFileAttributes("file", 0), TRUE);
    EXPECT_EQ(tivGetFileVersionInfo("file", 0, 0, nullptr), FALSE);
    EXPECT_EQ(tivVerQueryValue(nullptr, nullptr, nullptr, nullptr), FALSE);
  });
}

ZEBCOMN_USE(SearchFailures, First, "tivFindFirstDirEnt") {
  const ScratchDir dir;
  dir.Write("found", "abc");
  const std::string pattern = dir / "fou*";
  TivFindData data = {};
  int32_t id = 0;
  trial.Call([&] { id = tivFindFirstDirEnt(pattern.c_str(), &data); });
  const bool fails = trial.FailedIn("opendir") || trial.FailedIn("malloc") ||
                     trial.FailedIn("pthread_mutex_lock") || trial.FailedIn("readdir");
  EXPECT_EQ(id == -1, fails);
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? EAGAIN : kErrorLeftAlone);
  EXPECT_STREQ(data.name, fails ? "" : "found");
  EXPECT_EQ(data.size, fails || trial.FailedIn("stat") ? 0U : 3U);
  EXPECT_EQ(OpenSearches(), fails ? 0 : 1);
  if (!fails) {
    EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
  }
}

ZEBCOMN_USE(SearchFailures, FirstInTheWorkingDirectory, "tivFindFirstDirEnt") {
  const ScratchDir dir;
  const WorkingDirectory here(dir.path());
  dir.Write("found", "abc");
  TivFindData data = {};
  int32_t id = 0;
  trial.Call([&] { id = tivFindFirstDirEnt("fou*", &data); });
  const bool fails =
      trial.Failed() && !trial.FailedIn("stat") && !trial.FailedIn("pthread_mutex_unlock");
  EXPECT_EQ(id == -1, fails);
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? EAGAIN : kErrorLeftAlone);
  EXPECT_EQ(data.size, fails || trial.FailedIn("stat") ? 0U : 3U);
  if (!fails) {
    EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
  }
  EXPECT_EQ(OpenSearches(), 0);
}

ZEBCOMN_USE(SearchFailures, FirstWithoutAMatch, "tivFindFirstDirEnt") {
  const ScratchDir dir;
  const std::string pattern = dir / "absent";
  TivFindData data = {};
  int32_t id = 0;
  trial.Call([&] { id = tivFindFirstDirEnt(pattern.c_str(), &data); });
  EXPECT_EQ(id, -1);
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? EAGAIN : kErrorLeftAlone);
  EXPECT_EQ(OpenSearches(), 0);
}

ZEBCOMN_USE(SearchFailures, NextAndClose, "tivFindNextDirEnt", "tivFindCloseDirEnt") {
  const ScratchDir dir;
  dir.Write("found1", "");
  dir.Write("found2", "");
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt((dir / "found").c_str(), &data);
  BOOL found = FALSE;
  BOOL closed = FALSE;
  trial.Call([&] { found = tivFindNextDirEnt(id, &data); });
  trial.Call([&] { closed = tivFindCloseDirEnt(id); });
  EXPECT_EQ(found, trial.FailedIn("readdir") ? FALSE : TRUE);
  EXPECT_EQ(closed, trial.FailedIn("closedir") ? FALSE : TRUE);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(OpenSearches(), 0);
}

ZEBCOMN_USE(SearchFailures, NextAtTheEnd, "tivFindNextDirEnt") {
  const ScratchDir dir;
  dir.Write("found", "");
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt((dir / "found").c_str(), &data);
  BOOL found = 77;
  trial.Call([&] { found = tivFindNextDirEnt(id, &data); });
  EXPECT_EQ(found, FALSE);
  EXPECT_STREQ(data.name, "found") << "as it was";
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

ZEBCOMN_USE(SearchFailures, EntryData, "tivSetFindDataDirEnt") {
  const ScratchDir dir;
  dir.Write("file", "abc");
  dirent entry = {};
  std::strcpy(entry.d_name, "file");
  TivFindData data = {};
  TivFindData* filled = nullptr;
  trial.Call([&] { filled = tivSetFindDataDirEnt(&data, &entry, dir.path().c_str()); });
  EXPECT_EQ(filled, &data);
  EXPECT_STREQ(data.name, "file");
  EXPECT_EQ(data.size, trial.Failed() ? 0U : 3U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(SearchFailures, Wildcard, "tivWildCardMatch") {
  trial.Call([] { EXPECT_EQ(tivWildCardMatch("a*c", "abc"), 0); });
}

}  // namespace
