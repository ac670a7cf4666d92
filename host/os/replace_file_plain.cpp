#include <cerrno>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <system_error>

#include "host/os/replace_file.h"

namespace npar_host {
namespace {

constexpr int kNoReason = EIO;

std::mutex replacing;  // held while a temporary file stands

int Failure() { return errno != 0 ? errno : kNoReason; }

}  // namespace

int WriteDescriptor(int descriptor, const PieceWriter& writer) {
  constexpr int kStandardOutput = 1;
  if (descriptor != kStandardOutput) return EBADF;
  errno = 0;
  bool isWritten = true;
  writer([&](std::string_view piece) {
    isWritten = isWritten && std::fwrite(piece.data(), 1, piece.size(), stdout) == piece.size();
  });
  return isWritten && std::fflush(stdout) == 0 ? 0 : Failure();
}

int WriteInPlace(const std::filesystem::path& path, const PieceWriter& writer) {
  errno = 0;
  std::ofstream stream(path, std::ios::binary);
  writer([&](std::string_view piece) {
    stream.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  });
  stream.close();
  return stream ? 0 : Failure();
}

int ReplaceFile(const std::filesystem::path& target, const PieceWriter& writer) {
  const std::lock_guard lock(replacing);
  std::filesystem::path temporary = target;
  temporary += ".npar-part";
  int error = WriteInPlace(temporary, writer);
  std::error_code failure;
  if (error == 0) {
    std::filesystem::rename(temporary, target, failure);
    error = failure ? failure.default_error_condition().value() : 0;
  }
  if (error != 0) std::filesystem::remove(temporary, failure);
  return error;
}

void AbandonTemporaryFile() noexcept { replacing.lock(); }

}  // namespace npar_host
