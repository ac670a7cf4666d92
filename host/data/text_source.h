#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "host/os/whole_file.h"

namespace npar_host {

/// The whole text of a file or of standard input, with the name that messages call it by.
class TextSource {
 public:
  static constexpr std::size_t kPadding = WholeFile::kPadding;

  /// "-" is standard input. InputError for a file that cannot be read.
  explicit TextSource(const std::string& path);

  /// The path, "standard input" for "-".
  [[nodiscard]] const std::string& Name() const noexcept { return name; }
  [[nodiscard]] std::string_view Text() const noexcept { return file->Text(); }
  /// Throws InputError where another program has made the file shorter since it was opened.
  void CheckIsWhole() const;
  /// As WholeFile::Release.
  void Release(const char* position) { file->Release(position); }

 private:
  std::string name;
  std::unique_ptr<WholeFile> file;
};

}  // namespace npar_host
