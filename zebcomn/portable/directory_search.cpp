#include "zebcomn/portable/directory_search.h"

#include <sys/stat.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "zebcomn/portable/bounded_text_internal.h"
#include "zebcomn/portable/error_internal.h"
#include "zebcomn/portable/global_mutexes.h"
#include "zebcomn/portable/held_mutex_internal.h"
#include "zebcomn/portable/plain_atomic_internal.h"
#include "zebcomn/portable/wildcard.h"

TivSearchRecord* pDirEntTable[TIV_SEARCH_COUNT];

namespace {

constexpr int32_t kNoSearch = -1;

static_assert(offsetof(TivFindData, attributes) == 0 && offsetof(TivFindData, reserved) == 4 &&
                  offsetof(TivFindData, last_access_time) == 8 &&
                  offsetof(TivFindData, last_write_time) == 12 &&
                  offsetof(TivFindData, size) == 16 && offsetof(TivFindData, name) == 20 &&
                  sizeof(TivFindData) == 280,
              "The record is laid out alike on every target.");
static_assert(offsetof(TivSearchRecord, stream) == 0 &&
                  offsetof(TivSearchRecord, pattern) == sizeof(DIR*) &&
                  offsetof(TivSearchRecord, directory) == sizeof(DIR*) + 261 &&
                  (sizeof(void*) != 4 || sizeof(TivSearchRecord) == 528),
              "The fields stand in this order on every target.");

struct DirectoryCloser {
  void operator()(DIR* stream) const { closedir(stream); }
};
using UniqueDirectory = std::unique_ptr<DIR, DirectoryCloser>;

void ClearTable() {
  for (TivSearchRecord*& entry : pDirEntTable)
    zebcomn::StoreRelaxed<TivSearchRecord*>(&entry, nullptr);
}

void ClearTableOnFirstCall() {
  static const bool bFirstCall = (ClearTable(), false);
  static_cast<void>(bFirstCall);
}

/// Splits "directory/pattern" at its last "/" into the two texts of a record.
void SplitPattern(const char* text, TivSearchRecord& record) {
  const char* slash = std::strrchr(text, '/');
  if (slash == nullptr) {
    zebcomn::CopyBounded(record.directory, ".");
    zebcomn::CopyBounded(record.pattern, text);
    return;
  }
  zebcomn::CopyBounded(record.directory, {text, static_cast<size_t>(slash + 1 - text)});
  zebcomn::CopyBounded(record.pattern, slash + 1);
}

/// Stores a copy of `search` in the lowest free entry and gives its id; -1 when no entry is free or
/// there is no memory. The stream is the table's on success and stays the caller's on failure.
int32_t StoreInFreeEntry(const TivSearchRecord& search) {
  for (int32_t i = 0; i < TIV_SEARCH_COUNT; ++i) {
    if (zebcomn::LoadRelaxed(&pDirEntTable[i]) != nullptr) continue;
    auto* record = static_cast<TivSearchRecord*>(std::malloc(sizeof(TivSearchRecord)));
    if (record == nullptr) return kNoSearch;
    *record = search;
    zebcomn::StoreRelease(&pDirEntTable[i], record);
    return i + 1;
  }
  return kNoSearch;
}

int32_t Claim(const TivSearchRecord& search) {
  const zebcomn::HeldMutex lock(MutexDirEnt);
  if (!lock.held()) return kNoSearch;
  const int32_t id = StoreInFreeEntry(search);
  if (id == kNoSearch) zebcomn::StoreError(EAGAIN);
  return id;
}

/// Clears the whole record but for the name, field by field: clearing it as a whole is a string
/// instruction, which takes longer than all the rest.
void ClearWithName(TivFindData* data, const char* name) {
  data->attributes = 0;
  data->reserved = 0;
  data->last_access_time = 0;
  data->last_write_time = 0;
  data->size = 0;
  constexpr size_t kLongestName = sizeof(data->name) - 1;
  std::strncpy(data->name, name, kLongestName);  // Clears what follows the name too.
  data->name[kLongestName] = '\0';
}

/// The entry of an id; null when the id is out of range.
TivSearchRecord** EntryOf(int32_t id) {
  return id >= 1 && id <= TIV_SEARCH_COUNT ? &pDirEntTable[id - 1] : nullptr;
}

}  // namespace

int32_t tivFindFirstDirEnt(const char* pattern, TivFindData* data) {
  ClearTableOnFirstCall();
  if (pattern == nullptr || data == nullptr) {
    zebcomn::StoreError(EINVAL);
    return kNoSearch;
  }
  TivSearchRecord search = {};
  SplitPattern(pattern, search);
  UniqueDirectory stream(opendir(search.directory));
  if (stream == nullptr) return kNoSearch;
  search.stream = stream.get();
  const int32_t id = Claim(search);
  if (id == kNoSearch) return kNoSearch;
  static_cast<void>(stream.release());
  if (tivFindNextDirEnt(id, data) == TRUE) return id;
  tivFindCloseDirEnt(id);
  return kNoSearch;
}

BOOL tivFindNextDirEnt(int32_t id, TivFindData* data) {
  TivSearchRecord** entry = EntryOf(id);
  const TivSearchRecord* search = entry == nullptr ? nullptr : zebcomn::LoadAcquire(entry);
  if (search == nullptr || data == nullptr) {
    zebcomn::StoreError(EINVAL);
    return FALSE;
  }
  // Kept: "." and ".." are found like any other name; callers skip them themselves.
  while (const dirent* found = readdir(search->stream)) {
    if (tivWildCardMatch(search->pattern, found->d_name) != 0) continue;
    tivSetFindDataDirEnt(data, found, search->directory);
    return TRUE;
  }
  return FALSE;
}

BOOL tivFindCloseDirEnt(int32_t id) {
  TivSearchRecord** entry = EntryOf(id);
  TivSearchRecord* search =
      entry == nullptr ? nullptr : zebcomn::Exchange<TivSearchRecord*>(entry, nullptr);
  if (search == nullptr) {
    zebcomn::StoreError(EINVAL);
    return FALSE;
  }
  const bool closed = closedir(search->stream) == 0;
  std::free(search);
  return closed ? TRUE : FALSE;
}

TivFindData* tivSetFindDataDirEnt(TivFindData* data, const struct dirent* entry,
                                  const char* directory) {
  if (data == nullptr || entry == nullptr || directory == nullptr) {
    zebcomn::StoreError(EINVAL);
    return nullptr;
  }
  ClearWithName(data, entry->d_name);
  const std::string_view parent(directory);
  zebcomn::PathBuffer path;
  path.Append(parent);
  if (!parent.empty() && parent.back() != '/') path.Append("/");
  path.Append(entry->d_name);
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return data;
  data->attributes = S_ISDIR(status.st_mode) ? TIV_ATTRIBUTE_DIRECTORY : 0;
  data->last_access_time = static_cast<uint32_t>(status.st_atime);
  data->last_write_time = static_cast<uint32_t>(status.st_mtime);
  data->size = static_cast<uint32_t>(status.st_size);
  return data;
}
