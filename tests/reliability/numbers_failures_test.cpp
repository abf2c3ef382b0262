// Number texts, GUIDs, clocks and the system's names.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "tests/reliability/sweep.h"
#include "zebcomn/portable/clock.h"
#include "zebcomn/portable/guid.h"
#include "zebcomn/portable/number_text.h"
#include "zebcomn/portable/system_names.h"

namespace {

using zebcomn_test::kErrorLeftAlone;

ZEBCOMN_USE(NumberFailures, NarrowAndWide, "tivStandardUtoA", "tivStandardAtoU") {
  std::array<char, 8> narrow{};
  std::array<wchar_t, 8> wide{};
  size_t narrowed = 77;
  size_t widened = 77;
  trial.Call([&] { narrowed = tivStandardUtoA(L"abc", narrow.size(), narrow.data()); });
  trial.Call([&] { widened = tivStandardAtoU("abc", wide.size(), wide.data()); });
  EXPECT_EQ(narrowed, trial.FailedIn("wcsrtombs") ? 0U : 3U);
  EXPECT_EQ(widened, trial.FailedIn("mbsrtowcs") ? 0U : 3U);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(NumberFailures, Texts, "tivItoa", "tivItot", "tivUltot", "tivI64toa",
                          "tivI64tot", "tivAtoi64", "tivTtoi64", "tivTstrtok_r") {
  char text[32] = "";
  char tokens[] = "a b";
  char* save = nullptr;
  trial.Call([&] {
    EXPECT_STREQ(tivItoa(-5, text, 10), "-5");
    EXPECT_STREQ(tivItot(10, text, 16), "a");
    EXPECT_STREQ(tivUltot(8, text, 8), "10");
    EXPECT_STREQ(tivI64toa(-5, text, 10), "-5");
    EXPECT_STREQ(tivI64tot(5, text, 10), "5");
    EXPECT_EQ(tivAtoi64("12"), 12);
    EXPECT_EQ(tivTtoi64("12"), 12);
    EXPECT_STREQ(tivTstrtok_r(tokens, " ", &save), "a");
  });
}

using Guid = std::array<uint8_t, 16>;

// The first one looks for a hardware address, and only it.
ZEBCOMN_FRESH_USE(GuidFailures, FirstAndSecond, "tivCoCreateGuid") {
  Guid first{};
  Guid second{};
  uint8_t* result = nullptr;
  trial.Call([&] { result = tivCoCreateGuid(first.data()); });
  EXPECT_EQ(result, first.data());
  EXPECT_NE(first, Guid{});
  const Guid no_node{};
  EXPECT_FALSE(std::equal(first.begin() + 10, first.end(), no_node.begin() + 10)) << "a node";
  trial.Call([&] { result = tivCoCreateGuid(second.data()); });
  EXPECT_EQ(result, second.data());
  EXPECT_NE(first, second);
  EXPECT_TRUE(std::equal(second.begin() + 10, second.end(), no_node.begin() + 10)) << "no node";
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(GuidFailures, Text, "tivUuidToStringA") {
  const Guid guid{};
  char text[40] = "";
  trial.Call([&] { tivUuidToStringA(guid.data(), text); });
  EXPECT_STREQ(text, "00000000-0000-0000-0000-000000000000");
}

ZEBCOMN_USE(ClockFailures, TickCount, "tivGetTickCount") {
  uint32_t ticks = 77;
  const uint32_t before = tivGetTickCount();
  trial.Call([&] { ticks = tivGetTickCount(); });
  const uint32_t after = tivGetTickCount();
  if (trial.FailedIn("sysconf")) {
    EXPECT_EQ(ticks, 0U);
  } else if (trial.FailedIn("times")) {
    EXPECT_EQ(ticks, static_cast<uint32_t>(-1000 / sysconf(_SC_CLK_TCK))) << "-1 ticks";
  } else {
    EXPECT_FALSE(trial.Failed());
    EXPECT_LE(ticks - before, after - before) << "between the two, as the count wraps";
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ClockFailures, LocalTime, "tivGetSystemTime") {
  TivSystemTime time = {};
  trial.Call([&] { tivGetSystemTime(&time); });
  EXPECT_EQ(time.wYear == 0, trial.FailedIn("localtime_r"));
  EXPECT_EQ(time.wMonth == 0, trial.FailedIn("localtime_r"));
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(SystemNameFailures, ComputerName, "tivGetComputerName") {
  char name[ZEBCOMN_PATH_CAPACITY] = "";
  DWORD size = sizeof name;
  BOOL got = FALSE;
  trial.Call([&] { got = tivGetComputerName(name, &size); });
  EXPECT_EQ(got, trial.Failed() ? FALSE : TRUE);
  EXPECT_EQ(size == sizeof name, trial.Failed());
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(SystemNameFailures, Fixed, "tivGetWindowsDirectory",
                          "tivGetSystemDirectory", "tivTranslateMessage", "tivGetModuleFileName") {
  char windows[ZEBCOMN_PATH_CAPACITY] = "";
  char system[ZEBCOMN_PATH_CAPACITY] = "";
  char name[ZEBCOMN_PATH_CAPACITY] = "";
  trial.Call([&] {
    EXPECT_EQ(tivGetWindowsDirectory(windows, sizeof windows), 4U);
    EXPECT_EQ(tivGetSystemDirectory(system, sizeof system), 4U);
    EXPECT_EQ(tivTranslateMessage(nullptr), TRUE);
    EXPECT_EQ(tivGetModuleFileName(nullptr, name, sizeof name), 0U);
  });
  EXPECT_STREQ(windows, "/opt");
  EXPECT_STREQ(system, "/usr");
}

}  // namespace
