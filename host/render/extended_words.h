#pragma once

#include <string>
#include <string_view>

namespace npar_host {

/// What a report calls an extended figure, a pair of its limits ("Wilson") or tails
/// ("ExactSig1Tailed"), or a column of a table. A name without words is split where its capitals
/// are.
[[nodiscard]] std::string ExtendedLabel(std::string_view name);

/// Whose limits a figure has, "Wilson"; empty where its label names them.
[[nodiscard]] std::string_view LimitsMethod(std::string_view name);

/// Does it stand in the text report, which is to be read at a glance? Pages have all figures.
[[nodiscard]] bool IsForText(std::string_view name);

}  // namespace npar_host
