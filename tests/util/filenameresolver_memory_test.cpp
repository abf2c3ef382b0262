// Paths while memory is short: the flat routines say so, and nothing is thrown at their callers.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "tests/support/failing_allocation.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/util/filenameflattener.h"
#include "zebcomn/util/filenameresolver.h"

namespace {

using zebcomn_test::FailNothrowAllocation;
using zebcomn_test::FailThrowingAllocation;
using zebcomn_test::ScratchDir;
using zebcomn_test::TakeFailedAllocations;

constexpr unsigned kFailure = 0x80000008u;
/// Too long for a text to hold it without memory of its own.
constexpr const char* kFile = "a-file-with-a-name-that-needs-memory";

TEST(FileNameResolverMemory, CreateFailsWhicheverTextCannotBeAllocated) {
  const ScratchDir scratch;
  scratch.Write(kFile, "");
  const std::string link = scratch / "a-link-with-a-name-that-needs-memory";
  ASSERT_EQ(symlink(kFile, link.c_str()), 0);
  int nth = 1;
  for (;; ++nth) {
    void* resolver = &nth;
    FailThrowingAllocation(nth);
    const unsigned status = tivmcomn_filenameresolver_create(link.c_str(), &resolver);
    FailThrowingAllocation(0);
    if (TakeFailedAllocations() == 0) {
      EXPECT_EQ(status, 0u);
      tivmcomn_filenameresolver_destroy(resolver);
      break;
    }
    EXPECT_EQ(status, kFailure) << nth;
    EXPECT_EQ(resolver, &nth) << nth;
  }
  EXPECT_GT(nth, 5);
}

TEST(FileNameResolverMemory, CreateFailsWhenTheResolverCannotBeAllocated) {
  int here = 0;
  void* resolver = &here;
  FailNothrowAllocation(1);
  EXPECT_EQ(tivmcomn_filenameresolver_create("/", &resolver), kFailure);
  EXPECT_EQ(TakeFailedAllocations(), 1);
  EXPECT_EQ(resolver, &here);
}

TEST(FileNameResolverMemory, GetFailsWhenTheCopyCannotBeAllocated) {
  const ScratchDir scratch;
  const std::string file = scratch.Write(kFile, "");
  void* resolver = nullptr;
  ASSERT_EQ(tivmcomn_filenameresolver_create(file.c_str(), &resolver), 0u);
  char buffer[512] = "keep";
  unsigned size = sizeof buffer;
  FailThrowingAllocation(1);
  const unsigned status = tivmcomn_filenameresolver_get_absolute_filename(resolver, buffer, &size);
  EXPECT_EQ(TakeFailedAllocations(), 1);
  EXPECT_EQ(status, kFailure);
  EXPECT_EQ(size, sizeof buffer);
  EXPECT_STREQ(buffer, "keep");
  tivmcomn_filenameresolver_destroy(resolver);
}

TEST(FileNameResolverMemory, NoBufferForTheWorkingDirectoryLeavesTheRoot) {
  FailNothrowAllocation(1);
  FileNameFlattener flattener("a/b");
  EXPECT_EQ(TakeFailedAllocations(), 1);
  std::string flat;
  EXPECT_TRUE(flattener.GetFlatPath(flat));
  EXPECT_EQ(flat, "/a/b");
}

}  // namespace
