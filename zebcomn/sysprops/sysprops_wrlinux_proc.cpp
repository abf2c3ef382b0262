#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "zebcomn/sysprops/sysprops_comn.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"
#include "zebcomn/sysprops/system_file_internal.h"

namespace zebcomn {
namespace {

constexpr std::uint64_t kBytesPerKb = 1024;

/// Dropped from a memory value before it is converted, wherever they stand.
constexpr std::string_view kDropped = " :kKbB";

}  // namespace

int CollectCpu(const char* cpuinfo_file, sysprops::CPUInformation& info) {
  std::size_t processors = 0;
  std::string speed;
  std::string model;
  // Kept: each test is a search anywhere in the line, and the last line wins. "model" is in "model
  // name" too, and any line that mentions a processor counts as one.
  ForEachLineBlock(cpuinfo_file, [&](std::string_view block) {
    processors += CountLinesWith(block, "processor");
    TakeLastValue(block, "MHz", speed);
    TakeLastValue(block, "model", model);
  });
  info.m_wstrCPUType = sysprops::sysprops_ansi_to_wide(std::move(model));
  info.m_wstrCPUSpeed = sysprops::sysprops_ansi_to_wide(std::move(speed));
  info.m_wstrNumOfCPU = NumberText(static_cast<int>(processors));
  info.m_wstrIsPortable = L"-1";
  return 1;
}

std::wstring NumberText(std::int64_t number) {
  // The wide form of the standard library prints through a stream, which takes eight times as long.
  const std::string digits = std::to_string(number);
  return std::wstring(digits.begin(), digits.end());
}

std::wstring MemoryBytes(std::string value) {
  value.erase(std::remove_if(value.begin(), value.end(),
                             [](char c) { return kDropped.find(c) != std::string_view::npos; }),
              value.end());
  // Past the range of the host's long the number stays at its end, as strtol gives it.
  const std::int64_t kilobytes = std::strtol(value.c_str(), nullptr, 10);
  return NumberText(static_cast<std::int64_t>(static_cast<std::uint64_t>(kilobytes) * kBytesPerKb));
}

int CollectMemory(const char* meminfo_file, sysprops::MemoryInformation& info) {
  std::string total;
  std::string free;
  ForEachLineBlock(meminfo_file, [&](std::string_view block) {
    TakeLastValue(block, "MemTotal:", total);
    TakeLastValue(block, "MemFree", free);
  });
  info.m_wstrTotalPhysicalMemory = MemoryBytes(std::move(total));
  info.m_wstrFreeMemory = MemoryBytes(std::move(free));
  return 1;
}

}  // namespace zebcomn
