#pragma once

#include <optional>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// The pairs of many samples as a triangle of cells, darker the more significant; only where there
/// are more pairs than PairwiseGraph can draw, and no more samples than a page has room for.
[[nodiscard]] std::optional<Plot> PairwiseMatrix(const ResultDocument& document,
                                                 const ResultTest& test);

}  // namespace npar_host
