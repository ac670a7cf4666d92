#pragma once

#include <filesystem>
#include <string>

namespace npar_host {

/// How a text gets to where a path leads.
enum class Way {
  Replace,     ///< a plain file, or none as yet: the text takes its place
  InPlace,     ///< a device, a pipe, what another process has open
  Descriptor,  ///< what this process has open
};

struct Destination {
  Way way = Way::Replace;
  int descriptor = -1;
  /// The plain file, links followed, whether it exists or not; empty where there is none.
  std::filesystem::path file;
};

/// Where a text goes that is written to `path`, "-" being standard output. Links are followed, also
/// those that lead to no file as yet, and to descriptors, as /dev/stdout does.
[[nodiscard]] Destination DestinationOf(const std::string& path);

/// The plain file that is read as `path`, "-" being standard input; empty where there is none.
[[nodiscard]] std::filesystem::path SourceFile(const std::string& path);

}  // namespace npar_host
