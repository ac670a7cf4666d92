#pragma once

#include <optional>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// A line for each record across the related fields that a test of measurements compares, where
/// the document has the values and the fields are few enough to stand side by side.
[[nodiscard]] std::optional<Plot> ProfilePlot(const ResultDocument& document,
                                              const ResultTest& test);

}  // namespace npar_host
