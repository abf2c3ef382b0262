#ifndef ZEBCOMN_TESTS_PORTABLE_TABLES_IN_USE_H_
#define ZEBCOMN_TESTS_PORTABLE_TABLES_IN_USE_H_

#include <algorithm>
#include <iterator>

#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/dynamic_library.h"

namespace zebcomn_test {

/// How many entries of the table of loaded libraries are taken.
inline int LibrariesInTable() {
  return static_cast<int>(std::count_if(std::begin(pDynamicLibraryList),
                                        std::end(pDynamicLibraryList),
                                        [](const auto* entry) { return entry != nullptr; }));
}

/// How many entries of the table of directory searches are taken.
inline int OpenSearches() {
  return static_cast<int>(std::count_if(std::begin(pDirEntTable), std::end(pDirEntTable),
                                        [](const auto* entry) { return entry != nullptr; }));
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_PORTABLE_TABLES_IN_USE_H_
