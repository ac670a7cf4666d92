#include <sys/stat.h>

#include "host/os/last_change.h"

namespace npar_host {

std::optional<std::int64_t> LastChange(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return status.st_mtime;
}

}  // namespace npar_host
