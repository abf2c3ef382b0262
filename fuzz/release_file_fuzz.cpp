// Any release file and any platform file give the record that the described steps give. What stands
// behind the input's first form feed is the platform file.
#include <sstream>
#include <string>

#include "fuzz/fuzz_input.h"
#include "fuzz/text_file.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"
#include "zebcomn/util/text_conversion.h"

namespace {

using namespace zebcomn_fuzz;
using quenty_com::pelu::tivmcomn_ansi_to_wide;

/// The word behind the product words in the lines' text with nothing between the lines.
bool FindVersion(const std::string& text, std::string& version) {
  std::istringstream stream(text);
  std::string joined;
  std::string line;
  while (std::getline(stream, line)) joined += line;
  const std::string words = "Wind River Linux";
  const size_t at = joined.find(words);
  if (at == std::string::npos || at + words.size() + 1 > joined.size()) return false;
  const std::string rest = joined.substr(at + words.size() + 1);
  version = CutAt(rest, ' ').first;
  return version.size() < rest.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TextFile platform_file;
  static TextFile release_file;
  const auto [release, platform] = CutAt(TextOf(data, size), '\f');
  const std::string first_line = CutAt(platform, '\n').first;
  std::string version;
  const bool found = FindVersion(release, version);
  quenty_com::pelu::sysprops::OSInformation info;
  info.m_wstrOSVersion = L"as before";
  info.m_wstrOSBuildNum = L"as before";
  const int result =
      zebcomn::CollectOs(platform_file.With(platform), release_file.With(release), info);
  Require(result == (found ? 1 : 0));
  Require(info.m_wstrOSVersion == (found ? tivmcomn_ansi_to_wide(version) : L"as before"));
  Require(info.m_wstrOSPlatform ==
          (first_line.empty() ? L"Embedded" : tivmcomn_ansi_to_wide(first_line)));
  Require(info.m_wstrPlatformID == L"WRLNX" && info.m_wstrOSType == L"Linux");
  Require(info.m_wstrOSBitMode == L"0" && info.m_wstrOSCsdVersion == L"0");
  Require(info.m_wstrOSOEMId == L"Wind River" && info.m_wstrOSBuildNum == L"as before");
  return 0;
}
