// No exported function is left out of the sweep.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <string>
#include <string_view>

#include "tests/reliability/sweep.h"

namespace {

// Whether a name without arguments is a C object: a C++ object cannot be found by its source name,
// and a C++ function shows its arguments.
bool IsFunction(const std::string& name) {
  void* const address = dlsym(RTLD_DEFAULT, name.c_str());
  if (address == nullptr) return false;
  Dl_info info;
  void* entry = nullptr;
  if (dladdr1(address, &info, &entry, RTLD_DL_SYMENT) == 0 || entry == nullptr) return false;
  return ELF64_ST_TYPE(static_cast<const ElfW(Sym)*>(entry)->st_info) == STT_FUNC;
}

void Remove(std::string& text, std::string_view part) {
  for (size_t at = 0; (at = text.find(part)) != std::string::npos;) text.erase(at, part.size());
}

// Where the arguments begin: behind the name, which may be "operator()".
size_t FindArguments(std::string_view line) {
  constexpr std::string_view kCallOperator = "operator()";
  const size_t name = line.find(kCallOperator);
  return line.find('(', name == std::string_view::npos ? 0 : name + kCallOperator.size());
}

// A function's name as the uses write it; empty for an object.
std::string FunctionName(std::string line) {
  const size_t arguments = FindArguments(line);
  if (arguments == std::string::npos && !IsFunction(line)) return "";
  line.resize(arguments == std::string::npos ? line.size() : arguments);
  for (const char* part : {"quenty_com::pelu::sysprops::", "quenty_com::pelu::", "[abi:cxx11]"}) {
    Remove(line, part);
  }
  return line;
}

std::set<std::string> ExportedFunctions() {
  std::ifstream list(ZEBCOMN_EXPORTED_NAMES);
  std::set<std::string> names;
  for (std::string line; std::getline(list, line);) {
    if (const std::string name = FunctionName(line); !name.empty()) names.insert(name);
  }
  return names;
}

TEST(SweepCoverage, EveryExportedFunctionHasAUse) {
  const std::set<std::string> exported = ExportedFunctions();
  ASSERT_GT(exported.size(), 200U);
  std::set<std::string> covered;
  for (const zebcomn_test::Use* use : zebcomn_test::AllUses()) {
    covered.insert(use->covered().begin(), use->covered().end());
  }
  for (const std::string& name : exported) EXPECT_EQ(covered.count(name), 1U) << name;
  for (const std::string& name : covered) EXPECT_EQ(exported.count(name), 1U) << name;
  std::printf("sweep: %zu of %zu exported functions are covered\n", covered.size(),
              exported.size());
}

}  // namespace
