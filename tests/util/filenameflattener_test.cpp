// A path made absolute by its text alone.
#include "zebcomn/util/filenameflattener.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>
#include <string>

#include "tests/support/scratch_dir.h"
#include "tests/util/flatten_step_by_step.h"

namespace {

using zebcomn_test::FlattenStepByStep;
using zebcomn_test::kFails;
using zebcomn_test::ScratchDir;

std::string Flat(FileNameFlattener flattener) {
  std::string flat = "untouched";
  if (flattener.GetFlatPath(flat)) return flat;
  return flat == "untouched" ? kFails : "a failure wrote: " + flat;
}

std::string Flat(const std::string& path, const std::string& base) {
  return Flat(FileNameFlattener(path, base));
}

/// Goes into a directory, and back at the end.
class InDirectory {
 public:
  explicit InDirectory(const std::string& path) : back_(open(".", O_PATH | O_CLOEXEC)) {
    if (chdir(path.c_str()) != 0) ADD_FAILURE() << "chdir " << path;
  }
  ~InDirectory() {
    EXPECT_EQ(fchdir(back_), 0);
    close(back_);
  }
  InDirectory(const InDirectory&) = delete;
  InDirectory& operator=(const InDirectory&) = delete;

 private:
  int back_;
};

std::string WorkingDirectory() {
  char* const text = getcwd(nullptr, 0);
  const std::string directory = text;
  free(text);
  return directory;
}

TEST(FileNameFlattener, TextIsFlattened) {
  const struct {
    const char* path;
    const char* base;
    const char* expected;
  } rows[] = {
      {"c/./d/../e", "/a/b", "/a/b/c/e"},
      {"c", "/a/b", "/a/b/c"},
      {"c", "/a/b/", "/a/b/c"},
      {"c", "/a/./x/../b", "/a/b/c"},
      {".", "/a/b", "/a/b"},
      {"./", "/a/b", "/a/b"},
      {"..", "/a/b", "/a"},
      {"../..", "/a/b", ""},
      {"../../..", "/a/b", kFails},
      {"../c", "/a/b", "/a/c"},
      {"...", "/a/b", "/a/b/..."},
      {".c", "/a/b", "/a/b/.c"},
      {"c.", "/a/b", "/a/b/c."},
      {"..c", "/a/b", "/a/b/..c"},
      {"c..", "/a/b", "/a/b/c.."},
      {"/a/b/", "/x", "/a/b"},
      {"/a/b", "/x", "/a/b"},
      {"/a/./././b", "/x", "/a/b"},
      {"/a/b/.", "/x", "/a/b"},
      {"/a/b/..", "/x", "/a"},
      {"/a/b/../", "/x", "/a"},
      {"/a/b/c/../../d", "/x", "/a/d"},
      {"/a/../b/../c", "/x", "/c"},
      {"/x/../..", "/x", kFails},
      {"/../x", "/x", kFails},
      {"/..", "/x", kFails},
      {"/./..", "/x", kFails},
      {"/.", "/x", ""},
      {"x", "/a/../..", kFails},
      {"/abs", "/..", kFails},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Flat(row.path, row.base), row.expected) << row.path << " in " << row.base;
  }
}

TEST(FileNameFlattener, RootMeansTheBaseDirectory) {
  EXPECT_EQ(Flat("/", "/a/b"), "/a/b");
  EXPECT_EQ(Flat("", "/a/b"), "/a/b");
  EXPECT_EQ(Flat(FileNameFlattener("/")), WorkingDirectory());
  EXPECT_EQ(Flat(FileNameFlattener("")), WorkingDirectory());
  EXPECT_EQ(Flat("x", "/"), WorkingDirectory() + "/x");
}

TEST(FileNameFlattener, PathThatEndsAtTheRootIsEmpty) {
  EXPECT_EQ(Flat("/a/..", "/x"), "");
  EXPECT_EQ(Flat("/a/b/../..", "/x"), "");
  EXPECT_EQ(Flat("c", "/a/.."), "/c");
}

TEST(FileNameFlattener, RepeatedSeparatorsAreEmptyComponents) {
  EXPECT_EQ(Flat("//", "/x"), "/");
  EXPECT_EQ(Flat("///", "/x"), "//");
  EXPECT_EQ(Flat("/a//b", "/x"), "/a//b");
  EXPECT_EQ(Flat("/a//", "/x"), "/a/");
  EXPECT_EQ(Flat("/a//../b", "/x"), "/a/b");
  EXPECT_EQ(Flat("//../b", "/x"), "/b");
  EXPECT_EQ(Flat("//../../b", "/x"), kFails);
  EXPECT_EQ(Flat("a//b", "/x"), "/x/a//b");
}

TEST(FileNameFlattener, RelativePathIsTakenAgainstTheWorkingDirectory) {
  const ScratchDir scratch;
  const InDirectory inside(scratch.path());
  const std::string here = WorkingDirectory();
  EXPECT_EQ(Flat(FileNameFlattener("a/../b")), here + "/b");
  EXPECT_EQ(Flat("b", "base"), here + "/base/b");
}

TEST(FileNameFlattener, WorkingDirectoryOfRootGivesTwoSlashes) {
  const InDirectory root("/");
  EXPECT_EQ(Flat(FileNameFlattener("etc")), "//etc");
  EXPECT_EQ(Flat(FileNameFlattener("/")), "/");
  EXPECT_EQ(Flat(FileNameFlattener("../etc")), "/etc");
}

TEST(FileNameFlattener, UnreadableWorkingDirectoryLeavesTheRoot) {
  const ScratchDir scratch;
  const std::string gone = scratch / "gone";
  ASSERT_EQ(mkdir(gone.c_str(), 0700), 0);
  const InDirectory inside(gone);
  ASSERT_EQ(rmdir(gone.c_str()), 0);
  EXPECT_EQ(Flat(FileNameFlattener("a/b")), "/a/b");
  EXPECT_EQ(Flat(FileNameFlattener("/")), "");
  EXPECT_EQ(Flat(FileNameFlattener("..")), kFails);
}

TEST(FileNameFlattener, WorkingDirectoryThatDoesNotFitLeavesTheRoot) {
  const ScratchDir scratch;
  const InDirectory inside(scratch.path());
  const std::string name(200, 'd');
  while (WorkingDirectory().size() + 1 + name.size() < 1024) {
    ASSERT_EQ(mkdir(name.c_str(), 0700), 0);
    ASSERT_EQ(chdir(name.c_str()), 0);
  }
  const std::string last_that_fits(1023 - WorkingDirectory().size() - 1, 'e');
  ASSERT_EQ(mkdir((last_that_fits + "f").c_str(), 0700), 0);
  ASSERT_EQ(mkdir(last_that_fits.c_str(), 0700), 0);
  ASSERT_EQ(chdir(last_that_fits.c_str()), 0);
  const std::string here = WorkingDirectory();
  ASSERT_EQ(here.size(), 1023u);
  EXPECT_EQ(Flat(FileNameFlattener("x")), here + "/x");
  ASSERT_EQ(chdir(("../" + last_that_fits + "f").c_str()), 0);
  EXPECT_EQ(Flat(FileNameFlattener("x")), "/x");
}

TEST(FileNameFlattener, FlatteningAgainGivesTheSameVerdict) {
  FileNameFlattener good("/a/./b", "/x");
  EXPECT_TRUE(good.Flatten());
  EXPECT_TRUE(good.Flatten());
  EXPECT_EQ(Flat(good), "/a/b");
  FileNameFlattener bad("/a/../../b", "/x");
  EXPECT_FALSE(bad.Flatten());
  EXPECT_EQ(Flat(bad), kFails);
}

TEST(FileNameFlattener, FlatteningAgainAfterABadBaseTakesTheRoot) {
  FileNameFlattener flattener("c", "/..");
  EXPECT_EQ(Flat(flattener), kFails);
  EXPECT_TRUE(flattener.Flatten());
  EXPECT_EQ(Flat(flattener), "/c");
}

TEST(FileNameFlattener, EveryAnswerIsThatOfTheStepByStepEdits) {
  const char* const pieces[] = {"/", "/", "/", ".", "..", "a", "//", "/../", "/./", "bc"};
  std::mt19937 random(20260101);  // NOLINT: the same paths in every run
  int failures = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string path;
    for (auto left = random() % 12; left > 0; --left) path += pieces[random() % 10];
    const std::string base = round % 2 == 0 ? "/base/dir" : "";
    const std::string expected = FlattenStepByStep(path, base);
    ASSERT_EQ(Flat(path, base.empty() ? "/." : base), expected) << path;
    if (expected == kFails) ++failures;
  }
  EXPECT_GT(failures, 500);
  EXPECT_LT(failures, 15000);
}

TEST(FileNameFlattener, PathsOfAMillionComponentsAreNoBurden) {
  std::string up_and_down;
  std::string down_then_up;
  for (int i = 0; i < 1000000; ++i) up_and_down += "/a/..";
  for (int i = 0; i < 1000000; ++i) down_then_up += "/a";
  for (int i = 0; i < 999999; ++i) down_then_up += "/..";
  EXPECT_EQ(Flat(up_and_down, "/x"), "");
  EXPECT_EQ(Flat(down_then_up, "/x"), "/a");
  EXPECT_EQ(Flat(up_and_down + "/..", "/x"), kFails);
}

}  // namespace
