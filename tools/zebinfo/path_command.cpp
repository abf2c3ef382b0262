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

// Why a flat path leads to no file.
std::string WhyNoFile(const std::string& flat) {
  if (flat.empty()) return "it stands for the root directory";
  struct stat status;
  if (stat(flat.c_str(), &status) != 0) return std::strerror(errno);
  if (S_ISDIR(status.st_mode)) return "it is a directory";
  if (!S_ISREG(status.st_mode)) return "it is not a regular file";
  return "its symbolic links are too long or too many";
}

}  // namespace

void ShowPath(const std::string& path, const std::optional<std::string>& base, Format format) {
  const std::string flat = Flatten(path, base);
  std::optional<std::string> file;
  std::string resolved;
  if (FileNameResolver(flat).GetAbsolutePath(resolved)) file = resolved;
  if (format == Format::kJson) {
    PrintJson({{"path", path}, {"flat", flat}, {"file", file ? Json(*file) : Json()}});
  } else {
    PrintPairs({{"Flat", flat}, {"File", file.value_or("none")}});
  }
  if (!file) {
    throw CommandError(kFailure, Quoted(flat) + " leads to no file: " + WhyNoFile(flat),
                       "Only a path to a regular file, or to a link to one, resolves.");
  }
}

}  // namespace zebinfo
