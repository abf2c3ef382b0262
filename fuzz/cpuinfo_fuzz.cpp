// Any processor text gives the record that the described reading, line after line, gives.
#include <string>

#include "fuzz/fuzz_input.h"
#include "fuzz/line_reference.h"
#include "fuzz/text_file.h"
#include "zebcomn/sysprops/sysprops_wrlinux_internal.h"
#include "zebcomn/util/text_conversion.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace zebcomn_fuzz;
  static TextFile file;
  const std::string text = WithFillerInFront(TextOf(data, size));
  int processors = 0;
  std::string speed;
  std::string model;
  for (const std::string& line : LinesThatFit(text)) {
    if (Holds(line, "processor")) ++processors;
    if (Holds(line, "MHz")) speed = ValueOf(line);
    if (Holds(line, "model")) model = ValueOf(line);
  }
  quenty_com::pelu::sysprops::CPUInformation info;
  const std::wstring serial_number = info.m_wstrCPUSerialNumber;
  Require(zebcomn::CollectCpu(file.With(text), info) == 1);
  Require(info.m_wstrNumOfCPU == std::to_wstring(processors));
  Require(info.m_wstrCPUSpeed == quenty_com::pelu::tivmcomn_ansi_to_wide(speed));
  Require(info.m_wstrCPUType == quenty_com::pelu::tivmcomn_ansi_to_wide(model));
  Require(info.m_wstrIsPortable == L"-1");
  Require(info.m_wstrCPUSerialNumber == serial_number);
  return 0;
}
