#ifndef ZEBCOMN_PORTABLE_FILE_RECORD_INTERNAL_H_
#define ZEBCOMN_PORTABLE_FILE_RECORD_INTERNAL_H_

#include <cstddef>
#include <cstdint>

namespace zebcomn {

/// What `pObject` of a file handle points at; taken with malloc().
struct FileRecord {
  int32_t descriptor;
  int32_t delete_on_close;  ///< 1 = remove() `path` when the handle is closed.
  int32_t end_of_file;      ///< 1 = a read has returned no bytes.
  char path[261];           ///< The name that was opened, cut at 260 characters.
};

static_assert(offsetof(FileRecord, descriptor) == 0 && offsetof(FileRecord, delete_on_close) == 4 &&
                  offsetof(FileRecord, end_of_file) == 8 && offsetof(FileRecord, path) == 12 &&
                  sizeof(FileRecord) == 276,
              "The record is laid out alike on every target.");

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_FILE_RECORD_INTERNAL_H_
