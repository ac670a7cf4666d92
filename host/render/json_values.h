#pragma once

#include <string>
#include <string_view>

#include "host/render/json_writer.h"

namespace npar_host {

/// "TotalN" is "totalN".
[[nodiscard]] std::string Key(std::string_view name);
/// A whole number is written without a point; null for one that is not finite.
[[nodiscard]] Json Number(double number);
/// A cell of a table: a number, null for a missing one, a text for what is no finite number.
[[nodiscard]] Json Cell(std::string_view text);

}  // namespace npar_host
