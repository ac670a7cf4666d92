#pragma once

#include <string>
#include <string_view>

namespace npar_host {

/// What a file that is no text is, by its first bytes, and how its data become CSV:
/// "this is an Excel file; ..."; empty for a text. `path` stands in commands.
[[nodiscard]] std::string ForeignFormat(std::string_view bytes, const std::string& path);

}  // namespace npar_host
