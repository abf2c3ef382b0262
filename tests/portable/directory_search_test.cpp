#include "zebcomn/portable/directory_search.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/portable/tables_in_use.h"
#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scratch_dir.h"

namespace {

using zebcomn_test::ClearErrorSlot;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::OpenSearches;
using zebcomn_test::ScratchDir;

using Names = std::set<std::string>;

/// Every name that a search finds; the search is closed at the end.
Names NamesFound(const std::string& pattern) {
  Names names;
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt(pattern.c_str(), &data);
  if (id == -1) return names;
  do {
    names.insert(data.name);
  } while (tivFindNextDirEnt(id, &data) == TRUE);
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
  return names;
}

TivFindData DataOf(const std::string& pattern) {
  TivFindData data;
  std::memset(&data, 0xEE, sizeof(data));
  const int32_t id = tivFindFirstDirEnt(pattern.c_str(), &data);
  EXPECT_NE(id, -1) << pattern;
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
  return data;
}

/// The first search of this process, made before any test on a table that is full of something
/// else.
struct FirstSearch {
  FirstSearch() {
    static TivSearchRecord stale = {};
    for (TivSearchRecord*& entry : pDirEntTable) entry = &stale;
    TivFindData data = {};
    id = tivFindFirstDirEnt("/*", &data);
    open = OpenSearches();
    tivFindCloseDirEnt(id);
  }

  int32_t id = 0;
  int open = 0;
};
const FirstSearch first_search;

class DirectorySearchTest : public ::testing::Test {
 protected:
  DirectorySearchTest() { ClearErrorSlot(); }
  ~DirectorySearchTest() override {
    EXPECT_EQ(OpenSearches(), 0);
    EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), open_before_);
  }

  const int open_before_ = zebcomn_test::OpenDescriptorCount();
  ScratchDir scratch_;
};

TEST_F(DirectorySearchTest, FindsEveryNameThatMatchesOnce) {
  for (const char* name : {"a.log", "b.log", "x.log.1", "a.txt"}) scratch_.Write(name, "");
  EXPECT_EQ(NamesFound(scratch_ / "*.log"), (Names{"a.log", "b.log", "x.log.1"}));
  EXPECT_EQ(NamesFound(scratch_ / "a"), (Names{"a.log", "a.txt"}));
  EXPECT_EQ(NamesFound(scratch_ / "?.txt"), (Names{"a.txt"}));
}

TEST_F(DirectorySearchTest, DotAndDotDotAreEntriesLikeAnyOther) {
  scratch_.Write("a", "");
  EXPECT_EQ(NamesFound(scratch_ / "*"), (Names{".", "..", "a"}));
  EXPECT_EQ(NamesFound(scratch_ / "."), (Names{".", ".."}));
}

TEST_F(DirectorySearchTest, EmptyNamePatternFindsEverything) {
  scratch_.Write("a", "");
  EXPECT_EQ(NamesFound(scratch_ / ""), (Names{".", "..", "a"}));
}

TEST_F(DirectorySearchTest, NoMatchGivesNoSearchAndNoError) {
  TivFindData data = {};
  data.size = 77;
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "a*").c_str(), &data), -1);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(data.size, 77u);
}

TEST_F(DirectorySearchTest, DirectoryThatCannotBeOpenedGivesNoSearchAndNoError) {
  TivFindData data = {};
  const std::string file = scratch_.Write("file", "");
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "absent/*").c_str(), &data), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(tivFindFirstDirEnt((file + "/*").c_str(), &data), -1);
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(DirectorySearchTest, DirectoryWithoutPermissionGivesNoSearch) {
  ASSERT_EQ(mkdir((scratch_ / "closed").c_str(), 0), 0);
  const std::string pattern = scratch_ / "closed/*";
  ASSERT_EQ(chmod(scratch_.path().c_str(), 0755), 0);
  const std::string result = zebcomn_test::RunInFreshProcess([&pattern] {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) return std::string("skip");
    TivFindData data = {};
    ClearErrorSlot();
    const int32_t id = tivFindFirstDirEnt(pattern.c_str(), &data);
    return std::to_string(id) + " " + std::to_string(errno == EACCES) + " " +
           std::to_string(nErrno == kErrorLeftAlone);
  });
  if (result == "skip") GTEST_SKIP() << "this root cannot become another user";
  EXPECT_EQ(result, "-1 1 1");
}

TEST_F(DirectorySearchTest, NullArgumentsAreRefusedWith22) {
  TivFindData data = {};
  EXPECT_EQ(tivFindFirstDirEnt(nullptr, &data), -1);
  EXPECT_EQ(nErrno, EINVAL);
  ClearErrorSlot();
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "*").c_str(), nullptr), -1);
  EXPECT_EQ(nErrno, EINVAL);
  const int32_t id = tivFindFirstDirEnt((scratch_ / "*").c_str(), &data);
  ClearErrorSlot();
  EXPECT_EQ(tivFindNextDirEnt(id, nullptr), FALSE);
  EXPECT_EQ(nErrno, EINVAL);
  EXPECT_EQ(tivFindNextDirEnt(id, &data), TRUE) << "a refused call takes no entry";
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

TEST_F(DirectorySearchTest, IdsThatAreNoOpenSearchAreRefusedWith22) {
  TivFindData data = {};
  data.size = 77;
  for (const int32_t id : {-1, 0, 1, 50, 51, 1000, INT32_MIN, INT32_MAX}) {
    ClearErrorSlot();
    EXPECT_EQ(tivFindNextDirEnt(id, &data), FALSE) << id;
    EXPECT_EQ(nErrno, EINVAL) << id;
    ClearErrorSlot();
    EXPECT_EQ(tivFindCloseDirEnt(id), FALSE) << id;
    EXPECT_EQ(nErrno, EINVAL) << id;
  }
  EXPECT_EQ(data.size, 77u);
}

TEST_F(DirectorySearchTest, ClosedSearchIsNoLongerKnown) {
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt((scratch_ / "*").c_str(), &data);
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
  EXPECT_EQ(tivFindCloseDirEnt(id), FALSE);
  EXPECT_EQ(tivFindNextDirEnt(id, &data), FALSE);
  EXPECT_EQ(nErrno, EINVAL);
}

TEST_F(DirectorySearchTest, EndOfTheDirectoryIsNoError) {
  scratch_.Write("a", "");
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt((scratch_ / "a").c_str(), &data);
  const TivFindData before = data;
  EXPECT_EQ(tivFindNextDirEnt(id, &data), FALSE);
  EXPECT_EQ(tivFindNextDirEnt(id, &data), FALSE);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(std::memcmp(&before, &data, sizeof(data)), 0) << "the record is left alone";
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

TEST_F(DirectorySearchTest, FileDataIsSizeAndTimes) {
  const std::string path = scratch_.Write("file", "12345");
  const utimbuf times = {1000000, 2000000};
  ASSERT_EQ(utime(path.c_str(), &times), 0);
  const TivFindData data = DataOf(path);
  EXPECT_EQ(data.attributes, 0u);
  EXPECT_EQ(data.reserved, 0u);
  EXPECT_EQ(data.last_access_time, 1000000u);
  EXPECT_EQ(data.last_write_time, 2000000u);
  EXPECT_EQ(data.size, 5u);
  EXPECT_STREQ(data.name, "file");
}

TEST_F(DirectorySearchTest, WholeRecordIsClearedBeforeItIsFilled) {
  const TivFindData data = DataOf(scratch_.Write("file", ""));
  for (size_t i = std::strlen("file"); i < sizeof(data.name); ++i) {
    ASSERT_EQ(data.name[i], '\0') << i;
  }
}

TEST_F(DirectorySearchTest, DirectoriesAndLinksToThemHaveTheDirectoryAttribute) {
  ASSERT_EQ(mkdir((scratch_ / "folder").c_str(), 0700), 0);
  ASSERT_EQ(symlink("folder", (scratch_ / "link").c_str()), 0);
  EXPECT_EQ(DataOf(scratch_ / "folder").attributes, 16u);
  EXPECT_EQ(DataOf(scratch_ / "link").attributes, 16u);
}

TEST_F(DirectorySearchTest, EntryWithoutStatusHasOnlyItsName) {
  ASSERT_EQ(symlink("nowhere", (scratch_ / "dangling").c_str()), 0);
  const TivFindData data = DataOf(scratch_ / "dangling");
  EXPECT_STREQ(data.name, "dangling");
  EXPECT_EQ(data.attributes, 0u);
  EXPECT_EQ(data.last_access_time, 0u);
  EXPECT_EQ(data.last_write_time, 0u);
  EXPECT_EQ(data.size, 0u);
}

TEST_F(DirectorySearchTest, SizeAbove4GiBIsCutTo32Bits) {
  const std::string path = scratch_.Write("file", "");
  ASSERT_EQ(truncate(path.c_str(), (off_t{1} << 32) + 9), 0);
  EXPECT_EQ(DataOf(path).size, 9u);
}

TEST_F(DirectorySearchTest, PatternWithoutASlashSearchesTheCurrentDirectory) {
  scratch_.Write("abcdef", "12345");
  scratch_.Write("xabc", "");
  const std::string found = zebcomn_test::RunInFreshProcess([this] {
    if (chdir(scratch_.path().c_str()) != 0) return std::string("no chdir");
    TivFindData data = {};
    const int32_t id = tivFindFirstDirEnt("abc", &data);
    const std::string first = std::string(data.name) + " " + std::to_string(data.size) + " " +
                              pDirEntTable[id - 1]->directory + " " + pDirEntTable[id - 1]->pattern;
    return first + " " + std::to_string(tivFindNextDirEnt(id, &data));
  });
  EXPECT_EQ(found, "abcdef 5 . abc 0");
}

TEST_F(DirectorySearchTest, RecordHoldsDirectoryWithItsSlashAndNamePattern) {
  TivFindData data = {};
  const int32_t id = tivFindFirstDirEnt((scratch_ / "*").c_str(), &data);
  ASSERT_EQ(id, 1) << "the lowest free entry is taken";
  EXPECT_STREQ(pDirEntTable[0]->directory, (scratch_ / "").c_str());
  EXPECT_STREQ(pDirEntTable[0]->pattern, "*");
  EXPECT_NE(pDirEntTable[0]->stream, nullptr);
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

TEST_F(DirectorySearchTest, FirstSearchOfTheProcessClearsTheTable) {
  EXPECT_EQ(first_search.id, 1);
  EXPECT_EQ(first_search.open, 1);
}

/// The directory under names of a given length, with a "/" at the end.
std::string DirectoryOfLength(const ScratchDir& scratch, size_t length) {
  std::string path = scratch.path() + "/";
  while (path.size() + 2 <= length) path += "./";
  if (path.size() < length) path += "/";
  return path;
}

TEST_F(DirectorySearchTest, DirectoriesOf259And260BytesAreSearchedAndStatusPathsCutAt259) {
  scratch_.Write("file", "12345");
  for (const size_t length : {253u, 255u, 256u, 259u, 260u}) {
    const TivFindData data = DataOf(DirectoryOfLength(scratch_, length) + "file");
    EXPECT_STREQ(data.name, "file");
    // Cut at 259 bytes, a longer path is that of the directory itself here, or of nothing.
    EXPECT_EQ(data.size == 5u, length + 4 <= 259) << length;
  }
}

TEST_F(DirectorySearchTest, DirectoryOf300BytesIsCutAt260) {
  scratch_.Write("file", "");
  const std::string directory = DirectoryOfLength(scratch_, 260);
  TivFindData data = {};
  const int32_t id =
      tivFindFirstDirEnt((directory + std::string(39, 'x') + "/file").c_str(), &data);
  ASSERT_NE(id, -1) << "what follows byte 260 does not count";
  EXPECT_EQ(pDirEntTable[id - 1]->directory, directory);
  EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

TEST_F(DirectorySearchTest, NamePatternIsCutAt260Bytes) {
  scratch_.Write("file", "");
  for (const size_t stars : {259u, 260u, 300u}) {
    TivFindData data = {};
    const std::string pattern = scratch_ / (std::string(stars, '*') + "none");
    const int32_t id = tivFindFirstDirEnt(pattern.c_str(), &data);
    // Up to byte 260 the pattern is one of stars alone, with which every name matches.
    EXPECT_EQ(id, stars >= 260 ? 1 : -1) << stars;
    if (id == -1) continue;
    EXPECT_EQ(std::strlen(pDirEntTable[id - 1]->pattern), 260u);
    EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
  }
}

TEST_F(DirectorySearchTest, NamesOf255BytesAreWhole) {
  const std::string name(255, 'n');
  scratch_.Write(name, "");
  EXPECT_EQ(NamesFound(scratch_ / "n*"), (Names{name}));
}

TEST_F(DirectorySearchTest, FiftyFirstSearchIsRefusedWith11) {
  TivFindData data = {};
  for (int32_t expected = 1; expected <= 50; ++expected) {
    ASSERT_EQ(tivFindFirstDirEnt((scratch_ / "*").c_str(), &data), expected);
  }
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "*").c_str(), &data), -1);
  EXPECT_EQ(nErrno, EAGAIN);
  EXPECT_EQ(tivFindCloseDirEnt(17), TRUE);
  EXPECT_EQ(tivFindFirstDirEnt((scratch_ / "*").c_str(), &data), 17) << "the lowest free entry";
  for (int32_t id = 1; id <= 50; ++id) EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

TEST_F(DirectorySearchTest, FiftySearchesKeepTheirPlacesApart) {
  std::vector<int32_t> ids;
  TivFindData data = {};
  for (int i = 0; i < 50; ++i) {
    const std::string folder = "d" + std::to_string(i);
    scratch_.Write(folder + "/one", "");
    scratch_.Write(folder + "/two" + std::to_string(i), "");
    ids.push_back(tivFindFirstDirEnt((scratch_ / (folder + "/two")).c_str(), &data));
    EXPECT_EQ(data.name, "two" + std::to_string(i));
  }
  for (const int32_t id : ids) {
    EXPECT_EQ(tivFindNextDirEnt(id, &data), FALSE);
    EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
  }
}

TEST_F(DirectorySearchTest, SetFindDataPutsASlashBetweenDirectoryAndName) {
  scratch_.Write("file", "12345");
  dirent entry = {};
  std::strcpy(entry.d_name, "file");
  for (const std::string& directory : {scratch_.path(), scratch_ / ""}) {
    TivFindData data;
    std::memset(&data, 0xEE, sizeof(data));
    EXPECT_EQ(tivSetFindDataDirEnt(&data, &entry, directory.c_str()), &data);
    EXPECT_STREQ(data.name, "file");
    EXPECT_EQ(data.size, 5u);
    EXPECT_EQ(data.reserved, 0u);
  }
}

TEST_F(DirectorySearchTest, SetFindDataWithAnEmptyDirectoryTakesTheNameAlone) {
  const std::string path = scratch_.Write("f", "12345");
  dirent entry = {};
  ASSERT_LT(path.size(), sizeof(entry.d_name));
  std::strcpy(entry.d_name, path.c_str());
  TivFindData data = {};
  tivSetFindDataDirEnt(&data, &entry, "");
  EXPECT_EQ(data.size, 5u);
}

TEST_F(DirectorySearchTest, SetFindDataRefusesNullWith22) {
  TivFindData data = {};
  data.size = 77;
  const dirent entry = {};
  EXPECT_EQ(tivSetFindDataDirEnt(nullptr, &entry, "."), nullptr);
  EXPECT_EQ(tivSetFindDataDirEnt(&data, nullptr, "."), nullptr);
  EXPECT_EQ(nErrno, EINVAL);
  EXPECT_EQ(tivSetFindDataDirEnt(&data, &entry, nullptr), nullptr);
  EXPECT_EQ(data.size, 77u);
}

TEST_F(DirectorySearchTest, ManyThreadsSearchAtOnce) {
  constexpr int kThreads = 8;
  constexpr int kRounds = 200;
  for (int i = 0; i < kThreads; ++i) scratch_.Write("d" + std::to_string(i) + "/file", "");
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([this, i, &wrong] {
      const std::string pattern = scratch_ / ("d" + std::to_string(i) + "/f*");
      for (int round = 0; round < kRounds; ++round) {
        TivFindData data = {};
        const int32_t id = tivFindFirstDirEnt(pattern.c_str(), &data);
        const bool right = id != -1 && std::strcmp(data.name, "file") == 0 &&
                           tivFindNextDirEnt(id, &data) == FALSE && tivFindCloseDirEnt(id) == TRUE;
        if (!right) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong.load(), 0);
}

TEST_F(DirectorySearchTest, ThreadsThatFillTheTableGetFiftySearchesInAll) {
  constexpr int kThreads = 5;
  std::atomic<int> opened{0};
  std::atomic<int> refused{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([this, &opened, &refused] {
      for (int n = 0; n < 20; ++n) {
        TivFindData data = {};
        ++(tivFindFirstDirEnt((scratch_ / "*").c_str(), &data) == -1 ? refused : opened);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(opened.load(), 50);
  EXPECT_EQ(refused.load(), 50);
  for (int32_t id = 1; id <= 50; ++id) EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
}

}  // namespace
