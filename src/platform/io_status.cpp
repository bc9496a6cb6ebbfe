#include "platform/io_status.h"

#include <cerrno>

namespace vardento {

IoStatus StatusOfErrno(int error) {
  switch (error) {
    case 0:
      return kIoOk;
    case ENOENT:
      return kIoFileNotFound;
    case ENOTDIR:
      return kIoDirectoryNotFound;
    case ENOSPC:
    case EDQUOT:
      return kIoDiskFull;
    case EPERM:
    case ESRCH:  // 3 is told as a missing directory
      return EACCES;
    default:
      return error;
  }
}

}  // namespace vardento
