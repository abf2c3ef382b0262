// The inverse of gmtime and the zone's name: what they do to "TZ", when they hold the mutex. The C
// library's calls are watched here; the shared library under test is the shipped one.
#include "zebcomn/util/time_zone.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <iconv.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/failing_allocation.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/util/time_stamp.h"

namespace {

using quenty_com::pelu::mutex;
using quenty_com::pelu::zebcomn_gettimezone;
using quenty_com::pelu::zebcomn_timegm;
using zebcomn_test::RunInFreshProcess;

std::optional<std::string> zone_in_mktime;
bool mutex_was_held = false;
int tzset_calls = 0;

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsMutexHeld() {
  const int result = pthread_mutex_trylock(&mutex);
  if (result == 0) pthread_mutex_unlock(&mutex);
  return result == EBUSY;
}

}  // namespace

#define INTERPOSED extern "C" __attribute__((visibility("default")))

INTERPOSED std::time_t mktime(tm* fields) noexcept {
  if (IsMutexHeld()) {
    mutex_was_held = true;
    const char* const zone = std::getenv("TZ");
    zone_in_mktime = zone == nullptr ? "absent" : zone;
  }
  return Next<std::time_t(tm*)>("mktime")(fields);
}

INTERPOSED void tzset() noexcept {
  if (IsMutexHeld()) ++tzset_calls;
  Next<void()>("tzset")();
}

INTERPOSED iconv_t iconv_open(const char* to, const char* from) {
  mutex_was_held = IsMutexHeld();
  return Next<iconv_t(const char*, const char*)>("iconv_open")(to, from);
}

namespace {

tm Fields(int year, int month, int day, int hour, int minute, int second) {
  tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_sec = second;
  return fields;
}

class TimeZone : public ::testing::Test {
 protected:
  void SetUp() override {
    zone_in_mktime.reset();
    mutex_was_held = false;
    tzset_calls = 0;
  }
  void TearDown() override {
    unsetenv("TZ");
    tzset();
  }
  static void SetZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
};

TEST_F(TimeZone, TimegmIsUtcWhateverTheZone) {
  for (const char* const zone : {"XYZ-5:30", "PST8PDT", "UTC0", ""}) {
    SetZone(zone);
    tm epoch = Fields(1970, 1, 1, 0, 0, 0);
    EXPECT_EQ(zebcomn_timegm(&epoch), 0) << zone;
    tm moment = Fields(2024, 1, 31, 18, 29, 59);
    EXPECT_EQ(zebcomn_timegm(&moment), 1706725799) << zone;
  }
  unsetenv("TZ");
  tm epoch = Fields(1970, 1, 1, 0, 0, 0);
  EXPECT_EQ(zebcomn_timegm(&epoch), 0);
}

TEST_F(TimeZone, TimegmReachesBehindTheEpoch) {
  tm moment = Fields(1969, 12, 31, 23, 59, 58);
  EXPECT_EQ(zebcomn_timegm(&moment), -2);
}

TEST_F(TimeZone, TimegmNormalisesItsArgument) {
  tm moment = Fields(2023, 12, 31, 23, 59, 60);
  EXPECT_EQ(zebcomn_timegm(&moment), 1704067200);
  EXPECT_EQ(moment.tm_year, 124);
  EXPECT_EQ(moment.tm_mon, 0);
  EXPECT_EQ(moment.tm_mday, 1);
  EXPECT_EQ(moment.tm_sec, 0);
  EXPECT_EQ(moment.tm_wday, 1);
  EXPECT_EQ(moment.tm_yday, 0);
}

TEST_F(TimeZone, TimegmPassesOnAMomentThatCannotBeExpressed) {
  tm moment = Fields(2024, 1, 1, 0, 0, 0);
  moment.tm_year = INT_MAX;
  moment.tm_mon = INT_MAX;
  EXPECT_EQ(zebcomn_timegm(&moment), -1);
  EXPECT_FALSE(IsMutexHeld());
}

TEST_F(TimeZone, TimegmOfNullIsMinusOneAndLeavesTheZoneAlone) {
  SetZone("");
  EXPECT_EQ(zebcomn_timegm(nullptr), -1);
  EXPECT_STREQ(std::getenv("TZ"), "");
}

TEST_F(TimeZone, TimegmWorksUnderAnEmptyZoneAndTheMutex) {
  SetZone("XYZ-5:30");
  tm epoch = Fields(1970, 1, 1, 0, 0, 0);
  zebcomn_timegm(&epoch);  // The first call of all reads the zone once more.
  tzset_calls = 0;
  zebcomn_timegm(&epoch);
  EXPECT_EQ(zone_in_mktime, "");
  EXPECT_TRUE(mutex_was_held);
  EXPECT_EQ(tzset_calls, 2);
  EXPECT_FALSE(IsMutexHeld());
}

// The value of "TZ" after a call that found `zone`; null is absent.
const char* ZoneAfter(const char* zone) {
  if (zone == nullptr) {
    unsetenv("TZ");
  } else {
    setenv("TZ", zone, 1);
  }
  tm epoch = Fields(1970, 1, 1, 0, 0, 0);
  zebcomn_timegm(&epoch);
  return std::getenv("TZ");
}

TEST_F(TimeZone, TimegmPutsTheZoneBack) {
  EXPECT_STREQ(ZoneAfter("XYZ-5:30"), "XYZ-5:30");
  EXPECT_STREQ(ZoneAfter("U"), "U");
  EXPECT_EQ(ZoneAfter(nullptr), nullptr);
  SetZone("XYZ-5:30");
  tm epoch = Fields(1970, 1, 1, 0, 0, 0);
  zebcomn_timegm(&epoch);
  EXPECT_STREQ(tzname[0], "XYZ") << "the C library knows it again too";
}

TEST_F(TimeZone, TimegmPutsBackAZoneOf1024Characters) {
  const std::string zone(1024, 'Z');
  EXPECT_STREQ(ZoneAfter(zone.c_str()), zone.c_str());
}

TEST_F(TimeZone, TimegmLosesAnEmptyOrOverlongZone) {
  EXPECT_EQ(ZoneAfter(""), nullptr);
  EXPECT_EQ(ZoneAfter(std::string(1025, 'Z').c_str()), nullptr);
  EXPECT_EQ(ZoneAfter(std::string(5000, 'Z').c_str()), nullptr);
}

TEST_F(TimeZone, ManyThreadsMayCallTimegmAtOnce) {
  SetZone("XYZ-5:30");
  std::vector<std::thread> threads;
  std::vector<int> right(4, 0);
  for (int& count : right) {
    threads.emplace_back([&count] {
      for (int i = 0; i < 100; ++i) {
        tm moment = Fields(2024, 1, 31, 18, 29, 59);
        std::wstring name;
        if (zebcomn_timegm(&moment) == 1706725799 && zebcomn_gettimezone(name) == 1) ++count;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, std::vector<int>(4, 100));
  EXPECT_STREQ(std::getenv("TZ"), "XYZ-5:30");
}

TEST_F(TimeZone, NameIsTheStandardAbbreviation) {
  SetZone("XST5XDT,0/0,J365/25");  // Daylight-saving time all the year round.
  std::wstring name = L"old";
  EXPECT_EQ(zebcomn_gettimezone(name), 1u);
  EXPECT_EQ(name, L"XST");
}

TEST_F(TimeZone, NameIsTheOneLastSetUp) {
  SetZone("AAA1");
  setenv("TZ", "BBB2", 1);
  std::wstring name;
  EXPECT_EQ(zebcomn_gettimezone(name), 1u);
  EXPECT_EQ(name, L"AAA");
  EXPECT_EQ(tzset_calls, 0);
}

TEST_F(TimeZone, NameIsReadUnderTheMutex) {
  std::wstring name;
  EXPECT_EQ(zebcomn_gettimezone(name), 1u);
  EXPECT_TRUE(mutex_was_held);
  EXPECT_FALSE(IsMutexHeld());
}

// What the call makes of `abbreviation`, in a process whose zone may be spoilt.
std::string NameOf(char* abbreviation) {
  return RunInFreshProcess([abbreviation] {
    tzname[0] = abbreviation;
    std::wstring name = L"old";
    const unsigned int result = zebcomn_gettimezone(name);
    std::string text = std::to_string(result) + " ";
    for (const wchar_t character : name) text += static_cast<char>(character);
    return text;
  });
}

TEST_F(TimeZone, NoAbbreviationLeavesTheNameAlone) {
  EXPECT_EQ(NameOf(nullptr), "0 old");
}

TEST_F(TimeZone, AnEmptyAbbreviationIsAName) {
  char empty[] = "";
  EXPECT_EQ(NameOf(empty), "1 ");
}

TEST_F(TimeZone, NameIsCutTo63Characters) {
  char exact[64] = {};
  std::memset(exact, 'e', 63);
  EXPECT_EQ(NameOf(exact), "1 " + std::string(63, 'e'));
  char longer[100] = {};
  std::memset(longer, 'l', 99);
  EXPECT_EQ(NameOf(longer), "1 " + std::string(63, 'l'));
}

TEST_F(TimeZone, NameWithoutMemoryIsEmpty) {
  SetZone("<NAME-OF-MORE-THAN-FIFTEEN-BYTES>0");
  std::wstring name = L"old";
  zebcomn_test::FailThrowingAllocation(1);
  unsigned int result = 77;
  EXPECT_NO_THROW(result = zebcomn_gettimezone(name));
  zebcomn_test::FailThrowingAllocation(0);
  EXPECT_EQ(zebcomn_test::TakeFailedAllocations(), 1);
  EXPECT_EQ(result, 1u);
  EXPECT_EQ(name, L"");
}

/// A zone file at the time of Greenwich: many kinds of daylight-saving time and, behind them, the
/// standard time, so that this takes a while to find. All are named "XST".
std::string ZoneFile() {
  constexpr int kDaylightKinds = 200;
  const auto number = [](int value) { return std::string(3, '\0') + static_cast<char>(value); };
  std::string file = "TZif" + std::string(16, '\0');
  // The counts: only the last two are not zero, kinds of time and bytes of names.
  for (const int count : {0, 0, 0, 0, kDaylightKinds + 1, 4}) file += number(count);
  // Each kind: seconds from Greenwich, whether daylight is saved, where its name begins.
  for (int i = 0; i < kDaylightKinds; ++i) file += number(0) + '\1' + '\0';
  file += number(0) + '\0' + '\0';
  return file + std::string("XST\0", 4);
}

// The C library clears the abbreviation while it looks a moment up in a zone file.
TEST_F(TimeZone, NameIsThereWhileOtherThreadsMakeStamps) {
  const zebcomn_test::ScratchDir dir;
  SetZone((":" + dir.Write("zone", ZoneFile())).c_str());
  ASSERT_STREQ(tzname[0], "XST") << "the zone file is taken";
  std::atomic<bool> done = false;
  std::thread stamps([&done] {
    char text[15];
    for (int i = 0; i < 100000; ++i) tivmcomn_CreateLocalTimeStampA(text, sizeof text);
    done = true;
  });
  int wrong = 0;
  while (!done) {
    std::wstring name;
    if (zebcomn_gettimezone(name) != 1 || name != L"XST") ++wrong;
  }
  stamps.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
