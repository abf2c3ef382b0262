#include "zebcomn/sysprops/sysprops_comn.h"

#include <sys/utsname.h>

#include "zebcomn/util/text_conversion.h"

namespace quenty_com::pelu::sysprops {

// By value, because callers' object files hold these signatures.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::wstring sysprops_ansi_to_wide(std::string text) { return tivmcomn_ansi_to_wide(text); }

// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::string sysprops_wide_to_ansi(std::wstring text) { return tivmcomn_wide_to_ansi(text); }

int getComputerName(std::string& name) {
  utsname names{};
  if (uname(&names) != 0) return 0;
  name = names.nodename;
  const size_t dot = name.find('.');
  if (dot != std::string::npos) name.erase(dot);
  return 1;
}

}  // namespace quenty_com::pelu::sysprops
