// Time stamps at their edges. The C library's clock and its breaking down of a moment are replaced
// here; the shared library under test is the shipped one.
#include "zebcomn/util/time_stamp.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <cwchar>
#include <optional>
#include <string>
#include <vector>

#include "zebcomn/util/time_zone.h"

namespace {

std::optional<std::time_t> fake_now;
std::optional<tm> fake_fields;
bool cannot_break_down = false;
bool mutex_was_held = false;

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

using BreakDown = tm*(const std::time_t*, tm*);

bool IsMutexHeld() {
  const int result = pthread_mutex_trylock(&quenty_com::pelu::mutex);
  if (result == 0) pthread_mutex_unlock(&quenty_com::pelu::mutex);
  return result == EBUSY;
}

tm* FakeBreakDown(const char* name, const std::time_t* moment, tm* fields) {
  mutex_was_held = IsMutexHeld();
  if (cannot_break_down) return nullptr;
  if (!fake_fields) return Next<BreakDown>(name)(moment, fields);
  *fields = *fake_fields;
  return fields;
}

}  // namespace

#define INTERPOSED extern "C" __attribute__((visibility("default")))

INTERPOSED std::time_t time(std::time_t* out) noexcept {
  const std::time_t now = fake_now ? *fake_now : Next<std::time_t(std::time_t*)>("time")(nullptr);
  if (out != nullptr) *out = now;
  return now;
}

INTERPOSED tm* localtime_r(const std::time_t* moment, tm* fields) noexcept {
  return FakeBreakDown("localtime_r", moment, fields);
}

INTERPOSED tm* gmtime_r(const std::time_t* moment, tm* fields) noexcept {
  return FakeBreakDown("gmtime_r", moment, fields);
}

namespace {

using quenty_com::pelu::tivmcomn_get_time_stamp_ansi;
using quenty_com::pelu::tivmcomn_get_time_stamp_wide;

using NarrowStamp = void (*)(char*, unsigned int);
using WideStamp = void (*)(wchar_t*, unsigned int);

constexpr NarrowStamp kNarrowStamps[] = {tivmcomn_CreateGmtTimeStampA,
                                         tivmcomn_CreateLocalTimeStampA};
constexpr WideStamp kWideStamps[] = {tivmcomn_CreateGmtTimeStampW, tivmcomn_CreateLocalTimeStampW};

class TimeStamp : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("TZ", "XYZ-5:30", 1);  // Five and a half hours east of Greenwich.
    tzset();
    fake_now = 1706725799;  // 2024-01-31 18:29:59 UTC.
  }
  void TearDown() override {
    fake_now.reset();
    fake_fields.reset();
    cannot_break_down = false;
    unsetenv("TZ");
    tzset();
  }
  static void SetYear(int year) {
    tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = 8;
    fields.tm_mday = 7;
    fields.tm_hour = 6;
    fields.tm_min = 5;
    fields.tm_sec = 4;
    fake_fields = fields;
  }
};

TEST_F(TimeStamp, NarrowGmtStampIsTheLocalStamp) {
  for (const NarrowStamp stamp : kNarrowStamps) {
    char text[15];
    stamp(text, sizeof text);
    EXPECT_STREQ(text, "20240131235959");
  }
}

TEST_F(TimeStamp, WideGmtStampIsUtcAndWideLocalStampIsLocal) {
  wchar_t text[15];
  tivmcomn_CreateGmtTimeStampW(text, 15);
  EXPECT_EQ(std::wstring(text), L"20240131182959");
  tivmcomn_CreateLocalTimeStampW(text, 15);
  EXPECT_EQ(std::wstring(text), L"20240131235959");
}

TEST_F(TimeStamp, NarrowStampIsCutAndAlwaysTerminated) {
  const std::string whole = "20240131235959";
  for (const NarrowStamp stamp : kNarrowStamps) {
    for (const unsigned int size : {1u, 2u, 10u, 13u, 14u, 15u, 16u}) {
      std::vector<char> buffer(size, 'x');
      stamp(buffer.data(), size);
      EXPECT_STREQ(buffer.data(), whole.substr(0, size - 1).c_str()) << size;
    }
  }
}

TEST_F(TimeStamp, WideStampOfFourteenCharactersOrFewerIsNotTerminated) {
  const std::wstring whole = L"20240131182959";
  for (const unsigned int size : {1u, 10u, 13u, 14u}) {
    std::vector<wchar_t> buffer(size + 1, L'x');
    tivmcomn_CreateGmtTimeStampW(buffer.data(), size);
    EXPECT_EQ(std::wstring(buffer.data(), size + 1), whole.substr(0, size) + L"x") << size;
  }
}

TEST_F(TimeStamp, WideStampFillsTheRestWithNuls) {
  for (const WideStamp stamp : kWideStamps) {
    for (const unsigned int size : {15u, 16u, 40u}) {
      std::vector<wchar_t> buffer(size + 1, L'x');
      stamp(buffer.data(), size);
      EXPECT_EQ(std::wstring(buffer.data() + 14, size - 13), std::wstring(size - 14, L'\0') + L"x");
    }
  }
}

TEST_F(TimeStamp, ANullBufferOrASizeOfZeroIsLeftAlone) {
  for (const NarrowStamp stamp : kNarrowStamps) {
    char text[4] = "old";
    stamp(nullptr, 15);
    stamp(text, 0);
    EXPECT_STREQ(text, "old");
  }
  for (const WideStamp stamp : kWideStamps) {
    wchar_t text[4] = L"old";
    stamp(nullptr, 15);
    stamp(text, 0);
    EXPECT_EQ(std::wstring(text), L"old");
  }
}

TEST_F(TimeStamp, CompactYearIsPaddedWithZeros) {
  SetYear(999);
  char text[32];
  tivmcomn_CreateLocalTimeStampA(text, sizeof text);
  EXPECT_STREQ(text, "09990907060504");
  for (const WideStamp stamp : kWideStamps) {
    wchar_t wide[32];
    stamp(wide, 32);
    EXPECT_EQ(std::wstring(wide), L"09990907060504");
  }
}

TEST_F(TimeStamp, AYearOfFiveDigitsTakesOneMore) {
  SetYear(10000);
  char text[15];
  tivmcomn_CreateLocalTimeStampA(text, sizeof text);
  EXPECT_STREQ(text, "10000090706050");
  EXPECT_EQ(tivmcomn_get_time_stamp_ansi(), "10000-09-07 06:05:04");
}

TEST_F(TimeStamp, AYearBeyondAnIntWraps) {
  SetYear(2000);
  fake_fields->tm_year = INT_MAX;
  EXPECT_EQ(tivmcomn_get_time_stamp_ansi(), "-2147481749-09-07 06:05:04");
  char text[32];
  tivmcomn_CreateLocalTimeStampA(text, sizeof text);
  EXPECT_STREQ(text, "-21474817490907060504");
  for (const WideStamp stamp : kWideStamps) {
    wchar_t wide[32];
    stamp(wide, 32);
    EXPECT_EQ(std::wstring(wide), L"-21474817490907060504");
  }
}

TEST_F(TimeStamp, AMomentThatCannotBeBrokenDownGivesTheEmptyText) {
  cannot_break_down = true;
  EXPECT_EQ(tivmcomn_get_time_stamp_ansi(), "");
  EXPECT_EQ(tivmcomn_get_time_stamp_wide(), L"");
  for (const NarrowStamp stamp : kNarrowStamps) {
    char text[4] = "old";
    stamp(text, sizeof text);
    EXPECT_STREQ(text, "");
  }
  for (const WideStamp stamp : kWideStamps) {
    wchar_t text[4] = L"old";
    stamp(text, 4);
    EXPECT_EQ(std::wstring(text, 4), std::wstring(4, L'\0'));
  }
}

TEST_F(TimeStamp, ReadableStampIsLocalTime) {
  EXPECT_EQ(tivmcomn_get_time_stamp_ansi(), "2024-01-31 23:59:59");
  EXPECT_EQ(tivmcomn_get_time_stamp_wide(), L"2024-01-31 23:59:59");
}

TEST_F(TimeStamp, ReadableYearIsPaddedWithBlanks) {
  SetYear(999);
  EXPECT_EQ(tivmcomn_get_time_stamp_ansi(), " 999-09-07 06:05:04");
  SetYear(7);
  EXPECT_EQ(tivmcomn_get_time_stamp_wide(), L"   7-09-07 06:05:04");
}

TEST_F(TimeStamp, ReadableStampHoldsTheMutexAndCompactStampsDoNot) {
  tivmcomn_get_time_stamp_ansi();
  EXPECT_TRUE(mutex_was_held);
  EXPECT_FALSE(IsMutexHeld()) << "it is released";
  char text[15];
  for (const NarrowStamp stamp : kNarrowStamps) {
    mutex_was_held = true;
    stamp(text, sizeof text);
    EXPECT_FALSE(mutex_was_held);
  }
  wchar_t wide[15];
  for (const WideStamp stamp : kWideStamps) {
    mutex_was_held = true;
    stamp(wide, 15);
    EXPECT_FALSE(mutex_was_held);
  }
}

TEST_F(TimeStamp, TheMutexIsReleasedWhenTheMomentCannotBeBrokenDown) {
  cannot_break_down = true;
  tivmcomn_get_time_stamp_ansi();
  EXPECT_FALSE(IsMutexHeld());
}

}  // namespace
