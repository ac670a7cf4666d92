#pragma once

#include <optional>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Observed against hypothesised, or one class against the other: two bars for each row (the
/// classes, for the binomial test) of the test's frequencies.
[[nodiscard]] std::optional<Plot> FrequencyPlot(const ResultDocument& document,
                                                const ResultTest& test, const ResultTable& table);
/// A field of cells, the darker the more records they hold, with changes apart from the diagonal.
[[nodiscard]] std::optional<Plot> CrossPlot(const ResultDocument& document, const ResultTest& test,
                                            const ResultTable& table);

}  // namespace npar_host
