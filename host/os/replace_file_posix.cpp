#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "host/os/replace_file.h"

namespace npar_host {
namespace {

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
int WriteAll(int descriptor, const PieceWriter& writer) {
  try {
    writer([descriptor](std::string_view piece) { WriteAll(descriptor, piece); });
  } catch (const WriteFailure& failure) {
    return failure.error;
  }
  return 0;
}

// Writes, makes the data reach the disk, and closes. Answers 0 or an errno.
int WriteAndClose(int descriptor, const PieceWriter& writer) {
  int error = WriteAll(descriptor, writer);
  if (error == 0 && fsync(descriptor) != 0 && errno != EINVAL && errno != EROFS) error = errno;
  if (close(descriptor) != 0 && error == 0) error = errno;
  return error;
}

// The permissions that a newly made file gets, or those of the file that is replaced.
mode_t WantedMode(const std::filesystem::path& target) {
  struct stat existing {};
  if (stat(target.c_str(), &existing) == 0) return existing.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

char temporaryPath[PATH_MAX];
// Held while the temporary file is made, and for good by who ends the process: no file comes behind
// its removal.
std::atomic_flag isHeld;

// On a thread that blocks signals, whose handler would wait for what the thread itself holds. All
// of it may be called by a handler.
void Hold() noexcept {
  while (isHeld.test_and_set()) poll(nullptr, 0, 1);
}

// Blocks signals on this thread; answers which were blocked.
sigset_t BlockSignals() noexcept {
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &former);
  return former;
}

extern "C" void RemoveAndEnd(int signal) {
  AbandonTemporaryFile();
  std::signal(signal, SIG_DFL);
  raise(signal);  // it comes as the handler returns
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
    const sigset_t former = BlockSignals();
    Hold();
    std::memcpy(temporaryPath, pattern.c_str(), pattern.size() + 1);
    Handle(RemoveAndEnd);
    descriptor = mkostemp(temporaryPath, O_CLOEXEC);
    const int error = errno;
    isHeld.clear();
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    errno = error;
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
  // Signals that others send to end the process, or that its timers and limits do; those that
  // somebody else handles or ignores stay so.
  void Handle(void (*handler)(int)) const {
    const auto other = handler == SIG_DFL ? RemoveAndEnd : SIG_DFL;
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGALRM, SIGVTALRM,
                             SIGPROF, SIGXCPU, SIGXFSZ}) {
      struct sigaction action {};
      if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != other) continue;
      action = {};
      action.sa_handler = handler;
      sigaction(signal, &action, nullptr);
    }
  }

  int descriptor = -1;
  bool isRenamed = false;
};

}  // namespace

void AbandonTemporaryFile() noexcept {
  static_cast<void>(BlockSignals());
  Hold();
  unlink(temporaryPath);
}

int WriteDescriptor(int descriptor, const PieceWriter& writer) {
  return WriteAll(descriptor, writer);
}

int WriteInPlace(const std::filesystem::path& path, const PieceWriter& writer) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  return descriptor < 0 ? errno : WriteAndClose(descriptor, writer);
}

int ReplaceFile(const std::filesystem::path& target, const PieceWriter& writer) {
  TemporaryFile temporary(target.parent_path());
  if (temporary.Descriptor() < 0) return errno;
  int error = fchmod(temporary.Descriptor(), WantedMode(target)) == 0 ? 0 : errno;
  const int writeError = WriteAndClose(temporary.Descriptor(), writer);
  if (error == 0) error = writeError;
  return error == 0 ? temporary.RenameTo(target) : error;
}

}  // namespace npar_host
