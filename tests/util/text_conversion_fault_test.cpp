// What the conversions do when there is no memory, or no converter. The C library's and the
// language's own calls are replaced here; the shared library under test is the shipped one.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <iconv.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "tests/support/failing_allocation.h"
#include "zebcomn/util/byte_order.h"
#include "zebcomn/util/text_conversion.h"

namespace {

int opened = 0;
int closed = 0;
bool refuse_to_open = false;
/// The target and the source of the converter that was opened last.
char last_encodings[64];

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) iconv_t iconv_open(const char* to,
                                                                     const char* from) {
  if (refuse_to_open) {
    errno = EINVAL;
    return reinterpret_cast<iconv_t>(static_cast<intptr_t>(-1));
  }
  ++opened;
  std::snprintf(last_encodings, sizeof last_encodings, "%s from %s", to, from);
  return Next<decltype(iconv_open)>("iconv_open")(to, from);
}

extern "C" __attribute__((visibility("default"))) int iconv_close(iconv_t converter) {
  ++closed;
  return Next<decltype(iconv_close)>("iconv_close")(converter);
}

namespace {

using quenty_com::pelu::tivmcomn_ansi_to_wide;
using quenty_com::pelu::tivmcomn_wide_to_ansi;
using zebcomn_test::FailNothrowAllocation;
using zebcomn_test::FailThrowingAllocation;
using zebcomn_test::TakeFailedAllocations;

constexpr uint32_t kOk = 0;
constexpr uint32_t kFailure = 0x80000008;
constexpr int kFlatAllocations = 2;
constexpr int kWrapperAllocations = 3;

// Longer than a string keeps inside itself, so that the result needs memory too.
constexpr const char* kLongText = "a text that is longer than thirty-two characters";
constexpr const wchar_t* kLongWideText = L"a text that is longer than thirty-two characters";

class TextConversionFault : public ::testing::Test {
 protected:
  void SetUp() override { opened = closed = 0; }
  void TearDown() override {
    refuse_to_open = false;
    FailNothrowAllocation(0);
    FailThrowingAllocation(0);
    EXPECT_EQ(TakeFailedAllocations(), 0);
    EXPECT_EQ(opened, closed) << "every converter is closed";
  }
};

TEST_F(TextConversionFault, EachCallOpensOneConverter) {
  EXPECT_EQ(tivmcomn_wide_to_ansi(L"ab"), "ab");
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(tivmcomn_ansi_to_wide("ab\xFF"), L"ab");
  EXPECT_EQ(opened, 2);
}

TEST_F(TextConversionFault, EncodingsAreNamedByTheByteOrderInBothDirections) {
  const std::string wide = quenty_com::pelu::isBigEndian() ? "UCS-4BE" : "UCS-4LE";
  tivmcomn_wide_to_ansi(L"ab");
  EXPECT_EQ(last_encodings, std::string("UTF8 from ") + wide);
  tivmcomn_ansi_to_wide("ab");
  EXPECT_EQ(last_encodings, wide + " from UTF8");
}

TEST_F(TextConversionFault, FlatConversionsFailWithoutMemoryAndLeaveTheBufferAlone) {
  for (int nth = 1; nth <= kFlatAllocations; ++nth) {
    char narrow[32] = "old";
    unsigned int narrow_size = sizeof narrow;
    FailNothrowAllocation(nth);
    EXPECT_EQ(tivmcomn_unicode_to_utf8(L"a", narrow, &narrow_size), kFailure) << nth;
    EXPECT_STREQ(narrow, "old");

    wchar_t wide[8] = L"old";
    int wide_size = 8;
    FailNothrowAllocation(nth);
    EXPECT_EQ(tivmcomn_utf8_to_unicode("a", wide, &wide_size), kFailure) << nth;
    EXPECT_EQ(std::wstring(wide), L"old");
  }
  EXPECT_EQ(TakeFailedAllocations(), 2 * kFlatAllocations);
  EXPECT_EQ(opened, 0);
}

TEST_F(TextConversionFault, WrappersAreEmptyWithoutMemory) {
  for (int nth = 1; nth <= kWrapperAllocations; ++nth) {
    FailNothrowAllocation(nth);
    EXPECT_EQ(tivmcomn_wide_to_ansi(L"abc"), "") << nth;
    FailNothrowAllocation(nth);
    EXPECT_EQ(tivmcomn_ansi_to_wide("abc"), L"") << nth;
  }
  EXPECT_EQ(TakeFailedAllocations(), 2 * kWrapperAllocations);
}

TEST_F(TextConversionFault, WrappersAreEmptyWithoutMemoryForTheResult) {
  const std::wstring wide = kLongWideText;
  const std::string narrow = kLongText;
  FailThrowingAllocation(1);
  EXPECT_EQ(tivmcomn_wide_to_ansi(wide), "");
  FailThrowingAllocation(1);
  EXPECT_EQ(tivmcomn_ansi_to_wide(narrow), L"");
  EXPECT_EQ(TakeFailedAllocations(), 2);
  EXPECT_EQ(tivmcomn_wide_to_ansi(wide), narrow);
  EXPECT_EQ(tivmcomn_ansi_to_wide(narrow), wide);
}

TEST_F(TextConversionFault, AConverterThatDoesNotOpenGivesSuccessAndTheEmptyText) {
  refuse_to_open = true;
  char narrow[32] = "old";
  unsigned int narrow_size = sizeof narrow;
  EXPECT_EQ(tivmcomn_unicode_to_utf8(L"a", narrow, &narrow_size), kOk);
  EXPECT_STREQ(narrow, "");

  wchar_t wide[8] = L"old";
  int wide_size = 8;
  EXPECT_EQ(tivmcomn_utf8_to_unicode("a", wide, &wide_size), kOk);
  EXPECT_EQ(std::wstring(wide), L"");

  EXPECT_EQ(tivmcomn_wide_to_ansi(L"abc"), "");
  EXPECT_EQ(tivmcomn_ansi_to_wide("abc"), L"");
}

}  // namespace
