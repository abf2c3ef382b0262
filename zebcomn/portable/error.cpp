#include "zebcomn/portable/error.h"

#include <cerrno>

int32_t nErrno = 0;

DWORD tivGetLastError(void) {
  // Kept: callers compare with these codes, which are not those that Windows gives.
  switch (errno) {
    case 0:
      return 0;
    case ENOENT:
    case EIO:
    case ENXIO:
    case ENOLCK:
    case ENODATA:
      return 38;
    case ESRCH:
    case EINTR:
    case EBADF:
    case ENODEV:
      return 126;
    case E2BIG:
    case ENOMEM:
    case ENFILE:
    case EMFILE:
    case EFBIG:
    case ENOSPC:
    case EMLINK:
      return 259;
    case EAGAIN:
    case EBUSY:
    case ETXTBSY:
    case EDEADLK:
      return 997;
    case EACCES:
      return 5;
    case EINVAL:
    case ENOTTY:
      return 1010;
    case EROFS:
      return 19;
    default:
      return ZEBCOMN_STATUS_FAILURE;
  }
}
