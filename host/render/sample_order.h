#pragma once

#include <string_view>

#include "host/render/result_model.h"

namespace npar_host {

/// Whether the first text stands before the second where numbers in them count as numbers: "g2"
/// before "g10".
[[nodiscard]] bool IsNaturallyLess(std::string_view a, std::string_view b);

/// Puts categories into the order that a reader looks for them in, in boxes, tables and
/// distributions: those of nominal fields, whose own order is only that of their texts' bytes, in
/// natural order; the groups of a trend that is tested from the last one down, so.
void OrderSamples(ResultDocument& document);

}  // namespace npar_host
