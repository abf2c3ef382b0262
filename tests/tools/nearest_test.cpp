// Which word zebinfo takes a misspelt one for.
#include "tools/zebinfo/nearest.h"

#include <gtest/gtest.h>

namespace zebinfo {
namespace {

const std::vector<std::string> kWords = {"OSType", "CPUType", "IPAddress", "IPXAddress", "time"};

TEST(Nearest, TheCaseOfLettersDoesNotCount) {
  EXPECT_EQ(Nearest("iPaDdReSs", kWords), "IPAddress");
  EXPECT_EQ(Nearest("TIME", kWords), "time");
}

TEST(Nearest, AThirdOfTheWordMayBeWrong) {
  EXPECT_EQ(Nearest("CPUTyp", kWords), "CPUType");
  EXPECT_EQ(Nearest("CPUTypes", kWords), "CPUType");
  EXPECT_EQ(Nearest("XSType", kWords), "OSType");
  EXPECT_EQ(Nearest("tine", kWords), "time");
  EXPECT_EQ(Nearest("tink", kWords), "");
}

TEST(Nearest, OfSeveralTheNearestAndThenTheFirst) {
  EXPECT_EQ(Nearest("IPAdress", kWords), "IPAddress");
  EXPECT_EQ(Nearest("IPYAddress", kWords), "IPAddress");
  EXPECT_EQ(Nearest("PXAddress", kWords), "IPXAddress");
}

TEST(Nearest, NothingIsNearWhatIsQuiteAnotherWord) {
  EXPECT_EQ(Nearest("weather", kWords), "");
  EXPECT_EQ(Nearest("", kWords), "");
  EXPECT_EQ(Nearest("x", kWords), "");
  EXPECT_EQ(Nearest("CPUType", {}), "");
  EXPECT_EQ(Nearest(std::string(100000, 'a'), kWords), "");
}

}  // namespace
}  // namespace zebinfo
