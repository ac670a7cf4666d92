#include "host/cli/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <set>
#include <system_error>

#include "host/render/text_layout.h"

namespace npar_host {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw OutputError("cannot write " + (path == "-" ? "standard output" : path) + ": " +
                    std::strerror(error));
}

// What ends a text that is being written.
struct WriteFailure {
  int error;  // errno
};

void WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno != EINTR) throw WriteFailure{errno};
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Answers 0 or an errno.
int WriteAll(int descriptor, const TextWriter& writer) {
  try {
    writer([descriptor](std::string_view piece) { WriteAll(descriptor, piece); });
  } catch (const WriteFailure& failure) {
    return failure.error;
  }
  return 0;
}

// Writes, makes the data reach the disk, and closes. Answers 0 or an errno.
int WriteAndClose(int descriptor, const TextWriter& writer) {
  int error = WriteAll(descriptor, writer);
  if (error == 0 && fsync(descriptor) != 0 && errno != EINVAL && errno != EROFS) error = errno;
  if (close(descriptor) != 0 && error == 0) error = errno;
  return error;
}

void WriteInPlace(const std::string& path, const TextWriter& writer) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) Fail(path, errno);
  if (const int error = WriteAndClose(descriptor, writer)) Fail(path, error);
}

// The permissions that a newly made file gets, or those of the file that is replaced.
mode_t WantedMode(const std::filesystem::path& target) {
  struct stat existing {};
  if (stat(target.c_str(), &existing) == 0) return existing.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// The temporary file that a signal's handler removes.
char temporaryPath[PATH_MAX];

extern "C" void RemoveAndEnd(int signal) {
  unlink(temporaryPath);
  raise(signal);  // the handler is gone by now
}

/// A new file in a folder, which goes with the object, or with the process where a signal ends it,
/// unless it was renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& folder) {
    const std::string pattern = (folder / ".npar-XXXXXX").string();
    if (pattern.size() >= sizeof temporaryPath) {
      errno = ENAMETOOLONG;
      return;
    }
    std::memcpy(temporaryPath, pattern.c_str(), pattern.size() + 1);
    // A signal between the two finds the pattern, a name of no file.
    Handle(RemoveAndEnd);
    descriptor = mkostemp(temporaryPath, O_CLOEXEC);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (descriptor >= 0 && !isRenamed) unlink(temporaryPath);
    Handle(SIG_DFL);
  }

  /// Below 0 where there is none; errno says why.
  [[nodiscard]] int Descriptor() const { return descriptor; }
  /// Answers 0 or an errno.
  int RenameTo(const std::filesystem::path& target) {
    isRenamed = rename(temporaryPath, target.c_str()) == 0;
    return isRenamed ? 0 : errno;
  }

 private:
  // Signals that would end the process; those that somebody else handles or ignores stay so.
  void Handle(void (*handler)(int)) const {
    const auto other = handler == SIG_DFL ? RemoveAndEnd : SIG_DFL;
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU, SIGXFSZ}) {
      struct sigaction action {};
      if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != other) continue;
      action = {};
      action.sa_handler = handler;
      action.sa_flags = handler == SIG_DFL ? 0 : static_cast<int>(SA_RESETHAND);
      sigaction(signal, &action, nullptr);
    }
  }

  int descriptor = -1;
  bool isRenamed = false;
};

void WriteAndRename(const std::filesystem::path& target, const TextWriter& writer) {
  TemporaryFile temporary(target.parent_path());
  if (temporary.Descriptor() < 0) Fail(target, errno);
  int error = fchmod(temporary.Descriptor(), WantedMode(target)) == 0 ? 0 : errno;
  const int writeError = WriteAndClose(temporary.Descriptor(), writer);
  if (error == 0) error = writeError;
  if (error == 0) error = temporary.RenameTo(target);
  if (error != 0) Fail(target, error);
}

// The file that a path names, links followed, whether it exists or not; empty for "-" and what is
// no plain file.
std::filesystem::path PlainFile(const std::string& path) {
  std::error_code failure;
  const auto kind = std::filesystem::status(path, failure).type();
  const bool isPlain =
      kind == std::filesystem::file_type::regular || kind == std::filesystem::file_type::not_found;
  if (path == "-" || path.empty() || !isPlain) return {};
  const auto target = std::filesystem::weakly_canonical(std::filesystem::absolute(path), failure);
  return failure ? std::filesystem::path(path) : target;
}

}  // namespace

void Publish(const std::string& path, std::string_view text) {
  Publish(path, TextWriter([text](const TextSink& sink) { sink(text); }));
}

void Publish(const std::string& path, const TextWriter& writer) {
  if (path == "-") {
    if (const int error = WriteAll(STDOUT_FILENO, writer)) Fail(path, error);
    return;
  }
  std::error_code failure;
  const auto kind = std::filesystem::status(path, failure).type();
  if (kind == std::filesystem::file_type::directory) Fail(path, EISDIR);
  if (kind != std::filesystem::file_type::regular &&
      kind != std::filesystem::file_type::not_found) {
    WriteInPlace(path, writer);
    return;
  }
  // A link keeps pointing to where it points: the file behind it is replaced.
  const auto target = std::filesystem::weakly_canonical(path, failure);
  WriteAndRename(failure ? std::filesystem::path(path) : target, writer);
}

void MakeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw OutputError("cannot make the folder " + folder + ": " + error.message());
}

void Tell(std::string_view text) {
  constexpr std::size_t kLongest = 4000;  // bytes
  const std::string shown = Printable(text.substr(0, kLongest));
  std::fprintf(stderr, "%s%s\n", shown.c_str(), text.size() > kLongest ? "..." : "");
}

void CheckOutputs(const std::vector<std::string>& written, const std::vector<std::string>& read) {
  std::set<std::filesystem::path> taken;
  for (const std::string& path : read) taken.insert(PlainFile(path));
  for (const std::string& path : written) {
    const std::filesystem::path file = PlainFile(path);
    if (file.empty() || taken.insert(file).second) continue;
    const bool isRead = std::ranges::any_of(
        read, [&](const std::string& input) { return PlainFile(input) == file; });
    throw OutputError("cannot write " + path + ": " +
                      (isRead ? "it is read in the same call" : "it is written twice") +
                      "; give each file a name of its own");
  }
}

}  // namespace npar_host
