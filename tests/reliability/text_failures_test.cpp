// Encodings, small text helpers, time stamps, the time zone and the uptime.
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <limits>
#include <optional>
#include <string>

#include "tests/reliability/out_of_memory.h"
#include "tests/reliability/sweep.h"
#include "zebcomn/portable/types.h"
#include "zebcomn/util/byte_order.h"
#include "zebcomn/util/string_helpers.h"
#include "zebcomn/util/text_conversion.h"
#include "zebcomn/util/time_stamp.h"
#include "zebcomn/util/time_zone.h"
#include "zebcomn/util/uptime.h"

namespace {

using namespace quenty_com::pelu;
using zebcomn_test::CallThatMayThrow;
using zebcomn_test::FailedInConversion;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::Trial;

// Longer than a string of either kind holds without an allocation.
const std::string kNarrow = "Text of some length, with a Euro: \u20ac";
const std::wstring kWide = L"Text of some length, with a Euro: \u20ac";

ZEBCOMN_USE(ConversionFailures, ToUtf8, "tivmcomn_unicode_to_utf8") {
  char text[256] = "as it was";
  unsigned int size = sizeof text;
  uint32_t status = 77;
  trial.Call([&] { status = tivmcomn_unicode_to_utf8(kWide.c_str(), text, &size); });
  const bool fails = trial.FailedInAllocation();
  EXPECT_EQ(status, fails ? ZEBCOMN_STATUS_FAILURE : ZEBCOMN_STATUS_OK);
  if (fails) {
    EXPECT_STREQ(text, "as it was");
  } else {
    EXPECT_EQ(text, FailedInConversion(trial) ? "" : kNarrow);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ConversionFailures, FromUtf8, "tivmcomn_utf8_to_unicode") {
  wchar_t text[256] = L"as it was";
  int size = 256;
  uint32_t status = 77;
  trial.Call([&] { status = tivmcomn_utf8_to_unicode(kNarrow.c_str(), text, &size); });
  const bool fails = trial.FailedInAllocation();
  EXPECT_EQ(status, fails ? ZEBCOMN_STATUS_FAILURE : ZEBCOMN_STATUS_OK);
  if (fails) {
    EXPECT_STREQ(text, L"as it was");
  } else {
    EXPECT_EQ(text, FailedInConversion(trial) ? L"" : kWide);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ConversionFailures, ToANarrowString, "tivmcomn_wide_to_ansi") {
  std::string text = "as it was";
  trial.Call([&] { text = tivmcomn_wide_to_ansi(kWide); });
  EXPECT_EQ(text, FailedInConversion(trial) ? "" : kNarrow);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ConversionFailures, ToAWideString, "tivmcomn_ansi_to_wide") {
  std::wstring text = L"as it was";
  trial.Call([&] { text = tivmcomn_ansi_to_wide(kNarrow); });
  EXPECT_EQ(text, FailedInConversion(trial) ? L"" : kWide);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(TextHelperFailures, Strings, "tivmcomn_convert_to_upper", "tivmcomn_convert_to_lower",
            "tivmcomn_strip_leading_whitespace", "tivmcomn_strip_trailing_whitespace",
            "tivmcomn_long_to_ansi_string", "tivmcomn_long_to_wide_string") {
  const std::string text = "   A Text with Blanks around it   ";
  const long number = std::numeric_limits<long>::min();
  std::string texts[5];
  std::wstring wide;
  const bool done = CallThatMayThrow(trial, [&] {
    texts[0] = tivmcomn_convert_to_upper(text);
    texts[1] = tivmcomn_convert_to_lower(text);
    texts[2] = tivmcomn_strip_leading_whitespace(text);
    texts[3] = tivmcomn_strip_trailing_whitespace(text);
    texts[4] = tivmcomn_long_to_ansi_string(number);
    wide = tivmcomn_long_to_wide_string(number);
  });
  if (done) {
    EXPECT_EQ(texts[0], "   A TEXT WITH BLANKS AROUND IT   ");
    EXPECT_EQ(texts[1], "   a text with blanks around it   ");
    EXPECT_EQ(texts[2], "A Text with Blanks around it   ");
    EXPECT_EQ(texts[3], "   A Text with Blanks around it");
    EXPECT_EQ(texts[4], std::to_string(number));
  }
  EXPECT_EQ(wide, done ? std::to_wstring(number) : L"");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE_WITHOUT_CALLS(TextHelperFailures, InPlace, "tivmcomn_chop_semicolon",
                          "tivmcomn_append_backslash_check", "isBigEndian") {
  char text[8] = "a;b";
  trial.Call([&] {
    EXPECT_EQ(tivmcomn_chop_semicolon(text), text + 1);
    EXPECT_EQ(tivmcomn_append_backslash_check(text), 1U);
    EXPECT_EQ(isBigEndian(), __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__);
  });
  EXPECT_STREQ(text, "a/");
}

constexpr size_t kCompactLength = 14;

ZEBCOMN_USE(StampFailures, Narrow, "tivmcomn_CreateGmtTimeStampA",
            "tivmcomn_CreateLocalTimeStampA") {
  char gmt[32] = "as it was";
  char local[32] = "as it was";
  trial.Call([&] { tivmcomn_CreateGmtTimeStampA(gmt, sizeof gmt); });
  trial.Call([&] { tivmcomn_CreateLocalTimeStampA(local, sizeof local); });
  EXPECT_EQ(std::strlen(gmt), trial.FailedIn("localtime_r", 1) ? 0 : kCompactLength);
  EXPECT_EQ(std::strlen(local), trial.FailedIn("localtime_r", 2) ? 0 : kCompactLength);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// The format is widened first, by a call that can fail as well.
ZEBCOMN_USE(StampFailures, Wide, "tivmcomn_CreateGmtTimeStampW", "tivmcomn_CreateLocalTimeStampW") {
  wchar_t gmt[32] = L"as it was";
  wchar_t local[32] = L"as it was";
  trial.Call([&] { tivmcomn_CreateGmtTimeStampW(gmt, 32); });
  trial.Call([&] { tivmcomn_CreateLocalTimeStampW(local, 32); });
  const bool no_gmt = trial.FailedIn("gmtime_r") || trial.FailedIn("mbsrtowcs", 1);
  const bool no_local = trial.FailedIn("localtime_r") || trial.FailedIn("mbsrtowcs", 2);
  EXPECT_EQ(std::wcslen(gmt), no_gmt ? 0 : kCompactLength);
  EXPECT_EQ(std::wcslen(local), no_local ? 0 : kCompactLength);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

constexpr size_t kReadableLength = 19;

ZEBCOMN_USE(StampFailures, ReadableNarrow, "tivmcomn_get_time_stamp_ansi") {
  std::string stamp;
  const bool done = CallThatMayThrow(trial, [&] { stamp = tivmcomn_get_time_stamp_ansi(); });
  const bool is_empty = !done || trial.FailedIn("localtime_r");
  EXPECT_EQ(stamp.size(), is_empty ? 0 : kReadableLength);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// The narrow stamp is thrown for, its wide form is empty.
ZEBCOMN_USE(StampFailures, ReadableWide, "tivmcomn_get_time_stamp_wide") {
  std::wstring stamp = L"as it was";
  bool thrown = false;
  trial.Call([&] {
    try {
      stamp = tivmcomn_get_time_stamp_wide();
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
  });
  EXPECT_EQ(thrown, trial.FailedIn("operator new", 1));
  if (!thrown) {
    const bool is_empty = FailedInConversion(trial) || trial.FailedIn("localtime_r");
    EXPECT_EQ(stamp.size(), is_empty ? 0 : kReadableLength);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// The environment variable for the length of a run, set up in the C library.
class Zone {
 public:
  /// Null for a variable that is not there.
  explicit Zone(const char* zone) {
    if (const char* const old = std::getenv("TZ")) old_ = old;
    Set(zone);
  }
  ~Zone() { Set(old_ ? old_->c_str() : nullptr); }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

 private:
  static void Set(const char* zone) {
    if (zone != nullptr) {
      setenv("TZ", zone, 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

  std::optional<std::string> old_;
};

// 2024-03-05 07:08:09
constexpr std::time_t kMoment = 1709622489;

std::tm MomentFields() {
  std::tm fields = {};
  fields.tm_year = 124;
  fields.tm_mon = 2;
  fields.tm_mday = 5;
  fields.tm_hour = 7;
  fields.tm_min = 8;
  fields.tm_sec = 9;
  return fields;
}

// A process that cannot be switched to UTC has no answer; one that was is switched back.
ZEBCOMN_USE(ZoneFailures, TimegmPutsTheZoneBack, "zebcomn_timegm") {
  const Zone zone("XYZ-3");
  std::tm fields = MomentFields();
  std::time_t moment = 77;
  trial.Call([&] { moment = zebcomn_timegm(&fields); });
  const bool fails = trial.FailedIn("setenv", 1) || trial.FailedIn("mktime");
  EXPECT_EQ(moment, fails ? -1 : kMoment);
  EXPECT_STREQ(std::getenv("TZ"), "XYZ-3");
  EXPECT_STREQ(tzname[0], "XYZ");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// "TZ" is absent after the call.
void CheckTimegmWithoutAZone(Trial& trial, const char* text) {
  const Zone zone(text);
  std::tm fields = MomentFields();
  std::time_t moment = 77;
  trial.Call([&] { moment = zebcomn_timegm(&fields); });
  const bool fails = trial.FailedIn("setenv") || trial.FailedIn("mktime");
  EXPECT_EQ(moment, fails ? -1 : kMoment);
  const bool is_as_it_was = trial.FailedIn("setenv") && text != nullptr;
  if (!is_as_it_was && !trial.FailedIn("unsetenv")) {
    EXPECT_EQ(std::getenv("TZ"), nullptr);
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(ZoneFailures, TimegmLosesAnEmptyZone, "zebcomn_timegm") {
  CheckTimegmWithoutAZone(trial, "");
}

ZEBCOMN_USE(ZoneFailures, TimegmWithoutAZone, "zebcomn_timegm") {
  CheckTimegmWithoutAZone(trial, nullptr);
}

ZEBCOMN_USE(ZoneFailures, Name, "zebcomn_gettimezone") {
  const Zone zone("LONGNAME-3");
  std::wstring name = L"as it was";
  unsigned int stored = 77;
  trial.Call([&] { stored = zebcomn_gettimezone(name); });
  EXPECT_EQ(stored, 1U);
  EXPECT_EQ(name, FailedInConversion(trial) ? L"" : L"LONGNAME");
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

constexpr unsigned long kUnknownUptime = 0x7fffffff;

ZEBCOMN_USE(UptimeFailures, Uptime, "tivmcomn_get_system_uptime", "get_system_uptime_linux") {
  unsigned long uptimes[2] = {77, 77};
  trial.Call([&] { uptimes[0] = tivmcomn_get_system_uptime(); });
  trial.Call([&] { uptimes[1] = get_system_uptime_linux(); });
  for (int i = 0; i < 2; ++i) {
    if (trial.FailedIn("fopen", i + 1)) {
      EXPECT_EQ(uptimes[i], kUnknownUptime);
    } else if (trial.FailedIn("__isoc99_fscanf", i + 1)) {
      EXPECT_EQ(uptimes[i], 0U);
    } else {
      EXPECT_GT(uptimes[i], 0U);
      EXPECT_LT(uptimes[i], kUnknownUptime);
    }
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

}  // namespace
