#include "zebcomn/util/delete_tree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "tests/support/descriptors.h"
#include "tests/support/error_slot.h"
#include "tests/support/scratch_dir.h"
#include "tests/util/deletion_stage.h"
#include "zebcomn/portable/directory_search.h"

namespace {

using zebcomn_test::WriteFile;

namespace fs = std::filesystem;

class DeleteTreeTest : public zebcomn_test::DeletionTest {
 protected:
  static void MakeSampleTree();
  /// Makes a directory whose path has `length` bytes, and gives the path.
  static std::string DirectoryOfLength(size_t length);
  /// Makes a directory `depth` levels below "/deep", each with a file beside the next; its path.
  static std::string MakeDeepTree(int depth);
};

void DeleteTreeTest::MakeSampleTree() {
  Write("/tree/file");
  Write("/tree/.hidden");
  Write("/tree/sub/deep/er/file");
  fs::create_directories("/tree/empty");
  Write("/other/file");
}

TEST_F(DeleteTreeTest, TreeIsRemovedWithItsDirectory) {
  EXPECT_EQ(OnStage([] {
              MakeSampleTree();
              DeleteTree("/tree");
              return Listing("/");
            }),
            "/other /other/file ");
}

TEST_F(DeleteTreeTest, SubtreeIsRemovedAndItsDirectoryStaysEmpty) {
  EXPECT_EQ(OnStage([] {
              MakeSampleTree();
              DeleteSubtree("/tree");
              return Listing("/");
            }),
            "/other /other/file /tree ");
}

TEST_F(DeleteTreeTest, SlashAtTheEndOfTheDirectoryDoesNotMatter) {
  EXPECT_EQ(OnStage([] {
              MakeSampleTree();
              DeleteSubtree("/other//");
              DeleteTree("/tree/");
              return Listing("/");
            }),
            "/other ");
}

TEST_F(DeleteTreeTest, RelativeDirectoryIsThatOfTheCurrentOne) {
  EXPECT_EQ(OnStage([] {
              MakeSampleTree();
              if (chdir("/tree") != 0) return std::string("no chdir");
              DeleteTree("sub");
              return Listing("/tree");
            }),
            "/tree/.hidden /tree/empty /tree/file ");
}

TEST_F(DeleteTreeTest, NullAndEmptyPathsDoNothing) {
  EXPECT_EQ(OnStage([] {
              Write("/file");
              tivmcomn_deltree(nullptr);
              tivmcomn_delsubtree(nullptr);
              DeleteTree("");
              DeleteSubtree("");
              return Listing("/");
            }),
            "/file ");
}

TEST_F(DeleteTreeTest, AbsentDirectoryAndFileAreLeftAlone) {
  EXPECT_EQ(OnStage([] {
              Write("/file");
              DeleteTree("/absent");
              DeleteSubtree("/absent");
              DeleteTree("/file");
              DeleteSubtree("/file");
              return Listing("/");
            }),
            "/file ");
}

TEST_F(DeleteTreeTest, LinksInTheTreeAreRemovedAndNeverFollowed) {
  EXPECT_EQ(OnStage([] {
              Write("/outside/kept");
              Write("/tree/sub/file");
              fs::create_symlink("/outside", "/tree/link");
              fs::create_symlink("../../outside", "/tree/sub/relative");
              fs::create_symlink("/outside/kept", "/tree/to-file");
              fs::create_symlink("/nowhere", "/tree/dangling");
              fs::create_symlink(".", "/tree/loop");
              DeleteTree("/tree");
              return Listing("/");
            }),
            "/outside /outside/kept ");
}

TEST_F(DeleteTreeTest, LinksInASubtreeAreRemovedAndNeverFollowed) {
  EXPECT_EQ(OnStage([] {
              Write("/outside/kept");
              fs::create_directories("/tree");
              fs::create_symlink("/outside", "/tree/link");
              DeleteSubtree("/tree");
              return Listing("/");
            }),
            "/outside /outside/kept /tree ");
}

TEST_F(DeleteTreeTest, LinkThatIsNamedIsRemovedItselfByDeltree) {
  for (const char* name : {"/link", "/link/", "/link//"}) {
    EXPECT_EQ(OnStage([name] {
                Write("/outside/kept");
                fs::create_symlink("/outside", "/link");
                DeleteTree(name);
                return Listing("/");
              }),
              "/outside /outside/kept ");
  }
}

TEST_F(DeleteTreeTest, LinkThatIsNamedIsLeftAloneByDelsubtree) {
  for (const char* name : {"/link", "/link/"}) {
    EXPECT_EQ(OnStage([name] {
                Write("/outside/kept");
                fs::create_symlink("/outside", "/link");
                DeleteSubtree(name);
                return Exists("/link") && Exists("/outside/kept") ? std::string("both left")
                                                                  : Listing("/");
              }),
              "both left");
  }
}

TEST_F(DeleteTreeTest, OtherKindsOfFilesAreRemoved) {
  EXPECT_EQ(OnStage([] {
              fs::create_directories("/tree");
              if (mkfifo("/tree/pipe", 0600) != 0) return std::string("no pipe");
              DeleteTree("/tree");
              return Listing("/");
            }),
            "");
}

TEST_F(DeleteTreeTest, ManyEntriesAreRemoved) {
  EXPECT_EQ(OnStage([] {
              for (int i = 0; i < 1500; ++i) Write("/tree/file" + std::to_string(i), "");
              DeleteTree("/tree");
              return Listing("/");
            }),
            "");
}

TEST_F(DeleteTreeTest, WhatCannotBeRemovedIsSkipped) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become another user inside";
  EXPECT_EQ(OnStage([] {
              Write("/tree/locked/file");
              Write("/tree/open/file");
              chmod("/tree", 0777);
              chmod("/tree/open", 0777);
              constexpr uid_t kNobody = 65534;
              if (setresuid(kNobody, kNobody, kNobody) != 0) return std::string("no other user");
              DeleteTree("/tree");
              return Listing("/");
            }),
            "/tree /tree/locked /tree/locked/file ");
}

std::string DeleteTreeTest::DirectoryOfLength(size_t length) {
  std::string path = "/long";
  while (length - path.size() > 101) path += "/" + std::string(99, 'd');
  path += "/" + std::string(length - path.size() - 1, 'e');
  fs::create_directories(path);
  return path;
}

struct LengthCase {
  size_t directory;  ///< Length of the directory's path.
  size_t name;       ///< Length of the name of a file in it.
  bool file_removed;
  bool directory_removed;
};

TEST_F(DeleteTreeTest, PathsThatDoNotFitTheBufferAreLeft) {
  for (const LengthCase& c : {
           LengthCase{200, 57, true, true},    // The file's path has 258 bytes,
           LengthCase{200, 58, true, true},    // 259,
           LengthCase{200, 59, false, false},  // 260,
           LengthCase{200, 99, false, false},  // and 300.
           LengthCase{257, 1, true, true},     // The search of the directory just fits,
           LengthCase{258, 1, false, false},   // and from here on does not.
           LengthCase{259, 1, false, false},
           LengthCase{260, 1, false, false},
           LengthCase{300, 1, false, false},
       }) {
    const std::string result = OnStage([c] {
      const std::string dir = DirectoryOfLength(c.directory);
      const std::string file = dir + "/" + std::string(c.name, 'f');
      WriteFile(file, "");
      DeleteTree(dir);
      return std::to_string(!Exists(file)) + std::to_string(!Exists(dir));
    });
    EXPECT_EQ(result, std::to_string(c.file_removed) + std::to_string(c.directory_removed))
        << c.directory << " " << c.name;
  }
}

TEST_F(DeleteTreeTest, EmptyDirectoriesOfUpTo259BytesAreRemoved) {
  for (const size_t length : {257u, 258u, 259u, 260u, 300u}) {
    EXPECT_EQ(OnStage([length] {
                const std::string dir = DirectoryOfLength(length);
                DeleteTree(dir);
                return std::to_string(!Exists(dir));
              }),
              length <= 259 ? "1" : "0")
        << length;
  }
}

TEST_F(DeleteTreeTest, LongPathInTheTreeIsLeftWithTheDirectoriesThatHoldIt) {
  EXPECT_EQ(OnStage([] {
              const std::string dir = DirectoryOfLength(300);
              Write("/long/file");
              DeleteTree("/long");
              return std::to_string(Exists(dir)) + std::to_string(Exists("/long/file"));
            }),
            "10");
}

std::string DeleteTreeTest::MakeDeepTree(int depth) {
  std::string path = "/deep";
  for (int level = 0; level < depth; ++level) {
    Write(path + "/f");
    path += "/d";
  }
  Write(path + "/f");
  return path;
}

TEST_F(DeleteTreeTest, TreeAsDeepAsTheSearchTableIsRemoved) {
  EXPECT_EQ(OnStage([] {
              MakeDeepTree(49);
              DeleteTree("/deep");
              return Listing("/");
            }),
            "");
}

TEST_F(DeleteTreeTest, TreeDeeperThanTheSearchTableIsLeftFromThereOn) {
  EXPECT_EQ(OnStage([] {
              const std::string deepest = MakeDeepTree(50);
              const std::string above = fs::path(deepest).parent_path();
              DeleteTree("/deep");
              return std::to_string(Exists(deepest + "/f")) + std::to_string(Exists(above + "/f")) +
                     std::to_string(Exists("/deep/f"));
            }),
            "100");
}

TEST_F(DeleteTreeTest, NoSearchLeftLeavesTheTree) {
  EXPECT_EQ(OnStage([] {
              Write("/tree/file");
              fs::create_directories("/empty");
              TivFindData data = {};
              for (int i = 0; i < 50; ++i) tivFindFirstDirEnt("/*", &data);
              zebcomn_test::ClearErrorSlot();
              DeleteSubtree("/tree");
              const std::string reason = std::to_string(nErrno);
              DeleteTree("/tree");
              DeleteTree("/empty");
              for (int id = 1; id <= 50; ++id) tivFindCloseDirEnt(id);
              return Listing("/") + reason;
            }),
            "/tree /tree/file " + std::to_string(EAGAIN));
}

TEST_F(DeleteTreeTest, NoDescriptorIsLeftOpen) {
  EXPECT_EQ(OnStage([] {
              MakeSampleTree();
              const int before = zebcomn_test::OpenDescriptorCount();
              DeleteSubtree("/tree");
              DeleteTree("/tree");
              DeleteTree("/absent");
              return std::to_string(zebcomn_test::OpenDescriptorCount() - before);
            }),
            "0");
}

}  // namespace
