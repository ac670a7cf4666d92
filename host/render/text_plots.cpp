#include "host/render/text_plots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace npar_host {
namespace {

constexpr const char* kUnicodeLevels[] = {" ",      "\u2581", "\u2582", "\u2583", "\u2584",
                                          "\u2585", "\u2586", "\u2587", "\u2588"};
constexpr const char* kAsciiLevels[] = {" ", ".", ":", "-", "=", "+", "*", "#", "@"};
constexpr double kHighestLevel = 8.0;

}  // namespace

void PlotRange::Include(double value) {
  if (!std::isfinite(value)) return;
  lowest = isEmpty ? value : std::min(lowest, value);
  highest = isEmpty ? value : std::max(highest, value);
  isEmpty = false;
}

std::size_t PlotRange::CellOf(double value, std::size_t cells) const {
  // Halves, as the difference of two large numbers of either sign is infinite.
  const double span = highest / 2 - lowest / 2;
  if (cells < 2 || !(span > 0.0)) return 0;
  const double share = std::clamp((value / 2 - lowest / 2) / span, 0.0, 1.0);
  return std::min(static_cast<std::size_t>(share * static_cast<double>(cells)), cells - 1);
}

PlotRange RangeOf(const std::vector<ResultBin>& bins) {
  PlotRange range;
  for (const ResultBin& bin : bins) range.Include(bin.value);
  return range;
}

std::size_t HistogramCells(const std::vector<ResultBin>& bins, std::size_t most) {
  std::set<double> values;
  for (const ResultBin& bin : bins) {
    if (std::isfinite(bin.value)) values.insert(bin.value);
  }
  return std::min(values.size(), most);
}

std::string HistogramLine(const std::vector<ResultBin>& bins, const PlotRange& range,
                          std::size_t cells, bool ascii) {
  if (range.isEmpty) return {};
  std::vector<double> counts(std::max<std::size_t>(1, cells));
  for (const ResultBin& bin : bins) {
    if (std::isfinite(bin.value) && bin.count > 0.0) {
      counts[range.CellOf(bin.value, counts.size())] += bin.count;
    }
  }
  const double most = *std::ranges::max_element(counts);
  std::string line;
  for (const double count : counts) {
    const double level = most > 0.0 ? std::ceil(kHighestLevel * (count / most)) : 0.0;
    const auto step = static_cast<std::size_t>(std::clamp(level, 0.0, kHighestLevel));
    line += ascii ? kAsciiLevels[step] : kUnicodeLevels[step];
  }
  return line;
}

std::string BarLine(double share, std::size_t cells, bool ascii) {
  if (!(share > 0.0)) return {};
  const double length =
      std::clamp(std::round(share * static_cast<double>(cells)), 1.0, static_cast<double>(cells));
  std::string bar;
  for (std::size_t i = 0; i < static_cast<std::size_t>(length); ++i) bar += ascii ? "#" : "\u2588";
  return bar;
}

void IncludeBoxPlot(const ResultBoxPlot& plot, PlotRange& range) {
  const auto include = [&range](const std::string& text) {
    if (const auto value = FigureNumber(text)) range.Include(*value);
  };
  std::ranges::for_each(plot.fiveNumbers, include);
  for (const ResultOutlier& outlier : plot.outliers) include(outlier.value);
}

std::string BoxPlotLine(const ResultBoxPlot& plot, const PlotRange& range, std::size_t cells,
                        bool ascii) {
  if (plot.fiveNumbers.size() != 5 || range.isEmpty) return {};
  std::array<std::size_t, 5> cellOf{};
  for (std::size_t i = 0; i < cellOf.size(); ++i) {
    const auto value = FigureNumber(plot.fiveNumbers[i]);
    if (!value || !std::isfinite(*value)) return {};
    cellOf[i] = range.CellOf(*value, cells);
  }
  std::vector<const char*> line(cells, " ");
  const auto fill = [&line](std::size_t first, std::size_t last, const char* mark) {
    for (std::size_t i = first; i <= last && i < line.size(); ++i) line[i] = mark;
  };
  fill(cellOf[0], cellOf[4], ascii ? "-" : "\u2500");
  fill(cellOf[0], cellOf[0], ascii ? "|" : "\u251c");
  fill(cellOf[4], cellOf[4], ascii ? "|" : "\u2524");
  fill(cellOf[1], cellOf[3], ascii ? "=" : "\u2592");
  fill(cellOf[2], cellOf[2], ascii ? "#" : "\u2588");
  for (const ResultOutlier& outlier : plot.outliers) {
    const auto value = FigureNumber(outlier.value);
    if (value && std::isfinite(*value)) line[range.CellOf(*value, cells)] = "o";
  }
  std::string drawn;
  for (const char* mark : line) drawn += mark;
  drawn.erase(drawn.find_last_not_of(' ') + 1);
  return drawn;
}

}  // namespace npar_host
