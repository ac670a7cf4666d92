#pragma once

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

/// A file with that text, gone with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string_view text)
      : path((std::filesystem::temp_directory_path() / "npar_XXXXXX").string()) {
    const int file = mkstemp(path.data());
    std::FILE* stream = fdopen(file, "wb");
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fclose(stream);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::filesystem::remove(path); }

  [[nodiscard]] const std::string& Path() const noexcept { return path; }

 private:
  std::string path;
};
