// The table of loaded libraries and the table of directory searches.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/portable/tables_in_use.h"
#include "tests/reliability/schedule.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/dynamic_library.h"

namespace {

using zebcomn_test::LibrariesInTable;
using zebcomn_test::OpenSearches;
using zebcomn_test::RunSchedules;
using zebcomn_test::ScratchDir;

/// Runs the same on several threads at once.
template <typename Body>
void RunTogether(int thread_count, Body body) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < thread_count; ++thread) {
    threads.emplace_back([&body, thread] { body(thread); });
  }
  for (std::thread& thread : threads) thread.join();
}

// Libraries.

void LoadUseAndFree(const std::string& path) {
  void* const module = tivLoadLibrary(path.c_str(), nullptr);
  ASSERT_NE(module, nullptr);
  EXPECT_NE(tivGetProcAddress(module, "answer", nullptr), nullptr) << "loaded means usable";
  EXPECT_EQ(tivDisableThreadLibraryCalls(module), TRUE) << "loaded means listed";
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

class LibrarySchedules : public ::testing::Test {
 protected:
  std::string Module(const std::string& name) {
    const std::string path = scratch_ / name;
    std::filesystem::copy_file(ZEBCOMN_PLAIN_MODULE, path);
    return path;
  }

  ScratchDir scratch_;
};

TEST_F(LibrarySchedules, OneModuleLoadedAndFreedBySeveral) {
  const std::string path = Module("shared.so");
  RunSchedules(150, [&path] {
    RunTogether(3, [&path](int) { LoadUseAndFree(path); });
    EXPECT_EQ(LibrariesInTable(), 0);
  });
}

TEST_F(LibrarySchedules, LoadsAtOnceShareOneEntry) {
  const std::string path = Module("once.so");
  RunSchedules(150, [&path] {
    void* modules[3] = {};
    RunTogether(3, [&](int thread) { modules[thread] = tivLoadLibrary(path.c_str(), nullptr); });
    EXPECT_EQ(LibrariesInTable(), 1);
    RunTogether(3, [&](int thread) { EXPECT_EQ(tivFreeLibrary(modules[thread]), TRUE); });
    EXPECT_EQ(LibrariesInTable(), 0);
  });
}

TEST_F(LibrarySchedules, OfTwoFreesOfOneLoadOneSucceeds) {
  const std::string path = Module("twice.so");
  RunSchedules(150, [&path] {
    void* const module = tivLoadLibrary(path.c_str(), nullptr);
    ASSERT_NE(module, nullptr);
    BOOL freed[2] = {};
    RunTogether(2, [&](int thread) { freed[thread] = tivFreeLibrary(module); });
    EXPECT_EQ(freed[0] + freed[1], 1);
    EXPECT_EQ(LibrariesInTable(), 0);
  });
}

// One thread looks through the table without its lock while the others fill and clear entries.
TEST_F(LibrarySchedules, LooksMeetNoFreedEntry) {
  const std::string paths[2] = {Module("first.so"), Module("second.so")};
  RunSchedules(150, [&paths] {
    RunTogether(3, [&paths](int thread) {
      if (thread < 2) return LoadUseAndFree(paths[thread]);
      int unknown = 0;
      for (int look = 0; look < 4; ++look) {
        EXPECT_EQ(tivDisableThreadLibraryCalls(&unknown), FALSE);
        EXPECT_EQ(tivFreeLibrary(&unknown), FALSE);
      }
    });
    EXPECT_EQ(LibrariesInTable(), 0);
  });
}

// Searches.

class SearchSchedules : public ::testing::Test {
 protected:
  SearchSchedules() {
    for (int folder = 0; folder < kFolders; ++folder) {
      std::filesystem::create_directory(Folder(folder));
      for (const char* name : {"a", "b"}) {
        std::FILE* file = std::fopen((Folder(folder) + "/" + Name(folder, name)).c_str(), "w");
        EXPECT_NE(file, nullptr);
        if (file != nullptr) std::fclose(file);
      }
    }
  }

  static constexpr int kFolders = 3;
  static std::string Name(int folder, const char* name) {
    return "of" + std::to_string(folder) + name;
  }
  std::string Folder(int folder) const { return scratch_ / std::to_string(folder); }

  ScratchDir scratch_;
};

TEST_F(SearchSchedules, SearchesAtOnceFindTheirOwnNames) {
  RunSchedules(200, [this] {
    RunTogether(kFolders, [this](int folder) {
      std::multiset<std::string> names;
      TivFindData data = {};
      const int32_t id = tivFindFirstDirEnt((Folder(folder) + "/of*").c_str(), &data);
      ASSERT_NE(id, -1);
      do {
        names.insert(data.name);
      } while (tivFindNextDirEnt(id, &data) == TRUE);
      EXPECT_EQ(tivFindCloseDirEnt(id), TRUE);
      EXPECT_EQ(names, (std::multiset<std::string>{Name(folder, "a"), Name(folder, "b")}));
    });
    EXPECT_EQ(OpenSearches(), 0);
  });
}

TEST_F(SearchSchedules, OfTwoClosesOneSucceeds) {
  RunSchedules(200, [this] {
    TivFindData data = {};
    const int32_t id = tivFindFirstDirEnt((Folder(0) + "/of*").c_str(), &data);
    ASSERT_NE(id, -1);
    BOOL closed[2] = {};
    RunTogether(2, [&](int thread) { closed[thread] = tivFindCloseDirEnt(id); });
    EXPECT_EQ(closed[0] + closed[1], 1);
    EXPECT_EQ(OpenSearches(), 0);
  });
}

}  // namespace
