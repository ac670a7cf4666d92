#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace npar_host {

/// When the file was changed last, in seconds since 1970; nothing where the system does not tell.
[[nodiscard]] std::optional<std::int64_t> LastChange(const std::filesystem::path& path);

}  // namespace npar_host
