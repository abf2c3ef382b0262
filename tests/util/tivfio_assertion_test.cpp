// The probe for directories, compiled with and without assertions.
#include <gtest/gtest.h>

#include "zebcomn/util/tivfio.h"

namespace {

#ifdef NDEBUG
TEST(FolderExistsWithoutAssertions, NullGivesZero) {
  EXPECT_EQ(tiFolderExists(nullptr), FALSE);
}
#else
TEST(FolderExistsWithAssertionsDeathTest, NullEndsTheProcessAndNamesTheParameter) {
  EXPECT_DEATH(tiFolderExists(nullptr), "lpszFolder");
}
#endif

}  // namespace
