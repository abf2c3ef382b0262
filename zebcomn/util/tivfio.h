#ifndef ZEBCOMN_UTIL_TIVFIO_H_
#define ZEBCOMN_UTIL_TIVFIO_H_

/// \file
/// The file object, and a probe for directories. C11 and C++17.
///
/// Rules of the calls on a file object:
///  - Every result is 0 for success or 0x80000008 for failure; a null argument is a failure, except
///    where the call says otherwise.
///  - The object belongs to the caller of tiCreateFile() until tiCloseFile().
///  - `nErrno` is set only by the calls of zebcomn/portable/file.h that are made underneath.
///  - An object takes no lock: it is for one thread at a time.
///
/// \par Example
/// \include file_helpers.c

#include "zebcomn/export.h"
#include "zebcomn/portable/types.h"

ZEBCOMN_BEGIN_C

struct TiFile;

/// The calls on a file object, for holders that do not link to their names.
typedef struct TiFileOps {
  uint32_t (*close)(struct TiFile* file);  ///< tiCloseFile()
  uint32_t (*read)(struct TiFile* file, void* buf, unsigned int count,
                   unsigned int* done);  ///< tiReadFile()
  uint32_t (*write)(struct TiFile* file, const void* buf, unsigned int count,
                    unsigned int* done);                          ///< tiWriteFile()
  uint32_t (*get_size)(struct TiFile* file, unsigned int* size);  ///< tiGetFileSize()
} TiFileOps;

/// An open file. Callers may look at it; only the library changes it.
typedef struct TiFile {
  TiFileOps* ops;  ///< The calls; the same for every object.
  HANDLE handle;   ///< A file handle; the object's own.
} TiFile;

/// Opens a file as tivCreateFileAW() does.
///
/// \param[in] path NUL-terminated.
/// \param[in]  access       One of TIV_ACCESS_*.
/// \param[in]  share        Ignored.
/// \param[in]  disposition  One of TIV_CREATE_* and TIV_OPEN_*.
/// \param[in]  flags        0 or one of TIV_FLAG_*.
/// \param[out] out          Receives the object; null on failure.
/// \return 0 or 0x80000008.
ZEBCOMN_EXPORT uint32_t tiCreateFile(const char* path, int access, unsigned int share,
                                     unsigned int disposition, unsigned int flags, TiFile** out);

/// Reads once, up to `count` bytes.
///
/// \param[in] file The object.
/// \param[out] buf Receives the bytes.
/// \param[in] count Capacity of `buf` in bytes.
/// \param[out] done  Receives the number of bytes read; untouched when the read itself fails.
/// \return 0 or 0x80000008. A read of 0 bytes, which is the end of the file, is a failure too.
ZEBCOMN_EXPORT uint32_t tiReadFile(TiFile* file, void* buf, unsigned int count, unsigned int* done);

/// Writes once, up to `count` bytes.
///
/// \param[in] file The object.
/// \param[in] buf The bytes.
/// \param[in] count Their number.
/// \param[out] done  Receives the number of bytes written, which can be fewer. Untouched when the
///                   write fails.
/// \return 0 or 0x80000008.
ZEBCOMN_EXPORT uint32_t tiWriteFile(TiFile* file, const void* buf, unsigned int count,
                                    unsigned int* done);

/// The file's size.
///
/// \param[in] file The object.
/// \param[out] size  Receives the low 32 bits of the file's size; 0xFFFFFFFF on failure, and for a
///                   size of which that is the low part, which counts as failure.
/// \return 0 or 0x80000008.
ZEBCOMN_EXPORT uint32_t tiGetFileSize(TiFile* file, unsigned int* size);

/// Closes the file and frees the object, also when the closing fails.
///
/// \param[in] file  Null is a success that does nothing.
/// \return 0 or 0x80000008.
ZEBCOMN_EXPORT uint32_t tiCloseFile(TiFile* file);

/// Whether a path names a directory, or a symbolic link to one.
///
/// \param[in] lpszFolder  NUL-terminated, only read; cut at 259 bytes. One "\" at its end is left
///                        out. Not null: a build with assertions ends the process then, one without
///                        gives 0.
/// \return 1 or 0. `nErrno` is left alone; any number of threads may call.
ZEBCOMN_EXPORT BOOL tiFolderExists(char* lpszFolder);

ZEBCOMN_END_C

#endif  // ZEBCOMN_UTIL_TIVFIO_H_
