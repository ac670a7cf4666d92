#pragma once

#include <optional>
#include <string>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Plots of how often values occur. `id` is unique in the page and names the table of what is
/// drawn.

/// Histogram of a continuous field, bars of a categorical one; nothing without values.
[[nodiscard]] std::optional<Plot> FieldPlot(const ResultField& field, const std::string& id);
/// The differences of pairs, those of 0 set apart; nothing where the test has none.
[[nodiscard]] std::optional<Plot> DifferencesPlot(const ResultDocument& document,
                                                  const ResultTest& test, const std::string& id);
/// One-sample Wilcoxon: the values with the hypothesised and the observed median.
[[nodiscard]] std::optional<Plot> MedianPlot(const ResultDocument& document, const ResultTest& test,
                                             const std::string& id);
/// Two groups on one axis of values, the second upside down.
[[nodiscard]] std::optional<Plot> MirroredPlot(const ResultDocument& document,
                                               const ResultTest& test, const std::string& id);

}  // namespace npar_host
