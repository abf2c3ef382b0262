#include "zebcomn/util/find_files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <set>
#include <string>

#include "tests/support/error_slot.h"
#include "tests/support/scratch_dir.h"

namespace {

using zebcomn_test::ClearErrorSlot;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::ScratchDir;

constexpr uint32_t kFailure = 0x80000008;

class FindFilesTest : public ::testing::Test {
 protected:
  FindFilesTest() { ClearErrorSlot(); }

  uint32_t SizeOf(std::string path, unsigned int* size) const {
    return tivmcomn_get_file_sizeA(path.data(), size);
  }

  ScratchDir scratch_;
};

TEST_F(FindFilesTest, SearchGivesEachMatchOnce) {
  for (const char* name : {"a.log", "b.log", "c.txt"}) scratch_.Write(name, "");
  TivFindData data = {};
  std::set<std::string> names;
  const int32_t search = tivmcomn_findfirstA((scratch_ / "*.log").c_str(), &data);
  ASSERT_NE(search, 0);
  do {
    names.insert(data.name);
  } while (tivmcomn_findnextA(search, &data) == TRUE);
  EXPECT_EQ(names, (std::set<std::string>{"a.log", "b.log"}));
  EXPECT_EQ(tivmcomn_findnextA(search, &data), FALSE);
  EXPECT_EQ(tivmcomn_findclose(search), TRUE);
}

TEST_F(FindFilesTest, SearchThatFindsNothingIsZero) {
  TivFindData data = {};
  EXPECT_EQ(tivmcomn_findfirstA((scratch_ / "x*").c_str(), &data), 0);
  EXPECT_EQ(tivmcomn_findfirstA((scratch_ / "absent/*").c_str(), &data), 0);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(tivmcomn_findfirstA(nullptr, &data), 0);
  EXPECT_EQ(nErrno, EINVAL);
}

TEST_F(FindFilesTest, UnknownSearchGivesTheLayersResult) {
  TivFindData data = {};
  for (const int32_t search : {0, 1, 51, -1}) {
    ClearErrorSlot();
    EXPECT_EQ(tivmcomn_findnextA(search, &data), FALSE);
    EXPECT_EQ(tivmcomn_findclose(search), FALSE);
    EXPECT_EQ(nErrno, EINVAL);
  }
}

TEST_F(FindFilesTest, FileSizeIsItsLow32Bits) {
  const std::string path = scratch_.Write("file", "12345");
  unsigned int size = 77;
  EXPECT_EQ(SizeOf(path, &size), 0u);
  EXPECT_EQ(size, 5u);
  ASSERT_EQ(truncate(path.c_str(), (off_t{1} << 32) + 9), 0);
  EXPECT_EQ(SizeOf(path, &size), 0u);
  EXPECT_EQ(size, 9u);
}

TEST_F(FindFilesTest, SizeOfALinkIsThatOfItsTarget) {
  scratch_.Write("file", std::string(1000, 'x'));
  ASSERT_EQ(symlink("file", (scratch_ / "link").c_str()), 0);
  unsigned int size = 77;
  EXPECT_EQ(SizeOf(scratch_ / "link", &size), 0u);
  EXPECT_EQ(size, 1000u);
}

TEST_F(FindFilesTest, SizeThatCannotBeReadIsAFailureThatStoresZero) {
  unsigned int size = 77;
  EXPECT_EQ(SizeOf(scratch_ / "absent", &size), kFailure);
  EXPECT_EQ(size, 0u);
  size = 77;
  EXPECT_EQ(tivmcomn_get_file_sizeA(nullptr, &size), kFailure);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(SizeOf(scratch_.Write("file", ""), nullptr), kFailure);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

}  // namespace
