#pragma once

#include <optional>
#include <string>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Samples as nodes at their mean rank (median, successes), pairs as edges; those that differ at
/// the level are thick and solid, the others thin and dashed. Nothing without comparisons.
[[nodiscard]] std::optional<Plot> PairwiseGraph(const ResultDocument& document,
                                                const ResultTest& test);

/// The pairs that differ as cells of a grid; only where the graph has more edges than can be told
/// apart.
[[nodiscard]] std::optional<Plot> PairwiseGrid(const ResultDocument& document,
                                               const ResultTest& test);

/// What the samples of a multiple comparison are ordered by: "Mean rank".
[[nodiscard]] std::string ComparedMeasure(const ResultTest& test);
/// The column of the comparison's content, or its number of columns without such a column.
[[nodiscard]] std::size_t ContentColumn(const ResultComparison& comparison, std::string_view name);

}  // namespace npar_host
