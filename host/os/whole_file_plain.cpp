#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

#include "host/os/utf8_path.h"
#include "host/os/whole_file.h"

namespace npar_host {

struct WholeFile::State {
  std::vector<char> bytes;
  std::size_t length = 0;

  void Read(std::istream& stream) {
    while (stream) {
      if (length + kPadding >= bytes.size()) bytes.resize(2 * bytes.size());
      const std::size_t room = bytes.size() - length - kPadding;
      stream.read(bytes.data() + length, static_cast<std::streamsize>(room));
      length += static_cast<std::size_t>(stream.gcount());
    }
    if (stream.bad()) throw FileProblem{"cannot be read", std::strerror(errno)};
    bytes.resize(length + kPadding);
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(length), bytes.end(), '\0');
  }
};

WholeFile::WholeFile(const std::string& path) : state(std::make_unique<State>()) {
  constexpr std::size_t kFirstBuffer = std::size_t{1} << 20;
  if (path == "-") {
    state->bytes.resize(kFirstBuffer);
    state->Read(std::cin);
    return;
  }
  const std::filesystem::path file = Utf8Path(path);
  std::error_code failure;
  if (std::filesystem::is_directory(file, failure)) {
    throw FileProblem{"cannot be read", std::strerror(EISDIR)};
  }
  std::vector<char> buffer(kFirstBuffer);  // each call of the system may be a long way
  std::ifstream stream;
  stream.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  stream.open(file, std::ios::binary);
  if (!stream) throw FileProblem{"cannot be opened", std::strerror(errno)};
  const auto size = std::filesystem::file_size(file, failure);
  const std::size_t expected = failure ? kFirstBuffer : static_cast<std::size_t>(size);
  state->bytes.resize(expected + 2 * kPadding);
  state->Read(stream);
}

WholeFile::~WholeFile() = default;

std::string_view WholeFile::Text() const noexcept { return {state->bytes.data(), state->length}; }
bool WholeFile::IsWhole() const { return true; }
void WholeFile::Release(const char*) {}

}  // namespace npar_host
