#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace npar_host {

/// Why a file cannot be read: "cannot be opened", the system's reason, and what to do.
struct FileProblem {
  const char* what;
  std::string reason;
  const char* remedy = "give the path of a readable file, or - for standard input";
};

/// The whole text of a file, where the system can do so mapped into memory, else read into it; of
/// standard input or a pipe, read. Behind the text lie zero bytes, kPadding at least, that may be
/// read.
class WholeFile {
 public:
  static constexpr std::size_t kPadding = 64;

  /// "-" is standard input. Throws FileProblem.
  explicit WholeFile(const std::string& path);
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;
  ~WholeFile();

  [[nodiscard]] std::string_view Text() const noexcept;
  /// False where another program has made the file shorter since it was opened. What it took away
  /// reads as zero bytes.
  [[nodiscard]] bool IsWhole() const;
  /// The reader is done with what stands before `position` for now; a mapped file's memory goes
  /// back to the system, from where it can be had again.
  void Release(const char* position);

 private:
  struct State;  // the system's
  std::unique_ptr<State> state;
};

}  // namespace npar_host
