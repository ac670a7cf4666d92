#pragma once

#include <string>
#include <vector>

/// What came of a program.
struct ProcessResult {
  int exitCode = -1;  // 128 + signal where a signal ended it
  std::string out;
  std::string err;
};

/// Runs a program to its end, with `input` on standard input.
[[nodiscard]] ProcessResult RunProcess(const std::vector<std::string>& command,
                                       const std::string& input = {});

/// Runs a shell command; `out` holds what it wrote to either stream.
[[nodiscard]] inline ProcessResult RunShell(const std::string& command) {
  return RunProcess({"/bin/sh", "-c", "{ " + command + "; } 2>&1"});
}

/// Starts a program that reads from standard input, hands it `input`, and sends it the signal while
/// it waits for more; then waits for its end.
[[nodiscard]] ProcessResult SignalWaitingProcess(const std::vector<std::string>& command,
                                                 const std::string& input, int signal);

/// A folder that is removed with all it holds.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// The path of a name inside it.
  [[nodiscard]] std::string Path(const std::string& name) const { return folder + "/" + name; }
  /// Writes a file and answers its path.
  std::string Write(const std::string& name, const std::string& content) const;
  /// Names of what it holds, sorted.
  [[nodiscard]] std::vector<std::string> Names() const;

 private:
  std::string folder;
};

/// A file with that text, gone with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text) : path(folder.Write("file", text)) {}

  [[nodiscard]] const std::string& Path() const noexcept { return path; }

 private:
  TemporaryFolder folder;
  std::string path;
};

/// A file's whole content; empty for one that can't be read.
[[nodiscard]] std::string FileContent(const std::string& path);
