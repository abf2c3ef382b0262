#include <algorithm>

#include "zebcomn/sysprops/property_names.h"
#include "zebcomn/sysprops/sysprops_comn.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"
#include "zebcomn/sysprops/system_file_internal.h"

namespace zebcomn {
namespace {

constexpr std::string_view kProductWords = "Wind River Linux";

std::string FirstLine(std::string text) {
  text.erase(std::min(text.find('\n'), text.size()));
  return text;
}

// Kept: nothing takes the newlines' place, so a word at a line's end is glued to the next line.
std::string JoinLines(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  return text;
}

}  // namespace

std::optional<std::string> FindReleaseVersion(const std::string& text) {
  const std::size_t words = text.find(kProductWords);
  if (words == std::string::npos) return std::nullopt;
  // Kept: one character is skipped whatever it is; a tab separates as well as a blank.
  const std::size_t start = words + kProductWords.size() + 1;
  const std::size_t blank = text.find(' ', start);
  // Kept: a version that nothing follows is not one.
  if (blank == std::string::npos) return std::nullopt;
  return text.substr(start, blank - start);
}

int CollectOs(const char* platform_file, const char* release_file, sysprops::OSInformation& info) {
  info.m_wstrPlatformID = sysprops::platform_wrlinux;
  info.m_wstrOSType = sysprops::os_linux;
  const std::string platform = FirstLine(ReadSystemFile(platform_file));
  info.m_wstrOSPlatform =
      platform.empty() ? sysprops::p_embedded : sysprops::sysprops_ansi_to_wide(platform);
  info.m_wstrOSBitMode = L"0";
  info.m_wstrOSOEMId = sysprops::wrlinux_distribution;
  info.m_wstrOSCsdVersion = L"0";
  const auto version = FindReleaseVersion(JoinLines(ReadSystemFile(release_file)));
  if (!version) return 0;
  info.m_wstrOSVersion = sysprops::sysprops_ansi_to_wide(*version);
  return 1;
}

}  // namespace zebcomn
