#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace npar_host {

/// The path of a name in UTF-8, as all names are in this program. What std::filesystem::path makes
/// of a std::string depends on the system.
[[nodiscard]] inline std::filesystem::path Utf8Path(std::string_view name) {
  return std::u8string(name.begin(), name.end());
}

/// Its name again.
[[nodiscard]] inline std::string Utf8Name(const std::filesystem::path& path) {
  const std::u8string name = path.u8string();
  return {name.begin(), name.end()};
}

}  // namespace npar_host
