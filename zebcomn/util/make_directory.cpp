#include "zebcomn/util/make_directory.h"

#include <sys/stat.h>

#include <array>
#include <cstddef>

#include "zebcomn/portable/types.h"

namespace {

constexpr mode_t kDirectoryMode = 0700;
/// What ends up to this index is taken to exist.
constexpr size_t kLastIndexTakenToExist = 3;
/// What the walk's result is compared with; `mkdir` gives only 0 and -1.
constexpr int kNeverGivenByMkdir = 1;

/// Makes each directory of the path and gives the result of the last `mkdir`.
template <typename Character>
int MakeEach(const Character* path) {
  std::array<char, ZEBCOMN_PATH_CAPACITY> narrow{};
  int made = 0;
  for (size_t i = 0; path[i] != 0 && i < narrow.size() - 1; ++i) {
    if (path[i] == static_cast<Character>('/') && i > kLastIndexTakenToExist) {
      made = mkdir(narrow.data(), kDirectoryMode);
    }
    // Kept: a wide character keeps its low eight bits; callers pass ASCII paths.
    narrow.at(i) = static_cast<char>(path[i] & 0xFF);
  }
  return made;
}

template <typename Character>
uint32_t MakeRecursiveDirectory(const Character* path) {
  if (path == nullptr) return ZEBCOMN_STATUS_FAILURE;
  // Kept: no mkdir gives 1, so the result is always the failure code; callers do not read it.
  return MakeEach(path) == kNeverGivenByMkdir ? ZEBCOMN_STATUS_OK : ZEBCOMN_STATUS_FAILURE;
}

}  // namespace

uint32_t tivmcomn_MakeRecursiveDirectoryA(char* path) {
  return MakeRecursiveDirectory(path);
}

uint32_t tivmcomn_MakeRecursiveDirectoryW(wchar_t* path) {
  return MakeRecursiveDirectory(path);
}
