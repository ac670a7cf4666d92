#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// Plots of one line each, in Unicode or ASCII.

/// The ends of an axis; nothing lies on it while it is empty.
struct PlotRange {
  double lowest = 0.0;
  double highest = 0.0;
  bool isEmpty = true;

  /// Makes room for a value; one that is not finite is left out.
  void Include(double value);
  /// The cell of `cells` in which a value lies; the ends are in the first and the last.
  [[nodiscard]] std::size_t CellOf(double value, std::size_t cells) const;
};

/// The range of the bins' values.
[[nodiscard]] PlotRange RangeOf(const std::vector<ResultBin>& bins);

/// How many cells a histogram takes: one for each value that occurs, at most `most`.
[[nodiscard]] std::size_t HistogramCells(const std::vector<ResultBin>& bins, std::size_t most);

/// A histogram of equal cells over the range, blank where nothing lies; the tallest is full.
[[nodiscard]] std::string HistogramLine(const std::vector<ResultBin>& bins, const PlotRange& range,
                                        std::size_t cells, bool ascii);

/// A bar whose length is `share` (0 to 1) of `cells`; at least one cell for anything above 0.
[[nodiscard]] std::string BarLine(double share, std::size_t cells, bool ascii);

/// The range of the whiskers and outliers.
void IncludeBoxPlot(const ResultBoxPlot& plot, PlotRange& range);

/// Whiskers, box, median and outliers ("o"); empty without the five numbers.
[[nodiscard]] std::string BoxPlotLine(const ResultBoxPlot& plot, const PlotRange& range,
                                      std::size_t cells, bool ascii);

}  // namespace npar_host
