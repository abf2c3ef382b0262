// One property by one call; each call collects anew.
#include <zebcomn/sysprops/sysprops_api.h>
#include <zebcomn/util/text_conversion.h>

#include <iostream>

using quenty_com::pelu::tivmcomn_wide_to_ansi;

int main() {
  std::cout << tivmcomn_wide_to_ansi(tivmcomn_get_os_type()) << ", "
            << tivmcomn_wide_to_ansi(tivmcomn_get_total_memory()) << " bytes, user "
            << tivmcomn_wide_to_ansi(tivmcomn_get_user_name()) << '\n';
  return tivmcomn_get_os_type() == L"Linux" && tivmcomn_get_file_system_name(0) == L"N/A" ? 0 : 1;
}
