#pragma once

#include <csignal>
#include <cstddef>
#include <string>
#include <string_view>

namespace npar_host {

/// The whole text of a file, mapped into memory; of standard input or a pipe, read into memory.
/// Behind the text lie zero bytes, kPadding at least, that may be read.
class TextSource {
 public:
  static constexpr std::size_t kPadding = 64;

  /// "-" is standard input. InputError for a file that cannot be read.
  explicit TextSource(const std::string& path);
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;
  ~TextSource();

  /// The path, "standard input" for "-".
  [[nodiscard]] const std::string& Name() const noexcept { return name; }
  [[nodiscard]] std::string_view Text() const noexcept { return {base + start, length}; }
  /// Throws InputError where another program has made the file shorter since it was opened. What it
  /// took away reads as zero bytes.
  void CheckIsWhole() const;
  /// The reader is done with what stands before `position` for now; a mapped file's memory goes
  /// back to the system, from where it can be had again.
  void Release(const char* position);

 private:
  struct Mapping;  // what the handler of lost pages knows of
  struct File {
    int descriptor;
    ~File();
  };
  static Mapping mappings[];
  static void OnLostPage(int signal, siginfo_t* info, void* context);

  bool Map(std::size_t fileSize);
  void ReadAll();
  void Reserve(std::size_t bytes);
  [[noreturn]] void Fail(const char* what) const;

  std::string name;
  File file;
  char* base = nullptr;
  std::size_t reserved = 0;  // bytes of address space
  std::size_t start = 0;     // of the text, where standard input has been read in part
  std::size_t length = 0;
  std::size_t released = 0;
  Mapping* mapping = nullptr;  // null: the text was read
};

}  // namespace npar_host
