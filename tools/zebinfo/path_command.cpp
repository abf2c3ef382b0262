#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "tools/zebinfo/commands.h"
#include "tools/zebinfo/text.h"
#include "zebcomn/util/filenameflattener.h"
#include "zebcomn/util/filenameresolver.h"

namespace zebinfo {
namespace {

std::string Flatten(const std::string& path, const std::optional<std::string>& base) {
  std::string flat;
  if (base && !FileNameFlattener(*base).GetFlatPath(flat)) {
    throw CommandError(kFailure, Quoted(*base) + " does not flatten: it climbs above the root",
                       "Give another directory with --base.");
  }
  FileNameFlattener flattener = base ? FileNameFlattener(path, *base) : FileNameFlattener(path);
  if (!flattener.GetFlatPath(flat)) {
    throw CommandError(kFailure, Quoted(path) + " does not flatten: it climbs above the root",
                       "Take a \"..\" out, or give another directory with --base.");
  }
  return flat;
}

[[noreturn]] void NoFile(
    const std::string& flat, const std::string& why,
    const char* advice = "Only a path to a regular file, or to a link to one, resolves.") {
  throw CommandError(kFailure, Quoted(flat) + " leads to no file: " + why, advice);
}

// Tells why a flat path leads to no file.
[[noreturn]] void RefuseNoFile(const std::string& flat) {
  if (flat.empty()) NoFile(flat, "it stands for the root directory");
  struct stat status;
  if (stat(flat.c_str(), &status) != 0) {
    if (errno == EACCES) NoFile(flat, std::strerror(EACCES), kRunAsAnotherUser);
    NoFile(flat, std::strerror(errno));
  }
  if (S_ISDIR(status.st_mode)) NoFile(flat, "it is a directory");
  if (!S_ISREG(status.st_mode)) NoFile(flat, "it is not a regular file");
  // The system finds a file where the library does not.
  NoFile(
      flat, "a symbolic link is too long, or has \"..\" behind a directory that is a link",
      "The library takes \"..\" out of a link's text; \"realpath\" shows where the system goes.");
}

}  // namespace

void ShowPath(const std::string& path, const std::optional<std::string>& base, Format format) {
  const std::string flat = Flatten(path, base);
  std::optional<std::string> file;
  std::string resolved;
  // The resolver flattens it once more, and drops the last "/", which must be none of its own.
  if (FileNameResolver(flat + '/').GetAbsolutePath(resolved)) file = resolved;
  if (format != Format::kText) {
    PrintJson({{"path", path}, {"flat", flat}, {"file", file ? Json(*file) : Json()}}, format);
  } else {
    PrintPairs({{"Flat", flat}, {"File", file.value_or("none")}});
  }
  if (!file) RefuseNoFile(flat);
}

}  // namespace zebinfo
