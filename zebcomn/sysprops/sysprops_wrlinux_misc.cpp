#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <vector>

#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/sysprops/property_names.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_comn.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"
#include "zebcomn/util/time_zone.h"

namespace zebcomn {
namespace {

constexpr std::size_t kFirstEntryCapacity = 1024;
constexpr std::size_t kMaxEntryCapacity = 1024 * 1024;
constexpr std::size_t kUpdateTimeCapacity = 32;
constexpr long long kFirstYear = 1900;
constexpr const char* kNoEntryName = "root";

}  // namespace

std::string LoginName() {
  std::array<char, kFirstEntryCapacity> few;
  std::vector<char> many;
  passwd entry{};
  passwd* found = nullptr;
  int result = getpwuid_r(getuid(), &entry, few.data(), few.size(), &found);
  while (result == ERANGE && many.size() < kMaxEntryCapacity) {
    many.resize(std::max(many.size(), few.size()) * 2);
    result = getpwuid_r(getuid(), &entry, many.data(), many.size(), &found);
  }
  return found == nullptr ? kNoEntryName : found->pw_name;
}

const wchar_t* LanguageId(const char* lang) {
  // Kept: the United Kingdom's usual locale name is en_GB, and that is no match.
  if (lang != nullptr && std::strstr(lang, "en_UK") != nullptr) return L"0809";
  if (lang != nullptr && std::strstr(lang, "ja_JP") != nullptr) return L"0411";
  return L"0409";
}

std::wstring UpdateTime(const std::tm& local) {
  std::array<char, kUpdateTimeCapacity> text{};
  // The last years that the record holds are no int when they are counted from the year 0.
  const int wanted = std::snprintf(text.data(), text.size(), "%02d/%02d/%04lld %02d:%02d:%02d",
                                   local.tm_mon + 1, local.tm_mday, kFirstYear + local.tm_year,
                                   local.tm_hour, local.tm_min, local.tm_sec);
  const int length = std::clamp(wanted, 0, static_cast<int>(text.size()) - 1);
  return std::wstring(text.data(), text.data() + length);
}

}  // namespace zebcomn

namespace quenty_com::pelu::sysprops {
namespace {

/// The language id of the environment. `zebcomn_timegm` changes "TZ" under the same mutex, and the
/// environment cannot be read while another thread rewrites it.
const wchar_t* EnvironmentsLanguageId() {
  const zebcomn::HeldMutex held(mutex);
  return zebcomn::LanguageId(std::getenv("LANG"));
}

/// The local time; nothing when it has no local form. The C library takes the zone's name away for
/// a moment while it breaks time down, and a collection in another thread reads that name under the
/// mutex; `zebcomn_timegm` switches the process to UTC under it.
std::optional<std::tm> LocalTime() {
  const zebcomn::HeldMutex held(mutex);
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  if (localtime_r(&now, &local) == nullptr) return std::nullopt;
  return local;
}

}  // namespace

int ISysProps::GetMiscInformation(MiscInformation& info) {
  info.m_wstrUserName = sysprops_ansi_to_wide(zebcomn::LoginName());
  info.m_wstrTimeZone = unknown;
  std::wstring zone;
  if (zebcomn_gettimezone(zone) != 0) info.m_wstrTimeZone = zone;
  if (const auto local = LocalTime()) info.m_wstrLastUpdate = zebcomn::UpdateTime(*local);
  info.m_wstrDefaultLangID = EnvironmentsLanguageId();
  return 1;
}

}  // namespace quenty_com::pelu::sysprops
