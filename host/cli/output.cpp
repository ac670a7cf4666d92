#include "host/cli/output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>
#include <system_error>

#include "host/os/replace_file.h"
#include "host/os/utf8_path.h"
#include "host/render/text_layout.h"

namespace npar_host {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw OutputError("cannot write " + (path == "-" ? "standard output" : path) + ": " +
                    std::strerror(error));
}

// The file that a path names, links followed, whether it exists or not; empty for "-" and what is
// no plain file.
std::filesystem::path PlainFile(const std::string& path) {
  std::error_code failure;
  const std::filesystem::path given = Utf8Path(path);
  const auto kind = std::filesystem::status(given, failure).type();
  const bool isPlain =
      kind == std::filesystem::file_type::regular || kind == std::filesystem::file_type::not_found;
  if (path == "-" || path.empty() || !isPlain) return {};
  const auto target = std::filesystem::weakly_canonical(std::filesystem::absolute(given), failure);
  return failure ? given : target;
}

}  // namespace

void Publish(const std::string& path, std::string_view text) {
  Publish(path, TextWriter([text](const TextSink& sink) { sink(text); }));
}

void Publish(const std::string& path, const TextWriter& writer) {
  if (path == "-") {
    if (const int error = WriteStandardOutput(writer)) Fail(path, error);
    return;
  }
  std::error_code failure;
  const std::filesystem::path given = Utf8Path(path);
  const auto kind = std::filesystem::status(given, failure).type();
  if (kind == std::filesystem::file_type::directory) Fail(path, EISDIR);
  if (kind != std::filesystem::file_type::regular &&
      kind != std::filesystem::file_type::not_found) {
    if (const int error = WriteInPlace(given, writer)) Fail(path, error);
    return;
  }
  // A link keeps pointing to where it points: the file behind it is replaced.
  auto target = std::filesystem::weakly_canonical(given, failure);
  if (failure) target = given;
  if (const int error = ReplaceFile(target, writer)) Fail(Utf8Name(target), error);
}

void MakeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(Utf8Path(folder), error);
  if (error) throw OutputError("cannot make the folder " + folder + ": " + error.message());
}

void Tell(std::string_view text) {
  constexpr std::size_t kLongest = 4000;  // bytes
  const std::string shown = Printable(text.substr(0, kLongest));
  std::fprintf(stderr, "%s%s\n", shown.c_str(), text.size() > kLongest ? "..." : "");
}

void CheckOutputs(const std::vector<std::string>& written, const std::vector<std::string>& read) {
  std::set<std::filesystem::path> taken;
  for (const std::string& path : read) taken.insert(PlainFile(path));
  for (const std::string& path : written) {
    const std::filesystem::path file = PlainFile(path);
    if (file.empty() || taken.insert(file).second) continue;
    const bool isRead = std::ranges::any_of(
        read, [&](const std::string& input) { return PlainFile(input) == file; });
    throw OutputError("cannot write " + path + ": " +
                      (isRead ? "it is read in the same call" : "it is written twice") +
                      "; give each file a name of its own");
  }
}

}  // namespace npar_host
