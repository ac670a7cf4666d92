#include "host/render/html/pair_matrix.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "host/data/number.h"
#include "host/render/html/comparison_plots.h"
#include "host/render/pairs.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kMostSamples = 150;  // narrower cells cannot be told apart
constexpr double kLeft = 150.0;
constexpr double kTop = 8.0;
constexpr double kRowHeight = 14.0;
constexpr double kWidestCell = 22.0;
constexpr double kLegendWidth = 230.0;

double At(double start, double step, std::size_t i) {
  return start + step * static_cast<double>(i);
}

struct Shade {
  double below = 0.0;  // significances
  const char* shapeClass = "";
};

// From the darkest; the last is the level's own.
std::vector<Shade> Shades(double level) {
  std::vector<Shade> shades;
  for (const Shade& shade : {Shade{0.001, "pair strong"}, Shade{0.01, "pair clear"}}) {
    if (shade.below < level) shades.push_back(shade);
  }
  shades.push_back({level, "pair plain"});
  return shades;
}

/// A triangle: row and column are places from the greatest sample down, the column's before the
/// row's.
class Triangle {
 public:
  explicit Triangle(const ResultComparison& comparison)
      : samples(comparison.order.size()), significances(samples.size() * samples.size(), 2.0) {
    const std::vector<double> values = ComparedValues(comparison);
    std::iota(samples.begin(), samples.end(), std::size_t{0});
    std::ranges::stable_sort(samples, std::greater(), [&](std::size_t i) { return values[i]; });
    std::vector<std::size_t> places(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) places[samples[i]] = i;
    for (const SamplePair& pair : Pairs(comparison)) {
      const auto [column, row] = std::minmax(places[pair.first], places[pair.second]);
      significances[row * samples.size() + column] = pair.significance;
    }
  }

  [[nodiscard]] std::size_t Size() const { return samples.size(); }
  /// The position of the sample at a place.
  [[nodiscard]] std::size_t Sample(std::size_t place) const { return samples[place]; }
  [[nodiscard]] bool IsIn(std::size_t row, std::size_t column, double from, double below) const {
    const double p = significances[row * samples.size() + column];
    return p >= from && p < below;
  }

 private:
  std::vector<std::size_t> samples;   // by place
  std::vector<double> significances;  // above 1: no such pair
};

// The cells of one shade, neighbours in a row as one.
void DrawCells(Drawing& drawing, const Triangle& triangle, double from, const Shade& shade,
               double cell) {
  std::vector<Drawing::Corner> boxes;
  for (std::size_t row = 0; row < triangle.Size(); ++row) {
    for (std::size_t column = 0; column < row; ++column) {
      const std::size_t begin = column;
      while (column < row && triangle.IsIn(row, column, from, shade.below)) ++column;
      if (column == begin) continue;
      boxes.push_back(
          {At(kLeft, cell, begin), At(kTop, kRowHeight, row), At(0.0, cell, column - begin)});
    }
  }
  drawing.Boxes(boxes, kRowHeight - 1.0, shade.shapeClass);
}

void DrawLegend(Drawing& drawing, const std::vector<Shade>& shades, const std::string& title) {
  constexpr double kBox = 14.0;
  constexpr double kStep = 20.0;
  const double left = kWidePlotWidth - kLegendWidth;
  double y = kTop + 12.0;
  drawing.Text(left, y, "start", title, "tick");
  for (const Shade& shade : shades) {
    y += kStep;
    drawing.Box(left, y - 11.0, kBox, kBox, shade.shapeClass);
    drawing.Text(left + kStep, y, "start", "below " + FigureText(NumberText(shade.below)), "name");
  }
  y += kStep;
  drawing.Box(left, y - 11.0, kBox, kBox, "pair none");
  drawing.Text(left + kStep, y, "start", "not below the level", "name");
}

}  // namespace

std::optional<Plot> PairwiseMatrix(const ResultDocument& document, const ResultTest& test) {
  const ResultComparison& comparison = test.pairwise;
  if (!comparison.present || IsTraceable(comparison) || comparison.order.size() > kMostSamples) {
    return std::nullopt;
  }
  const Triangle triangle(comparison);
  const std::size_t count = triangle.Size();
  const double cell =
      std::min(kWidestCell, (kWidePlotWidth - kLeft - 8.0) / static_cast<double>(count));
  Plot plot;
  plot.kind = "pairwise-matrix";
  plot.width = kWidePlotWidth;
  plot.title = "Pairs of samples, from the greatest " + ComparedMeasureWords(test) + " down";
  plot.description = PairWords(document, test, Pairs(comparison));
  const std::vector<std::string> titles = SampleTitles(document, test, comparison.order);
  const std::size_t shared = SharedBeginning(titles);
  for (std::size_t row = 0; row < count; ++row) {
    const double y = At(kTop, kRowHeight, row);
    plot.drawing.Name(kLeft - 6.0, y + 11.0, "end", titles[triangle.Sample(row)], kLeft - 8.0,
                      "name", shared);
    plot.drawing.Box(kLeft, y, At(0.0, cell, row + 1), kRowHeight - 1.0, "pair none");
  }
  const std::vector<Shade> shades = Shades(document.sigLevel);
  double from = 0.0;
  for (const Shade& shade : shades) {
    DrawCells(plot.drawing, triangle, from, shade, cell);
    from = shade.below;
  }
  DrawLegend(plot.drawing, shades, "Shade: " + JudgedBy(comparison));
  plot.height = At(kTop, kRowHeight, count) + 8.0;
  plot.note =
      "A cell belongs to the sample of its row and to that of its column, which stands where the "
      "column meets the edge. The sample further up has the greater " +
      ComparedMeasureWords(test) + ".";
  return plot;
}

}  // namespace npar_host
