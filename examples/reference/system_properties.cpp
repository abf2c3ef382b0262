// The whole catalogue in one map, the file systems in another; then a single value.
#include <zebcomn/sysprops/sysprops.h>
#include <zebcomn/sysprops/sysprops_comn.h>

#include <iostream>

using namespace quenty_com::pelu::sysprops;

int main() {
  ISysProps properties;
  PropertyMap catalogue;
  FileSystemMap file_systems;
  properties.GetAllSystemProperties(catalogue, file_systems);
  for (const auto& [name, value] : catalogue) {
    std::cout << sysprops_wide_to_ansi(name) << ": " << sysprops_wide_to_ansi(value) << '\n';
  }
  const std::wstring processors = properties.GetOneSystemProperty(NumOfCPU_Key);
  return catalogue.size() == 30 && processors == catalogue[NumOfCPU_Key] ? 0 : 1;
}
