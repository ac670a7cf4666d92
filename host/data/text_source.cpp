#include "host/data/text_source.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr std::size_t kReleaseStep = std::size_t{1} << 24;
constexpr std::size_t kFirstBuffer = std::size_t{1} << 20;

std::size_t RoundUpToPage(std::size_t bytes) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return (bytes + page - 1) / page * page;
}

/// Closes a file that this program opened.
class FileCloser {
 public:
  explicit FileCloser(int file) : file(file) {}
  FileCloser(const FileCloser&) = delete;
  FileCloser& operator=(const FileCloser&) = delete;
  ~FileCloser() {
    if (file > STDIN_FILENO) close(file);
  }

 private:
  int file;
};

}  // namespace

TextSource::TextSource(const std::string& path) : name(path == "-" ? "standard input" : path) {
  const int file = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) Fail("cannot be opened");
  const FileCloser closer(file);
  struct stat status {};
  if (fstat(file, &status) != 0) Fail("cannot be read");
  if (S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    Fail("cannot be read");
  }
  // Some system files call themselves regular and empty and have a text all the same.
  if (S_ISREG(status.st_mode) && status.st_size > 0) {
    const off_t position = lseek(file, 0, SEEK_CUR);
    start = std::min(static_cast<std::size_t>(std::max<off_t>(position, 0)),
                     static_cast<std::size_t>(status.st_size));
    Map(file, static_cast<std::size_t>(status.st_size));
  } else {
    ReadAll(file);
  }
}

TextSource::~TextSource() {
  if (base != nullptr) munmap(base, reserved);
}

void TextSource::Release(const char* position) {
  if (!isMapped) return;
  const std::size_t done = static_cast<std::size_t>(position - base) / kReleaseStep * kReleaseStep;
  if (done <= released) return;
  madvise(base + released, done - released, MADV_DONTNEED);
  released = done;
}

void TextSource::Map(int file, std::size_t fileSize) {
  // The file lies over zero pages, one of which stays uncovered behind it.
  Reserve(RoundUpToPage(fileSize) + RoundUpToPage(kPadding));
  if (mmap(base, fileSize, PROT_READ, MAP_PRIVATE | MAP_FIXED, file, 0) == MAP_FAILED) {
    Fail("cannot be read");
  }
  madvise(base, fileSize, MADV_SEQUENTIAL);
  isMapped = true;
  length = fileSize - start;
}

void TextSource::ReadAll(int file) {
  Reserve(kFirstBuffer);
  for (;;) {
    if (length + kPadding >= reserved) {
      void* larger = mremap(base, reserved, 2 * reserved, MREMAP_MAYMOVE);
      if (larger == MAP_FAILED) Fail("does not fit into memory");
      base = static_cast<char*>(larger);
      reserved *= 2;
    }
    const ssize_t got = read(file, base + length, reserved - length - kPadding);
    if (got == 0) return;
    if (got > 0) {
      length += static_cast<std::size_t>(got);
    } else if (errno != EINTR) {
      Fail("cannot be read");
    }
  }
}

void TextSource::Reserve(std::size_t bytes) {
  void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) Fail("does not fit into memory");
  base = static_cast<char*>(memory);
  reserved = bytes;
}

void TextSource::Fail(const char* what) const {
  const int reason = errno;
  throw InputError(name + ": " + what + " (" + std::strerror(reason) +
                   "); give the path of a readable file, or - for standard input");
}

}  // namespace npar_host
