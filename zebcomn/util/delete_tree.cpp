#include "zebcomn/util/delete_tree.h"

#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "zebcomn/portable/bounded_text_internal.h"
#include "zebcomn/util/find_files.h"

namespace {

using zebcomn::PathBuffer;

/// Owns one directory search.
class Search {
 public:
  Search(const char* pattern, TivFindData* data) : id_(tivmcomn_findfirstA(pattern, data)) {}
  ~Search() {
    if (IsOpen()) tivmcomn_findclose(id_);
  }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  bool IsOpen() const { return id_ != 0; }
  bool Next(TivFindData* data) { return tivmcomn_findnextA(id_, data) == TRUE; }

 private:
  int32_t id_;
};

/// The path without the "/" after its last name; a path of "/" alone stays.
std::string_view WithoutLastSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

enum class Kind { kLeft, kLink, kOther };

/// What is at a path, seen without the "/" at its end, and the path in that form. What is too long
/// or cannot be looked at is left.
Kind KindOf(std::string_view dir, PathBuffer& bare) {
  if (!bare.Append(dir)) return Kind::kLeft;
  bare.Truncate(WithoutLastSlashes(dir).size());
  struct stat status = {};
  if (lstat(bare.c_str(), &status) != 0) return Kind::kLeft;
  return S_ISLNK(status.st_mode) ? Kind::kLink : Kind::kOther;
}

/// Deletes one entry, whose path is in `path`.
void DeleteEntry(PathBuffer& path, const TivFindData& entry) {
  if ((entry.attributes & TIV_ATTRIBUTE_DIRECTORY) == 0) {
    unlink(path.c_str());
    return;
  }
  const std::string_view name(entry.name);
  if (name != "." && name != "..") tivmcomn_deltree(path.data());
}

/// Deletes what is in a directory.
void DeleteContent(std::string_view dir) {
  PathBuffer path;
  if (!path.Append(dir) || !path.Append("/")) return;
  const size_t name_start = path.length();
  if (!path.Append("*")) return;
  TivFindData entry = {};
  Search search(path.c_str(), &entry);
  for (bool found = search.IsOpen(); found; found = search.Next(&entry)) {
    path.Truncate(name_start);
    if (path.Append(entry.name)) DeleteEntry(path, entry);
  }
}

}  // namespace

void tivmcomn_deltree(char* dir) {
  if (dir == nullptr || *dir == '\0') return;
  PathBuffer bare;
  switch (KindOf(dir, bare)) {
    case Kind::kLeft:
      return;
    case Kind::kLink:
      unlink(bare.c_str());
      return;
    case Kind::kOther:
      DeleteContent(dir);
      rmdir(dir);
      return;
  }
}

void tivmcomn_delsubtree(char* dir) {
  if (dir == nullptr || *dir == '\0') return;
  PathBuffer bare;
  if (KindOf(dir, bare) == Kind::kOther) DeleteContent(dir);
}
