#ifndef ZEBCOMN_UTIL_FILENAMEFLATTENER_H_
#define ZEBCOMN_UTIL_FILENAMEFLATTENER_H_

/// \file
/// Makes a path absolute and takes its "." and ".." components out, by its text alone: nothing is
/// looked up in the file system, and symbolic links are not considered (see
/// zebcomn/util/filenameresolver.h).
///
/// Paths are bytes with "/" as separator. Repeated separators are not collapsed; between them
/// stands a component with an empty name, which a ".." takes away as it does any other. One "/" at
/// the end is dropped. A relative path is taken against the base directory. A ".." above the root
/// makes flattening fail.
///
/// Beware:
/// - "/" and the empty path are taken as relative, and flatten to exactly the base directory;
/// - a path that ends at the root, such as "/a/..", flattens to the empty text, not to "/";
/// - a working directory of "/" gives results that begin with "//".
///
/// The time taken grows in proportion to the length of the path. No call touches `nErrno`. Separate
/// objects may be used from separate threads; one object, by one thread at a time. Nothing throws
/// but the allocation of the texts themselves.
///
/// \par Example
/// \include paths.cpp

#include <string>

#include "zebcomn/export.h"

/// One path and its flat form.
class FileNameFlattener {
 public:
  /// Flattens `path` at once. The base directory is the working directory of the process; when that
  /// cannot be read, or is longer than 1023 bytes, it is empty, and a relative path is then taken
  /// against the root.
  /// \param path the path.
  ZEBCOMN_EXPORT explicit FileNameFlattener(const std::string& path);

  /// Flattens `path` at once. The base directory is `baseDir`, which is itself flattened against
  /// the working directory first (so a `baseDir` of "/" stands for the working directory; "/."
  /// stands for the root). When that fails, this object is not flat.
  /// \param path the path.
  /// \param baseDir the base directory.
  ZEBCOMN_EXPORT FileNameFlattener(const std::string& path, const std::string& baseDir);

  /// Flattens the path again and tells whether that succeeded. The outcome does not change between
  /// calls, except that an object whose `baseDir` could not be flattened has an empty base
  /// directory, so that this call takes a relative path against the root.
  /// \return true or false.
  ZEBCOMN_EXPORT bool Flatten();

  /// Tells whether the path was flattened. When it was, `out` becomes the flat path; otherwise
  /// `out` is left alone.
  /// \param[out] out the flat path.
  /// \return true or false.
  ZEBCOMN_EXPORT bool GetFlatPath(std::string& out);

 private:
  friend struct FileNameFlattenerLayout;

  bool m_bFlat;
  std::string m_strPath;
  std::string m_strFlatPath;
  std::string m_strBaseDir;
};

#endif  // ZEBCOMN_UTIL_FILENAMEFLATTENER_H_
