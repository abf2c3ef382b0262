// Any memory text gives the two numbers that the described reading, line after line, gives.
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_input.h"
#include "fuzz/line_reference.h"
#include "fuzz/text_file.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"

namespace {

using namespace zebcomn_fuzz;

/// Removes the characters one by one, then reads a number of the host's long.
std::wstring Bytes(std::string value) {
  for (const char dropped : std::string(" :kKbB")) {
    for (size_t at = 0; (at = value.find(dropped)) != std::string::npos;) value.erase(at, 1);
  }
  const auto kilobytes = static_cast<int64_t>(std::strtol(value.c_str(), nullptr, 10));
  return std::to_wstring(static_cast<int64_t>(static_cast<uint64_t>(kilobytes) * 1024));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TextFile file;
  const std::string text = WithFillerInFront(TextOf(data, size));
  std::string total;
  std::string free;
  for (const std::string& line : LinesThatFit(text)) {
    if (Holds(line, "MemTotal:")) total = ValueOf(line);
    if (Holds(line, "MemFree")) free = ValueOf(line);
  }
  quenty_com::pelu::sysprops::MemoryInformation info;
  Require(zebcomn::CollectMemory(file.With(text), info) == 1);
  Require(info.m_wstrTotalPhysicalMemory == Bytes(total));
  Require(info.m_wstrFreeMemory == Bytes(free));
  return 0;
}
