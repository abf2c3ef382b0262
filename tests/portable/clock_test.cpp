// The tick count and local time at their edges. The C library's clocks are replaced here; the
// shared library under test is the shipped one.
#include "zebcomn/portable/clock.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/times.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>

namespace {

std::optional<clock_t> fake_ticks;
// Plain, and negative for none: sanitizers ask sysconf before anything is set up.
constexpr long kRealTicksPerSecond = -2;
long fake_ticks_per_second = kRealTicksPerSecond;
std::optional<std::time_t> fake_now;
std::optional<int> fake_year;  // As the record has it, counted from 1900.
bool cannot_break_down = false;

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define INTERPOSED extern "C" __attribute__((visibility("default")))

// The C library's own name for sysconf: the sanitizers call it before dlsym works.
extern "C" long __sysconf(int name) noexcept;

INTERPOSED clock_t times(tms* buffer) {
  return fake_ticks ? *fake_ticks : Next<clock_t(tms*)>("times")(buffer);
}

INTERPOSED __attribute__((no_sanitize("thread"))) long sysconf(int name) noexcept {
  if (name == _SC_CLK_TCK && fake_ticks_per_second != kRealTicksPerSecond) {
    return fake_ticks_per_second;
  }
  return __sysconf(name);
}

INTERPOSED std::time_t time(std::time_t* out) noexcept {
  const std::time_t now = fake_now ? *fake_now : Next<std::time_t(std::time_t*)>("time")(nullptr);
  if (out != nullptr) *out = now;
  return now;
}

INTERPOSED tm* localtime_r(const std::time_t* moment, tm* fields) noexcept {
  if (cannot_break_down) return nullptr;
  tm* const broken_down = Next<tm*(const std::time_t*, tm*)>("localtime_r")(moment, fields);
  if (fake_year) fields->tm_year = *fake_year;
  return broken_down;
}

namespace {

class Clock : public ::testing::Test {
 protected:
  void TearDown() override {
    fake_ticks.reset();
    fake_ticks_per_second = kRealTicksPerSecond;
    fake_now.reset();
    fake_year.reset();
    cannot_break_down = false;
  }
};

struct TickCase {
  uint32_t ticks;
  long per_second;
  uint32_t expected;
};

TEST_F(Clock, TickCountIsMillisecondsInWrappingSigned32BitArithmetic) {
  const TickCase cases[] = {
      {0, 100, 0},
      {1, 100, 10},
      {123, 100, 1230},
      {2147483, 100, 21474830},
      // The product passes 2^31 and turns negative; so does the quotient.
      {2147484, 100, static_cast<uint32_t>(-21474832)},
      {4294967, 100, static_cast<uint32_t>(-2)},
      {4294968, 100, 7},
      {21474836, 100, static_cast<uint32_t>(-4)},
      {0xFFFFFFFF, 100, static_cast<uint32_t>(-10)},
      {500, 1000, 500},
      {3, 7, 428},
  };
  for (const TickCase& row : cases) {
    fake_ticks = static_cast<clock_t>(row.ticks);
    fake_ticks_per_second = row.per_second;
    EXPECT_EQ(tivGetTickCount(), row.expected) << row.ticks;
  }
}

TEST_F(Clock, TickCountIsZeroWhenTheLengthOfATickIsUnknown) {
  fake_ticks = 12345;
  for (const long per_second : {-1L, 0L}) {
    fake_ticks_per_second = per_second;
    EXPECT_EQ(tivGetTickCount(), 0u);
  }
}

TEST_F(Clock, TickCountFollowsTheKernelsClock) {
  tms unused{};
  const auto milliseconds = [&] {
    const auto product = static_cast<int32_t>(static_cast<uint32_t>(times(&unused)) * 1000u);
    return static_cast<uint32_t>(product / static_cast<int32_t>(sysconf(_SC_CLK_TCK)));
  };
  // Ticks go on meanwhile, so only the order can be relied upon; differences hold modulo 2^32.
  const uint32_t before = milliseconds();
  const uint32_t count = tivGetTickCount();
  const uint32_t after = milliseconds();
  if (static_cast<int32_t>(after - before) < 0) GTEST_SKIP() << "the product wrapped meanwhile";
  EXPECT_LE(count - before, after - before);
}

class ZonedClock : public Clock {
 protected:
  void SetUp() override { SetZone("XYZ-5:30"); }  // Five and a half hours east of Greenwich.
  void TearDown() override {
    Clock::TearDown();
    unsetenv("TZ");
    tzset();
  }
  static void SetZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
};

TEST_F(ZonedClock, SystemTimeIsLocalTimeNotUtc) {
  fake_now = 1706725799;  // 2024-01-31 18:29:59 UTC, a Wednesday.
  TivSystemTime now;
  std::memset(&now, 0xFF, sizeof now);
  tivGetSystemTime(&now);
  EXPECT_EQ(now.wYear, 2024);
  EXPECT_EQ(now.wMonth, 1);
  EXPECT_EQ(now.wDayOfWeek, 3);
  EXPECT_EQ(now.wDay, 31);
  EXPECT_EQ(now.wHour, 23);
  EXPECT_EQ(now.wMinute, 59);
  EXPECT_EQ(now.wSecond, 59);
  EXPECT_EQ(now.wMilliseconds, 0);
}

TEST_F(ZonedClock, SystemTimeCarriesIntoTheNextMonth) {
  fake_now = 1706725800;
  TivSystemTime now{};
  tivGetSystemTime(&now);
  EXPECT_EQ(now.wMonth, 2);
  EXPECT_EQ(now.wDay, 1);
  EXPECT_EQ(now.wDayOfWeek, 4);
  EXPECT_EQ(now.wHour, 0);
}

TEST_F(ZonedClock, SystemTimeCountsMonthsFromOneAndWeekdaysFromSunday) {
  SetZone("UTC0");
  fake_now = 1735430399;  // 2024-12-28 23:59:59, a Saturday.
  TivSystemTime now{};
  tivGetSystemTime(&now);
  EXPECT_EQ(now.wMonth, 12);
  EXPECT_EQ(now.wDayOfWeek, 6);
  fake_now = 1735430400;
  tivGetSystemTime(&now);
  EXPECT_EQ(now.wDayOfWeek, 0);
}

TEST_F(Clock, SystemTimeKeepsTheLowSixteenBitsOfTheYear) {
  TivSystemTime now{};
  fake_year = 65535 - 1900;
  tivGetSystemTime(&now);
  EXPECT_EQ(now.wYear, 65535);
  fake_year = 65536 - 1900;
  tivGetSystemTime(&now);
  EXPECT_EQ(now.wYear, 0);
  fake_year = INT_MAX;  // The year is no int.
  tivGetSystemTime(&now);
  EXPECT_EQ(now.wYear, 1899);
}

TEST_F(Clock, SystemTimeLeavesANullRecordAlone) {
  tivGetSystemTime(nullptr);
}

TEST_F(Clock, SystemTimeThatCannotBeBrokenDownIsAllZero) {
  cannot_break_down = true;
  TivSystemTime now;
  std::memset(&now, 0xFF, sizeof now);
  tivGetSystemTime(&now);
  const TivSystemTime zero{};
  EXPECT_EQ(std::memcmp(&now, &zero, sizeof now), 0);
}

TEST(SystemTimeRecord, HasEightWordsInTheirOrder) {
  const TivSystemTime record = {1, 2, 3, 4, 5, 6, 7, 8};
  uint16_t words[8];
  static_assert(sizeof words == sizeof record);
  std::memcpy(words, &record, sizeof words);
  for (uint16_t i = 0; i < 8; ++i) EXPECT_EQ(words[i], i + 1);
}

}  // namespace
