#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace npar_host {

/// The name of a field by its index, nothing for an index that is none.
using FieldNames = std::function<std::optional<std::string>(std::size_t)>;
using NamedParameters = std::span<const std::pair<std::string, std::string>>;

/// The text of a code with its parameters in place; those that are not given show as nothing.
/// Parameters may hold anything: they are not searched for placeholders, and control characters in
/// them become blanks. A code without a text is told as such, with its parameters.
[[nodiscard]] std::string FillMessage(std::int32_t code, std::span<const std::string> parameters,
                                      NamedParameters named = {}, const FieldNames& fields = {});

}  // namespace npar_host
