#include <sys/stat.h>

#include "host/os/last_change.h"

namespace npar_host {

std::optional<std::int64_t> LastChange(const std::filesystem::path& path) {
  struct _stat64 status {};
  if (_wstat64(path.c_str(), &status) != 0) return std::nullopt;
  return status.st_mtime;
}

}  // namespace npar_host
