#include "zebcomn/util/find_files.h"

#include <sys/stat.h>

namespace {

constexpr int32_t kNotStarted = -1;
constexpr int32_t kNoSearch = 0;

}  // namespace

int32_t tivmcomn_findfirstA(const char* pattern, TivFindData* data) {
  const int32_t id = tivFindFirstDirEnt(pattern, data);
  return id == kNotStarted ? kNoSearch : id;
}

BOOL tivmcomn_findnextA(int32_t search, TivFindData* data) {
  return tivFindNextDirEnt(search, data) == TRUE ? TRUE : FALSE;
}

BOOL tivmcomn_findclose(int32_t search) {
  return tivFindCloseDirEnt(search);
}

uint32_t tivmcomn_get_file_sizeA(char* path, unsigned int* size) {
  if (size == nullptr) return ZEBCOMN_STATUS_FAILURE;
  struct stat status = {};
  const bool measured = path != nullptr && stat(path, &status) == 0;
  // Kept: the size is stored on failure too, as 0; callers read it without the result.
  *size = static_cast<unsigned int>(status.st_size);
  return measured ? ZEBCOMN_STATUS_OK : ZEBCOMN_STATUS_FAILURE;
}
