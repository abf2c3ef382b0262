#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

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
constexpr const char* kNoEntryName = "root";

}  // namespace

std::string LoginName() {
  std::vector<char> texts(kFirstEntryCapacity);
  passwd entry{};
  passwd* found = nullptr;
  while (getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found) == ERANGE &&
         texts.size() < kMaxEntryCapacity) {
    texts.resize(texts.size() * 2);
  }
  return found == nullptr ? kNoEntryName : found->pw_name;
}

const wchar_t* LanguageId(const char* lang) {
  // Kept: the United Kingdom's usual locale name is en_GB, and that is no match.
  if (lang != nullptr && std::strstr(lang, "en_UK") != nullptr) return L"0809";
  if (lang != nullptr && std::strstr(lang, "ja_JP") != nullptr) return L"0411";
  return L"0409";
}

std::string UpdateTime(const std::tm& local) {
  std::array<char, kUpdateTimeCapacity> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%02d/%02d/%04d %02d:%02d:%02d", local.tm_mon + 1,
                    local.tm_mday, local.tm_year + 1900, local.tm_hour, local.tm_min, local.tm_sec);
  return length < 0 ? std::string() : std::string(text.data());
}

}  // namespace zebcomn

namespace quenty_com::pelu::sysprops {

int ISysProps::GetMiscInformation(MiscInformation& info) {
  info.m_wstrUserName = sysprops_ansi_to_wide(zebcomn::LoginName());
  info.m_wstrTimeZone = unknown;
  std::wstring zone;
  if (zebcomn_gettimezone(zone) != 0) info.m_wstrTimeZone = zone;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  if (localtime_r(&now, &local) != nullptr) {
    info.m_wstrLastUpdate = sysprops_ansi_to_wide(zebcomn::UpdateTime(local));
  }
  info.m_wstrDefaultLangID = zebcomn::LanguageId(std::getenv("LANG"));
  return 1;
}

}  // namespace quenty_com::pelu::sysprops
