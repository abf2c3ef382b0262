#ifndef ZEBCOMN_UTIL_FILENAMERESOLVER_H_
#define ZEBCOMN_UTIL_FILENAMERESOLVER_H_

/// \file
/// Finds the absolute path of the regular file that a path finally names, through any chain of
/// symbolic links. The class is for C++ callers; the three flat routines give the same to others
/// through an opaque resolver.
///
/// The path is first flattened by its text (zebcomn/util/filenameflattener.h, whose oddities hold
/// here too). A relative link target is taken against the directory of the link, and is flattened
/// by its text as well. Only the last component's links are followed here: links among the
/// directories on the way are left in the result. Resolution fails for a path that does not
/// flatten, for a missing entry, for anything that is not a regular file in the end (a directory, a
/// device), for a link target of 1024 bytes or more and after 50 links, so that a cycle of links
/// ends.
///
/// No call touches `nErrno`. Separate objects may be used from separate threads; one object, by one
/// thread at a time.
///
/// \par Example
/// \include paths.cpp

#include "zebcomn/export.h"

#ifdef __cplusplus
#include <string>

/// One path and the file that it finally names.
class FileNameResolver {
 public:
  /// Resolves `path` at once. Does not throw for a path that is bad in any way.
  /// \param path the path.
  ZEBCOMN_EXPORT explicit FileNameResolver(const std::string& path);

  /// Tells whether the path led to a regular file. When it did, `out` becomes the absolute path of
  /// that file; otherwise `out` is left alone.
  /// \param[out] out the absolute path.
  /// \return true or false.
  ZEBCOMN_EXPORT bool GetAbsolutePath(std::string& out);

 private:
  friend struct FileNameResolverLayout;

  bool m_bResolved;
  std::string m_strPath;
  std::string m_strAbsolutePath;
};
#endif

ZEBCOMN_BEGIN_C

/// Makes a resolver for `path`, whether or not that path resolves, and stores it in `*resolver`.
/// The caller gives the resolver back with `tivmcomn_filenameresolver_destroy`.
/// \param[in] path NUL-terminated.
/// \param[out] resolver Receives the resolver.
/// \return 0, or 0x80000008 when an argument is null or memory is short (`*resolver` is then left
///   alone).
ZEBCOMN_EXPORT unsigned tivmcomn_filenameresolver_create(const char* path, void** resolver);

/// Gives a resolver back; null is allowed.
/// \param[in] resolver The resolver.
/// \return 0.
ZEBCOMN_EXPORT unsigned tivmcomn_filenameresolver_destroy(void* resolver);

/// Copies the resolved path, with its NUL, to `buffer`, whose capacity in bytes is `*size`.
///
/// Returns 0 and stores the length plus one in `*size` on success. Returns 0x80000008 otherwise:
/// - an argument is null, the path did not resolve, or memory is short: nothing is written;
/// - the capacity is too small: the capacity needed (length plus one) goes to `*size`, and `buffer`
///   is left alone.
/// \param[in] resolver The resolver.
/// \param[out] buffer Receives the path.
/// \param[in,out] size Capacity of `buffer` in bytes; then as told above.
/// \return 0 or 0x80000008, see above.
ZEBCOMN_EXPORT unsigned tivmcomn_filenameresolver_get_absolute_filename(void* resolver,
                                                                        char* buffer,
                                                                        unsigned* size);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_FILENAMERESOLVER_H_
