#include "zebcomn/util/user_name.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

#include "zebcomn/portable/types.h"

namespace {

/// Room for the texts of one password entry: the first try, and where asking for more ends.
constexpr size_t kFirstEntrySize = 1024;
constexpr size_t kLargestEntrySize = size_t{1024} * 1024;

using EntryTexts = std::unique_ptr<char[]>;

/// Fills `entry`, whose texts lie in `texts`; false when there is none.
bool ReadPasswordEntry(uid_t user, passwd& entry, EntryTexts& texts) {
  for (size_t size = kFirstEntrySize; size <= kLargestEntrySize; size *= 2) {
    texts.reset(new (std::nothrow) char[size]);
    if (texts == nullptr) return false;
    passwd* found = nullptr;
    const int error = getpwuid_r(user, &entry, texts.get(), size, &found);
    if (error != ERANGE) return error == 0 && found != nullptr;
  }
  return false;
}

}  // namespace

uint32_t tivmcomn_get_user_name(char* buf, unsigned int size) {
  if (buf == nullptr) return ZEBCOMN_STATUS_FAILURE;
  passwd entry = {};
  EntryTexts texts;
  if (!ReadPasswordEntry(getuid(), entry, texts)) return ZEBCOMN_STATUS_FAILURE;
  const size_t needed = std::strlen(entry.pw_name) + 1;
  if (needed > size) return ZEBCOMN_STATUS_FAILURE;
  std::memcpy(buf, entry.pw_name, needed);
  return ZEBCOMN_STATUS_OK;
}
