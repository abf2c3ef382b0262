// The first call of the process: the C library has read "TZ" before the variable is changed.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "tests/support/next_function.h"
#include "zebcomn/util/time_zone.h"

namespace {

std::vector<std::string> calls;

}  // namespace

extern "C" void tzset() noexcept {
  calls.emplace_back("tzset");
  zebcomn_test::NextFunction<void()>("tzset")();
}

extern "C" int setenv(const char* name, const char* value, int overwrite) noexcept {
  calls.push_back("setenv " + std::string(name) + "=" + value);
  return zebcomn_test::NextFunction<int(const char*, const char*, int)>("setenv")(name, value,
                                                                                  overwrite);
}

namespace {

TEST(TimeZoneFirstCall, ZoneIsReadBeforeItIsChanged) {
  setenv("TZ", "XYZ-5:30", 1);
  tm epoch{};
  epoch.tm_year = 70;
  epoch.tm_mday = 1;
  calls.clear();
  EXPECT_EQ(quenty_com::pelu::zebcomn_timegm(&epoch), 0);
  const std::vector<std::string> later = {"setenv TZ=", "tzset", "setenv TZ=XYZ-5:30", "tzset"};
  std::vector<std::string> first = later;
  first.insert(first.begin(), "tzset");
  EXPECT_EQ(calls, first);
  calls.clear();
  quenty_com::pelu::zebcomn_timegm(&epoch);
  EXPECT_EQ(calls, later);
}

}  // namespace
