// C++17: the constants, a collection of properties, and a thread behind a handle.
#include <zebcomn/zebcomn.h>

#include <atomic>
#include <cstdio>
#include <map>
#include <string>

namespace {

using quenty_com::pelu::sysprops::ISysProps;
using quenty_com::pelu::sysprops::NumOfCPU_Key;

DWORD Count(void* counter) {
  ++*static_cast<std::atomic<int>*>(counter);
  return 0;
}

bool ThreadRuns() {
  std::atomic<int> counter{0};
  const HANDLE thread = tivCreateThread(nullptr, 0, Count, &counter, 0, nullptr);
  const bool ended = tivWaitForSingleObject(thread, TIV_WAIT_INFINITE) == TIV_WAIT_SIGNALLED;
  return tivCloseHandle(thread) == TRUE && ended && counter == 1;
}

bool CatalogueIsWhole() {
  ISysProps properties;
  std::map<std::wstring, std::wstring> catalogue;
  return properties.GetAllSystemProperties(catalogue) == 1 && catalogue.size() >= 29 &&
         catalogue.count(NumOfCPU_Key) == 1;
}

}  // namespace

int main() {
  if (quenty_com::pelu::section_general != L"General") return 1;
  if (!ThreadRuns()) return 2;
  if (!CatalogueIsWhole()) return 3;
  std::puts("C++17 is served");
  return 0;
}
