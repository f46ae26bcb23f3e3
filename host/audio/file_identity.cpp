#include "host/audio/file_identity.h"

#include <cerrno>

#include <sys/stat.h>

#include "host/audio/audio_error.h"

namespace orvelhost {

FileIdentity IdentityOf(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    throw AudioError("read", path, errno);
  }
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
          status.st_mtim.tv_nsec};
}

}  // namespace orvelhost
