// A section and a key by their names; property names are constants of the same kind.
#include <zebcomn/sysprops/property_names.h>
#include <zebcomn/util/data_constants.h>

#include <iostream>

using namespace quenty_com::pelu;

int main() {
  std::wcout << L'[' << section_general << L"]\n" << key_EnforcePolicy << L"=1\n";
  return props_key_agent_guid == L"AgentGUID" && sysprops::IPAddress_Key == L"IPAddress" ? 0 : 1;
}
