#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "host/os/whole_file.h"

namespace npar_host {
namespace {

constexpr std::size_t kReleaseStep = std::size_t{1} << 24;
constexpr std::size_t kFirstBuffer = std::size_t{1} << 20;

std::size_t RoundUpToPage(std::size_t bytes) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return (bytes + page - 1) / page * page;
}

[[noreturn]] void Fail(const char* what, int error = errno) {
  throw FileProblem{what, std::strerror(error)};
}

[[noreturn]] void FailForMemory() {
  throw FileProblem{"does not fit into memory", std::strerror(errno),
                    "take a machine with more, or keep fewer records and fields of it"};
}

/// Where a file is mapped. A page that another program has cut from its file answers a read with
/// SIGBUS; the handler, which may touch little, finds here whether the page is ours.
struct Mapping {
  std::atomic<char*> begin = nullptr;  // null: free
  std::atomic<std::size_t> size = 0;
  std::atomic<bool> hasLostPages = false;
};
// Files beyond these are read.
Mapping mappings[16];

// Lays zero pages over what is left of the file, so that the reader goes on and then asks whether
// the file is whole.
void OnLostPage(int signal, siginfo_t* info, void*) {
  const int saved = errno;
  const auto* const address = static_cast<const char*>(info->si_addr);
  for (Mapping& mapping : mappings) {
    char* const begin = mapping.begin;
    if (begin == nullptr || address < begin || address >= begin + mapping.size) continue;
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t kept = static_cast<std::size_t>(address - begin) / page * page;
    const void* const laid = mmap(begin + kept, mapping.size - kept, PROT_READ,
                                  MAP_PRIVATE | MAP_FIXED | MAP_ANONYMOUS, -1, 0);
    errno = saved;
    mapping.hasLostPages = true;
    if (laid != MAP_FAILED) return;
  }
  std::signal(signal, SIG_DFL);  // the read is repeated, and ends the process
}

}  // namespace

struct WholeFile::State {
  explicit State(const std::string& path);
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State();

  bool Map(std::size_t fileSize);
  void ReadAll();
  void Reserve(std::size_t bytes);

  struct File {
    int descriptor;
    ~File() {
      if (descriptor > STDIN_FILENO) close(descriptor);
    }
  };
  File file;
  char* base = nullptr;
  std::size_t reserved = 0;  // bytes of address space
  std::size_t start = 0;     // of the text, where standard input has been read in part
  std::size_t length = 0;
  std::size_t released = 0;
  Mapping* mapping = nullptr;  // null: the text was read
};

WholeFile::State::State(const std::string& path)
    : file{path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)} {
  if (file.descriptor < 0) Fail("cannot be opened");
  struct stat status {};
  if (fstat(file.descriptor, &status) != 0) Fail("cannot be read");
  if (S_ISDIR(status.st_mode)) Fail("cannot be read", EISDIR);
  // Some system files call themselves regular and empty and have a text all the same.
  const bool isMapped = S_ISREG(status.st_mode) && status.st_size > 0 &&
                        Map(static_cast<std::size_t>(status.st_size));
  if (!isMapped) ReadAll();
}

WholeFile::State::~State() {
  if (mapping != nullptr) {
    mapping->size = 0;
    mapping->begin = nullptr;
  }
  if (base != nullptr) munmap(base, reserved);
}

bool WholeFile::State::Map(std::size_t fileSize) {
  static const bool isHandled = [] {
    struct sigaction action {};
    action.sa_sigaction = OnLostPage;
    action.sa_flags = SA_SIGINFO;
    return sigaction(SIGBUS, &action, nullptr) == 0;
  }();
  if (!isHandled) return false;
  // The file lies over zero pages, one of which stays uncovered behind it.
  Reserve(RoundUpToPage(fileSize) + RoundUpToPage(kPadding));
  for (Mapping& each : mappings) {
    char* none = nullptr;
    if (!each.begin.compare_exchange_strong(none, base)) continue;
    mapping = &each;
    mapping->size = fileSize;
    mapping->hasLostPages = false;
    break;
  }
  if (mapping == nullptr) {
    munmap(base, reserved);
    base = nullptr;
    return false;
  }
  if (mmap(base, fileSize, PROT_READ, MAP_PRIVATE | MAP_FIXED, file.descriptor, 0) == MAP_FAILED) {
    mapping->size = 0;
    mapping->begin = nullptr;
    Fail("cannot be read");
  }
  madvise(base, fileSize, MADV_SEQUENTIAL);
  const off_t position = lseek(file.descriptor, 0, SEEK_CUR);
  start = std::min(static_cast<std::size_t>(std::max<off_t>(position, 0)), fileSize);
  length = fileSize - start;
  return true;
}

void WholeFile::State::ReadAll() {
  Reserve(kFirstBuffer);
  for (;;) {
    if (length + kPadding >= reserved) {
      void* larger = mremap(base, reserved, 2 * reserved, MREMAP_MAYMOVE);
      if (larger == MAP_FAILED) FailForMemory();
      base = static_cast<char*>(larger);
      reserved *= 2;
    }
    const ssize_t got = read(file.descriptor, base + length, reserved - length - kPadding);
    if (got == 0) return;
    if (got > 0) {
      length += static_cast<std::size_t>(got);
    } else if (errno != EINTR) {
      Fail("cannot be read");
    }
  }
}

void WholeFile::State::Reserve(std::size_t bytes) {
  void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) FailForMemory();
  base = static_cast<char*>(memory);
  reserved = bytes;
}

WholeFile::WholeFile(const std::string& path) : state(std::make_unique<State>(path)) {}
WholeFile::~WholeFile() = default;

std::string_view WholeFile::Text() const noexcept {
  return {state->base + state->start, state->length};
}

bool WholeFile::IsWhole() const {
  const Mapping* const mapping = state->mapping;
  if (mapping == nullptr) return true;
  struct stat status {};
  return !mapping->hasLostPages && fstat(state->file.descriptor, &status) == 0 &&
         static_cast<std::size_t>(status.st_size) >= mapping->size;
}

void WholeFile::Release(const char* position) {
  if (state->mapping == nullptr) return;
  const std::size_t done =
      static_cast<std::size_t>(position - state->base) / kReleaseStep * kReleaseStep;
  if (done <= state->released) return;
  madvise(state->base + state->released, done - state->released, MADV_DONTNEED);
  state->released = done;
}

}  // namespace npar_host
