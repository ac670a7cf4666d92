#include "host/cli/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace npar_host {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw OutputError("cannot write " + (path == "-" ? "standard output" : path) + ": " +
                    std::strerror(error));
}

// Answers 0 or an errno.
int WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

// Writes, makes the data reach the disk, and closes. Answers 0 or an errno.
int WriteAndClose(int descriptor, std::string_view text) {
  int error = WriteAll(descriptor, text);
  if (error == 0 && fsync(descriptor) != 0 && errno != EINVAL && errno != EROFS) error = errno;
  if (close(descriptor) != 0 && error == 0) error = errno;
  return error;
}

void WriteInPlace(const std::string& path, std::string_view text) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) Fail(path, errno);
  if (const int error = WriteAndClose(descriptor, text)) Fail(path, error);
}

// The permissions that a newly made file gets, or those of the file that is replaced.
mode_t WantedMode(const std::filesystem::path& target) {
  struct stat existing {};
  if (stat(target.c_str(), &existing) == 0) return existing.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void WriteAndRename(const std::filesystem::path& target, std::string_view text) {
  std::string temporary = (target.parent_path() / ".npar-XXXXXX").string();
  const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) Fail(target, errno);
  int error = fchmod(descriptor, WantedMode(target)) == 0 ? 0 : errno;
  const int writeError = WriteAndClose(descriptor, text);
  if (error == 0) error = writeError;
  if (error == 0 && rename(temporary.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) {
    unlink(temporary.c_str());
    Fail(target, error);
  }
}

}  // namespace

void Publish(const std::string& path, std::string_view text) {
  if (path == "-") {
    if (const int error = WriteAll(STDOUT_FILENO, text)) Fail(path, error);
    return;
  }
  std::error_code failure;
  const auto kind = std::filesystem::status(path, failure).type();
  if (kind == std::filesystem::file_type::directory) Fail(path, EISDIR);
  if (kind != std::filesystem::file_type::regular &&
      kind != std::filesystem::file_type::not_found) {
    WriteInPlace(path, text);
    return;
  }
  // A link keeps pointing to where it points: the file behind it is replaced.
  const auto target = std::filesystem::weakly_canonical(path, failure);
  WriteAndRename(failure ? std::filesystem::path(path) : target, text);
}

}  // namespace npar_host
