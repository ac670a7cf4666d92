#include "host/cli/destination.h"

#include <charconv>
#include <system_error>

#include "host/os/utf8_path.h"

namespace npar_host {
namespace {

namespace fs = std::filesystem;

constexpr int kStandardInput = 0;
constexpr int kStandardOutput = 1;
constexpr int kMostLinks = 40;  // as the system follows
constexpr const char* kDescriptors = "/dev/fd";

bool HoldsDescriptors(const fs::path& folder) {
  const std::string name = Utf8Name(folder);
  return name == kDescriptors || (name.starts_with("/proc/") && name.ends_with("/fd"));
}

// The file that is open at a path such as /dev/fd/1.
fs::path OpenFile(const fs::path& place) {
  std::error_code failure;
  if (!fs::is_regular_file(place, failure)) return {};
  const fs::path file = fs::canonical(place, failure);
  return failure ? fs::path() : file;
}

Destination ToDescriptor(int descriptor) {
  return {Way::Descriptor, descriptor,
          OpenFile(fs::path(kDescriptors) / std::to_string(descriptor))};
}

Destination ToOpenFile(const fs::path& folder, const std::string& name) {
  std::error_code failure;
  int descriptor = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), descriptor);
  const bool isNumber = error == std::errc() && end == name.data() + name.size();
  const bool isOwn = folder == fs::weakly_canonical(kDescriptors, failure);
  if (isNumber && isOwn) return ToDescriptor(descriptor);
  return {Way::InPlace, -1, OpenFile(folder / name)};
}

}  // namespace

Destination DestinationOf(const std::string& path) {
  if (path == "-") return ToDescriptor(kStandardOutput);
  std::error_code failure;
  const fs::path given = Utf8Path(path);
  fs::path place = fs::absolute(given, failure);
  for (int link = 0; link < kMostLinks; ++link) {
    const fs::path folder = fs::weakly_canonical(place.parent_path(), failure);
    if (HoldsDescriptors(folder)) return ToOpenFile(folder, Utf8Name(place.filename()));
    if (failure || !fs::is_symlink(place, failure)) break;
    place = folder / fs::read_symlink(place, failure);
  }
  const fs::file_type kind = fs::status(place, failure).type();
  const bool isDevice = kind != fs::file_type::regular && kind != fs::file_type::not_found &&
                        kind != fs::file_type::directory;
  if (isDevice) return {Way::InPlace, -1, {}};
  const fs::path file = fs::weakly_canonical(place, failure);
  return {Way::Replace, -1, failure ? given : file};
}

std::filesystem::path SourceFile(const std::string& path) {
  return path == "-" ? ToDescriptor(kStandardInput).file : DestinationOf(path).file;
}

}  // namespace npar_host
