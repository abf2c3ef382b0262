// What the tree deletion leaves behind when a call underneath it fails.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "tests/support/failing_call.h"
#include "tests/util/deletion_stage.h"
#include "tests/util/same_number.h"

namespace {

using zebcomn_test::FailingCall;

class DeleteTreeFailuresTest : public zebcomn_test::DeletionTest {
 protected:
  /// Deletes "/tree" while a call fails; what is left on the stage.
  static std::string LeftWhenFailing(const char* function, int nth, int error = EIO) {
    bool happened = false;
    {
      const FailingCall failing(function, nth, error);
      DeleteTree("/tree");
      happened = failing.Happened();
    }
    return happened ? Listing("/") : "no call failed";
  }
};

TEST_F(DeleteTreeFailuresTest, FileThatIsNotRemovedIsSkipped) {
  const std::string left = OnStage([] {
    Write("/tree/one");
    Write("/tree/two");
    return LeftWhenFailing("unlinkat", 1, EBUSY);
  });
  EXPECT_TRUE(left == "/tree /tree/one " || left == "/tree /tree/two ") << left;
}

TEST_F(DeleteTreeFailuresTest, DirectoryThatIsNotRemovedIsLeftEmpty) {
  EXPECT_EQ(OnStage([] {
              Write("/tree/sub/file");
              // The file goes first, then its directory.
              return LeftWhenFailing("unlinkat", 2, EBUSY);
            }),
            "/tree /tree/sub ");
}

TEST_F(DeleteTreeFailuresTest, WhatCannotBeLookedAtIsNotWalkedInto) {
  // The first look is at the tree itself, the second at the link in it.
  for (const int nth : {1, 2}) {
    EXPECT_EQ(OnStage([nth] {
                Write("/outside/kept");
                Write("/tree/file");
                std::filesystem::create_symlink("/outside", "/tree/link");
                return LeftWhenFailing("fstatat", nth);
              }),
              nth == 1 ? "/outside /outside/kept /tree /tree/file /tree/link "
                       : "/outside /outside/kept /tree /tree/link ");
  }
}

TEST_F(DeleteTreeFailuresTest, SubtreeThatCannotBeLookedAtIsLeft) {
  EXPECT_EQ(OnStage([] {
              Write("/tree/file");
              const FailingCall failing("lstat");
              DeleteSubtree("/tree");
              return failing.Happened() ? Listing("/") : "no call failed";
            }),
            "/tree /tree/file ");
}

TEST_F(DeleteTreeFailuresTest, DirectoryThatCannotBeComparedAfterItsOpeningIsLeft) {
  EXPECT_EQ(OnStage([] {
              Write("/tree/file");
              return LeftWhenFailing("fstat", 1);
            }),
            "/tree /tree/file ");
}

/// Puts a link to "/outside" in the place of "/tree/sub".
void SwapForALink() {
  std::filesystem::rename("/tree/sub", "/moved");
  std::filesystem::create_symlink("/outside", "/tree/sub");
}

TEST_F(DeleteTreeFailuresTest, LinkPutInTheWayBeforeADirectoryIsOpenedIsNotFollowed) {
  EXPECT_EQ(OnStage([] {
              Write("/outside/kept");
              Write("/tree/sub/file");
              const FailingCall swapping("opendir", 2, SwapForALink);
              DeleteTree("/tree");
              return swapping.Happened() ? Listing("/") : "nothing was swapped";
            }),
            "/moved /moved/file /outside /outside/kept /tree /tree/sub ");
}

TEST_F(DeleteTreeFailuresTest, DirectoryOfAnotherFileSystemWithTheSameNumberIsAnother) {
  const std::string left = OnStage([] {
    Write("/tree/sub/file");
    const std::string twin = zebcomn_test::EntryWithTheNumberOf(
        "/tree/sub", "/twins",
        [](const std::string& path) { std::filesystem::create_directory(path); });
    if (twin.empty()) return std::string("no twin");
    std::filesystem::create_symlink(twin, "/outside");
    Write(twin + "/kept");
    const FailingCall swapping("opendir", 2, SwapForALink);
    DeleteTree("/tree");
    if (!swapping.Happened()) return std::string("nothing was swapped");
    return Exists(twin + "/kept") ? std::string("kept") : std::string("deleted");
  });
  if (left == "no twin") GTEST_SKIP() << "file systems here do not count by themselves";
  EXPECT_EQ(left, "kept");
}

TEST_F(DeleteTreeFailuresTest, LinkPutInTheWayWhileADirectoryIsWalkedDoesNotLeadAstray) {
  EXPECT_EQ(OnStage([] {
              Write("/outside/file");
              Write("/outside/deep/file");
              Write("/tree/sub/file");
              Write("/tree/sub/deep/file");
              // The first removal is made in "/tree/sub" or below it.
              const FailingCall swapping("unlinkat", 1, SwapForALink);
              DeleteTree("/tree");
              return swapping.Happened() && Exists("/outside/file") && Exists("/outside/deep/file")
                         ? "nothing outside is touched"
                         : Listing("/");
            }),
            "nothing outside is touched");
}

TEST_F(DeleteTreeFailuresTest, DirectoryThatCannotBeSearchedIsLeft) {
  EXPECT_EQ(OnStage([] {
              Write("/tree/file");
              return LeftWhenFailing("opendir", 1, EMFILE);
            }),
            "/tree /tree/file ");
}

TEST_F(DeleteTreeFailuresTest, DirectoryWhoseReadingFailsIsLeftFromThereOn) {
  EXPECT_EQ(OnStage([] {
              Write("/tree/file");
              return LeftWhenFailing("readdir", 1);
            }),
            "/tree /tree/file ");
}

TEST_F(DeleteTreeFailuresTest, DirectoryWhoseStatusIsUnknownIsNoDirectoryAndStays) {
  // The status calls are those of ".", ".." and "sub", in the order of the file system.
  int left_behind = 0;
  for (const int nth : {1, 2, 3}) {
    const std::string left = OnStage([nth] {
      Write("/tree/sub/file");
      return LeftWhenFailing("stat", nth);
    });
    left_behind += left == "/tree /tree/sub /tree/sub/file " ? 1 : 0;
    EXPECT_TRUE(left.empty() || left == "/tree /tree/sub /tree/sub/file ") << left;
  }
  EXPECT_EQ(left_behind, 1);
}

TEST_F(DeleteTreeFailuresTest, SearchThatDoesNotCloseDoesNotMatter) {
  EXPECT_EQ(OnStage([] {
              Write("/tree/sub/file");
              return LeftWhenFailing("closedir", 1);
            }),
            "");
}

}  // namespace
