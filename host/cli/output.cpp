#include "host/cli/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

#include "host/cli/destination.h"
#include "host/os/replace_file.h"
#include "host/os/utf8_path.h"
#include "host/render/text_layout.h"

namespace npar_host {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw OutputError("cannot write " + (path == "-" ? "standard output" : path) + ": " +
                    std::strerror(error));
}

}  // namespace

void Publish(const std::string& path, std::string_view text) {
  Publish(path, TextWriter([text](const TextSink& sink) { sink(text); }));
}

void Publish(const std::string& path, const TextWriter& writer) {
  const Destination to = DestinationOf(path);
  int error = 0;
  std::string name = path;
  if (to.way == Way::Descriptor) {
    error = WriteDescriptor(to.descriptor, writer);
  } else if (to.way == Way::InPlace) {
    error = WriteInPlace(Utf8Path(path), writer);
  } else if (std::error_code failure; std::filesystem::is_directory(to.file, failure)) {
    error = EISDIR;
  } else {
    error = ReplaceFile(to.file, writer);
    name = Utf8Name(to.file);
  }
  if (error != 0) Fail(name, error);
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

void CheckOutputs(const CallFiles& files) {
  std::set<std::filesystem::path> read;
  for (const std::string& path : files.read) read.insert(SourceFile(path));
  std::map<std::filesystem::path, Way> ways;
  for (const std::string& path : files.written) {
    const auto [way, descriptor, file] = DestinationOf(path);
    if (file.empty()) continue;
    const auto [known, isNew] = ways.emplace(file, way);
    // Texts that are written through follow each other.
    const bool isTwice = !isNew && (way == Way::Replace || known->second == Way::Replace);
    const bool isRead = read.contains(file);
    if (!isRead && !isTwice) continue;
    throw OutputError("cannot write " +
                      (path == "-" ? "standard output, " + Utf8Name(file) : path) + ": " +
                      (isRead ? "it is read in the same call" : "it is written twice") +
                      "; give each file a name of its own");
  }
}

}  // namespace npar_host
