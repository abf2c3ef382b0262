#include "zebcomn/portable/clock.h"

#include <sys/times.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace {

constexpr std::uint32_t kMillisecondsPerSecond = 1000;
constexpr unsigned kFirstYear = 1900;

static_assert(offsetof(TivSystemTime, wYear) == 0 && offsetof(TivSystemTime, wMonth) == 2 &&
                  offsetof(TivSystemTime, wDayOfWeek) == 4 && offsetof(TivSystemTime, wDay) == 6 &&
                  offsetof(TivSystemTime, wHour) == 8 && offsetof(TivSystemTime, wMinute) == 10 &&
                  offsetof(TivSystemTime, wSecond) == 12 &&
                  offsetof(TivSystemTime, wMilliseconds) == 14 && sizeof(TivSystemTime) == 16,
              "The record is laid out alike on every target.");

}  // namespace

uint32_t tivGetTickCount(void) {
  const long ticks_per_second = sysconf(_SC_CLK_TCK);
  if (ticks_per_second <= 0) return 0;
  tms unused;
  const auto ticks = static_cast<std::uint32_t>(times(&unused));
  // Kept: the product wraps as a signed 32-bit number before it is divided, on every word size.
  const auto product = static_cast<std::int32_t>(ticks * kMillisecondsPerSecond);
  return static_cast<uint32_t>(product / static_cast<std::int32_t>(ticks_per_second));
}

void tivGetSystemTime(TivSystemTime* time) {
  if (time == nullptr) return;
  *time = {};
  const std::time_t now = ::time(nullptr);
  tm fields{};
  // Kept: local time, not UTC, despite the name.
  if (localtime_r(&now, &fields) == nullptr) return;
  // The last years that the C library breaks down pass the end of an int.
  time->wYear = static_cast<uint16_t>(static_cast<unsigned>(fields.tm_year) + kFirstYear);
  time->wMonth = static_cast<uint16_t>(fields.tm_mon + 1);
  time->wDayOfWeek = static_cast<uint16_t>(fields.tm_wday);
  time->wDay = static_cast<uint16_t>(fields.tm_mday);
  time->wHour = static_cast<uint16_t>(fields.tm_hour);
  time->wMinute = static_cast<uint16_t>(fields.tm_min);
  time->wSecond = static_cast<uint16_t>(fields.tm_sec);
}
