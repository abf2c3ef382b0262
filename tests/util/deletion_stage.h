#ifndef ZEBCOMN_TESTS_UTIL_DELETION_STAGE_H_
#define ZEBCOMN_TESTS_UTIL_DELETION_STAGE_H_

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "tests/portable/tables_in_use.h"
#include "tests/support/private_host.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/util/delete_tree.h"

namespace zebcomn_test {

/// Tests that delete trees. The stage is an empty file system that is the root of a child's view,
/// so that no other file of the machine has a name there: a fault in the walk reaches nothing.
class DeletionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = WhyNoPrivateHost(); !why.empty()) GTEST_SKIP() << why;
  }

  /// Runs `body` on the stage, its current directory and root; the text that it returns.
  static std::string OnStage(const std::function<std::string()>& body) {
    return RunInPrivateHost([&body](PrivateHost& host) {
      host.PutEmptyDirectory("/mnt");
      if (chroot("/mnt") != 0 || chdir("/") != 0) return std::string("no stage");
      const std::string result = body();
      return OpenSearches() == 0 ? result : result + " and a search is left open";
    });
  }

  static void Write(const std::string& path, const std::string& text = "text") {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    WriteFile(path, text);
  }

  static bool Exists(const std::string& path) {
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0;
  }

  static void DeleteTree(std::string dir) { tivmcomn_deltree(dir.data()); }
  static void DeleteSubtree(std::string dir) { tivmcomn_delsubtree(dir.data()); }

  /// Everything below a directory, in order.
  static std::string Listing(const std::string& dir) {
    std::set<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) {
      paths.insert(entry.path().string());
    }
    std::string text;
    for (const std::string& path : paths) text += path + " ";
    return text;
  }
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_UTIL_DELETION_STAGE_H_
