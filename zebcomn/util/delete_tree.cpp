#include "zebcomn/util/delete_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "zebcomn/portable/bounded_text_internal.h"
#include "zebcomn/portable/directory_search.h"
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
  /// The descriptor of the directory that is searched, whatever its path names by now.
  int Directory() const { return dirfd(pDirEntTable[id_ - 1]->stream); }

 private:
  int32_t id_;
};

/// The path without the "/" after its last name; a path of "/" alone stays.
std::string_view WithoutLastSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

bool IsStill(int fd, const struct stat& directory) {
  struct stat now = {};
  return fstat(fd, &now) == 0 && now.st_dev == directory.st_dev && now.st_ino == directory.st_ino;
}

void DeleteDirectory(int parent, const char* name, std::string_view path);

/// Deletes one entry of the directory `parent`; `path` is the entry's.
void DeleteEntry(int parent, const TivFindData& entry, const PathBuffer& path) {
  if ((entry.attributes & TIV_ATTRIBUTE_DIRECTORY) == 0) {
    unlinkat(parent, entry.name, 0);
    return;
  }
  const std::string_view name(entry.name);
  if (name != "." && name != "..") DeleteDirectory(parent, entry.name, path.c_str());
}

/// Deletes what is in the directory at `dir`, provided that it is the one that has been looked at.
/// What is in it is then removed through its descriptor: a link that somebody puts in the way
/// meanwhile leads nowhere.
void DeleteContent(std::string_view dir, const struct stat& directory) {
  PathBuffer path;
  if (!path.Append(dir) || !path.Append("/")) return;
  const size_t name_start = path.length();
  if (!path.Append("*")) return;
  TivFindData entry = {};
  Search search(path.c_str(), &entry);
  if (!search.IsOpen() || !IsStill(search.Directory(), directory)) return;
  do {
    path.Truncate(name_start);
    if (path.Append(entry.name)) DeleteEntry(search.Directory(), entry, path);
  } while (search.Next(&entry));
}

/// Deletes the directory `name` of the directory `parent` with all its content, or the symbolic
/// link of that name; `path` is where it is searched. Anything else is left.
void DeleteDirectory(int parent, const char* name, std::string_view path) {
  struct stat status = {};
  if (fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
  if (S_ISLNK(status.st_mode)) unlinkat(parent, name, 0);
  if (!S_ISDIR(status.st_mode)) return;
  DeleteContent(path, status);
  unlinkat(parent, name, AT_REMOVEDIR);
}

}  // namespace

void tivmcomn_deltree(char* dir) {
  if (dir == nullptr || *dir == '\0') return;
  PathBuffer bare;
  if (!bare.Append(dir)) return;
  bare.Truncate(WithoutLastSlashes(dir).size());
  DeleteDirectory(AT_FDCWD, bare.c_str(), dir);
}

void tivmcomn_delsubtree(char* dir) {
  if (dir == nullptr || *dir == '\0') return;
  PathBuffer bare;
  if (!bare.Append(dir)) return;
  bare.Truncate(WithoutLastSlashes(dir).size());
  struct stat status = {};
  if (lstat(bare.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) DeleteContent(dir, status);
}
