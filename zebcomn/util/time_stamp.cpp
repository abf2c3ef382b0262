#include "zebcomn/util/time_stamp.h"

#include <cstdio>
#include <ctime>
#include <cwchar>

#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/number_text.h"
#include "zebcomn/util/text_conversion.h"
#include "zebcomn/util/time_zone.h"

namespace {

constexpr char kCompactFormat[] = "%04d%02d%02d%02d%02d%02d";
constexpr unsigned kFirstYear = 1900;
constexpr std::size_t kStampCapacity = 32;
constexpr std::size_t kFormatCapacity = 260;

/// The year of a moment. The last 1900 years that the C library breaks down pass the end of an int:
/// they wrap.
int YearOf(const tm& fields) {
  return static_cast<int>(static_cast<unsigned>(fields.tm_year) + kFirstYear);
}

using BreakDown = tm* (*)(const std::time_t*, tm*);

void WriteNarrowStamp(char* out, unsigned int size) {
  if (out == nullptr || size == 0) return;
  *out = '\0';
  const std::time_t now = std::time(nullptr);
  tm fields{};
  if (localtime_r(&now, &fields) == nullptr) return;
  std::snprintf(out, size, kCompactFormat, YearOf(fields), fields.tm_mon + 1, fields.tm_mday,
                fields.tm_hour, fields.tm_min, fields.tm_sec);
}

void WriteWideStamp(wchar_t* out, unsigned int size, BreakDown break_down) {
  if (out == nullptr || size == 0) return;
  const std::time_t now = std::time(nullptr);
  tm fields{};
  wchar_t stamp[kStampCapacity] = {};
  if (break_down(&now, &fields) != nullptr) {
    wchar_t format[kFormatCapacity] = {};
    tivStandardAtoU(kCompactFormat, kFormatCapacity, format);
    std::swprintf(stamp, kStampCapacity, format, YearOf(fields), fields.tm_mon + 1, fields.tm_mday,
                  fields.tm_hour, fields.tm_min, fields.tm_sec);
  }
  // Kept: a buffer of fourteen characters or fewer is filled without a NUL.
  std::wcsncpy(out, stamp, size);
}

}  // namespace

void tivmcomn_CreateGmtTimeStampA(char* out, unsigned int size) {
  // Kept: local time; callers rely on the two narrow stamps agreeing.
  WriteNarrowStamp(out, size);
}

void tivmcomn_CreateLocalTimeStampA(char* out, unsigned int size) {
  WriteNarrowStamp(out, size);
}

void tivmcomn_CreateGmtTimeStampW(wchar_t* out, unsigned int size) {
  WriteWideStamp(out, size, gmtime_r);
}

void tivmcomn_CreateLocalTimeStampW(wchar_t* out, unsigned int size) {
  WriteWideStamp(out, size, localtime_r);
}

namespace quenty_com::pelu {

std::string tivmcomn_get_time_stamp_ansi() {
  const zebcomn::HeldMutex held(mutex);
  const std::time_t now = std::time(nullptr);
  tm fields{};
  if (localtime_r(&now, &fields) == nullptr) return {};
  char stamp[kStampCapacity] = {};
  const int length = std::snprintf(stamp, sizeof stamp, "%4d-%02d-%02d %02d:%02d:%02d",
                                   YearOf(fields), fields.tm_mon + 1, fields.tm_mday,
                                   fields.tm_hour, fields.tm_min, fields.tm_sec);
  return length < 0 ? std::string() : std::string(stamp);
}

std::wstring tivmcomn_get_time_stamp_wide() {
  return tivmcomn_ansi_to_wide(tivmcomn_get_time_stamp_ansi());
}

}  // namespace quenty_com::pelu
