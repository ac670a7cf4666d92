#pragma once

#include <optional>
#include <string>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Plots of samples side by side; each is nothing where the test does not have what it shows.

/// A box plot for each group, outliers with their case identifiers.
[[nodiscard]] std::optional<Plot> BoxPlots(const ResultDocument& document, const ResultTest& test);
/// For each of several related fields how often it had which rank, and its mean rank. `id` is
/// unique in the page and begins the ids of the tables of what is drawn.
[[nodiscard]] std::optional<Plot> RankPlot(const ResultDocument& document, const ResultTest& test,
                                           const std::string& id);
/// Estimates with their intervals.
[[nodiscard]] std::optional<Plot> IntervalPlot(const ResultDocument& document,
                                               const ResultTest& test);
/// The number of runs beside what is expected of a random order.
[[nodiscard]] std::optional<Plot> RunsPlot(const ResultTest& test);

}  // namespace npar_host
