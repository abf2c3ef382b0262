#include "zebcomn/util/time_zone.h"

#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/util/text_conversion.h"

namespace quenty_com::pelu {

pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;

namespace {

constexpr std::size_t kMaxZoneText = 1024;
constexpr std::size_t kMaxZoneName = 63;
// How often a null abbreviation is looked at again, and how long before: more than half a second in
// all.
constexpr int kMostLooks = 5000;
constexpr useconds_t kMicrosecondsBetweenLooks = 100;

// Has the C library read "TZ" for the first time. It reads it by itself when a time is first broken
// down, which a stamp of another thread must not do while the variable is changed here.
void ReadZoneOnce() {
  static const bool is_read = (tzset(), true);
  static_cast<void>(is_read);
}

// Switches the process to UTC and back. The library's mutex is held meanwhile.
class UtcZone {
 public:
  UtcZone() {
    ReadZoneOnce();
    const char* const zone = std::getenv("TZ");
    if (zone != nullptr && strnlen(zone, kMaxZoneText + 1) <= kMaxZoneText) {
      std::strcpy(saved_, zone);
    }
    in_utc_ = setenv("TZ", "", 1) == 0;
    tzset();
  }
  ~UtcZone() {
    if (!in_utc_) return;
    // Kept: an empty or overlong value is not put back; "TZ" is absent after it.
    if (saved_[0] != '\0') {
      PutBack();
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  UtcZone(const UtcZone&) = delete;
  UtcZone& operator=(const UtcZone&) = delete;

  /// Whether the process could be switched.
  bool in_utc() const { return in_utc_; }

 private:
  /// Tries again while there is no memory, so that a short lack of it does not leave the process in
  /// UTC for good.
  void PutBack() const {
    constexpr int kMostTries = 1000;
    for (int tries = 0; tries < kMostTries && setenv("TZ", saved_, 1) != 0; ++tries) sched_yield();
  }

  bool in_utc_ = false;
  char saved_[kMaxZoneText + 1] = {};
};

// The abbreviation of the standard-time zone; null when there is none. The C library takes it away
// while any thread breaks down a local time, and such a thread can be held up just then: so a null
// is looked at again. The text itself stays for good.
const char* StandardZone() {
  const char* zone = zebcomn::LoadAcquire<char*>(&tzname[0]);
  for (int looks = 0; zone == nullptr && looks < kMostLooks; ++looks) {
    usleep(kMicrosecondsBetweenLooks);
    zone = zebcomn::LoadAcquire<char*>(&tzname[0]);
  }
  return zone;
}

}  // namespace

std::time_t zebcomn_timegm(std::tm* time) {
  if (time == nullptr) return -1;
  const zebcomn::HeldMutex held(mutex);
  const UtcZone utc;
  return utc.in_utc() ? std::mktime(time) : -1;
}

unsigned int zebcomn_gettimezone(std::wstring& name) {
  const zebcomn::HeldMutex held(mutex);
  const char* const zone = StandardZone();
  if (zone == nullptr) return 0;
  char text[kMaxZoneName + 1] = {};
  std::strncpy(text, zone, kMaxZoneName);
  try {
    name = tivmcomn_ansi_to_wide(text);
  } catch (const std::bad_alloc&) {
    name.clear();
  }
  return 1;
}

}  // namespace quenty_com::pelu
