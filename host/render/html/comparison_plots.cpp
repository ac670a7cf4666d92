#include "host/render/html/comparison_plots.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/cochran_q.h"
#include "catalogue/cards/median.h"
#include "host/data/number.h"
#include "host/render/pairs.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr double kLabelEnd = 170.0;
constexpr double kAxis = 200.0;
constexpr double kTop = 26.0;
constexpr double kNodeGap = 12.0;
constexpr double kLabelGap = 17.0;
constexpr std::size_t kPairsInWords = 12;

struct Node {
  std::string title;
  std::string measure;
  double y = 0.0;
  double labelY = 0.0;
};

// Moves positions apart, in their order, so that neighbours keep the gap.
void Spread(std::vector<double*> positions, double gap, double bottom) {
  std::ranges::stable_sort(positions, {}, [](const double* y) { return *y; });
  double least = -INFINITY;
  for (double* y : positions) {
    *y = std::max(*y, least);
    least = *y + gap;
  }
  double most = bottom;
  for (auto y = positions.rbegin(); y != positions.rend(); ++y) {
    **y = std::min(**y, most);
    most = **y - gap;
  }
}

}  // namespace

std::string PairWords(const ResultDocument& document, const ResultTest& test,
                      const std::vector<SamplePair>& pairs) {
  std::string words;
  std::size_t count = 0;
  for (const SamplePair& pair : pairs) {
    if (!(pair.significance < document.sigLevel)) continue;
    if (++count > kPairsInWords) {
      return "These and more pairs differ:" + words + " the table lists them.";
    }
    const std::vector<std::int32_t>& order = test.pairwise.order;
    words += " " + SampleTitle(document, test, order[pair.first]) + " and " +
             SampleTitle(document, test, order[pair.second]) + " (" +
             SignificanceText(NumberText(pair.significance)) + ");";
  }
  if (words.empty()) return "No two samples differ at the level.";
  words.back() = '.';
  return "These pairs differ:" + words;
}

std::vector<double> ComparedValues(const ResultComparison& comparison) {
  std::vector<double> measures;
  for (std::size_t i = 0; i < comparison.order.size(); ++i) {
    const std::string text = i < comparison.values.size() ? comparison.values[i] : "";
    const double measure = FigureNumber(text).value_or(static_cast<double>(i));
    measures.push_back(std::isfinite(measure) ? measure : 0.0);
  }
  return measures;
}

bool IsTraceable(const ResultComparison& comparison) {
  constexpr std::size_t kMostTracedPairs = 100;  // an eye follows no more lines
  return comparison.content.rows.size() <= kMostTracedPairs;
}

std::string ComparedMeasure(const ResultTest& test) {
  if (test.name == catalogue::median::kCard.element) return "Median";
  if (test.name == catalogue::cochran_q::kCard.element) return "Successes";
  return "Mean rank";
}

std::string ComparedMeasureWords(const ResultTest& test) {
  const std::string measure = ComparedMeasure(test);
  if (measure == "Mean rank") return "mean rank";
  return measure == "Median" ? "median" : "number of successes";
}

std::optional<Plot> PairwiseGraph(const ResultDocument& document, const ResultTest& test) {
  const ResultComparison& comparison = test.pairwise;
  if (!comparison.present || comparison.order.empty() || !IsTraceable(comparison)) {
    return std::nullopt;
  }
  const std::size_t count = comparison.order.size();
  const double bottom = std::max(200.0, kTop + kLabelGap * static_cast<double>(count + 1));
  const std::vector<double> measures = ComparedValues(comparison);
  const Scale down = ScaleOver(measures, bottom, kTop);  // larger ones above
  std::vector<Node> nodes;
  const std::vector<std::string> titles = SampleTitles(document, test, comparison.order);
  for (std::size_t i = 0; i < count; ++i) {
    const double y = down(measures[i]);
    nodes.push_back(
        {titles[i], i < comparison.values.size() ? FigureText(comparison.values[i]) : "", y, y});
  }
  std::vector<double*> nodePlaces;
  std::vector<double*> labelPlaces;
  for (Node& node : nodes) {
    nodePlaces.push_back(&node.y);
    labelPlaces.push_back(&node.labelY);
  }
  Spread(nodePlaces, kNodeGap, bottom);
  Spread(labelPlaces, kLabelGap, bottom);
  const std::vector<SamplePair> pairs = Pairs(comparison);
  Plot plot;
  plot.kind = "pairwise";
  plot.title = "Pairwise comparisons, samples placed by " + ComparedMeasureWords(test);
  plot.description = PairWords(document, test, pairs);
  plot.drawing.Line(kAxis, kTop - 8.0, kAxis, bottom + 8.0, "axis");
  for (const bool drawn : {false, true}) {  // significant edges lie above the others
    for (const SamplePair& pair : pairs) {
      if ((pair.significance < document.sigLevel) != drawn) continue;
      const Node& from = nodes[pair.first];
      const Node& to = nodes[pair.second];
      const double reach = 30.0 + 380.0 * std::abs(from.y - to.y) / (bottom - kTop);
      plot.drawing.Curve(kAxis, from.y, kAxis + reach, (from.y + to.y) / 2.0, kAxis, to.y,
                         drawn ? "edge significant" : "edge dashed");
    }
  }
  const std::size_t shared = SharedBeginning(titles);
  for (const Node& node : nodes) {
    plot.drawing.Line(kLabelEnd + 4.0, node.labelY, kAxis, node.y, "leader");
    plot.drawing.Dot(kAxis, node.y, 5.0, "node");
    plot.drawing.Text(kLabelEnd, node.labelY + 4.0, "end", node.measure, "value");
    plot.drawing.Name(kLabelEnd - 66.0, node.labelY + 4.0, "end", node.title, kLabelEnd - 70.0,
                      "name", shared);
  }
  plot.drawing.Text(kLabelEnd, kTop - 14.0, "end", ComparedMeasure(test), "tick");
  plot.height = bottom + 24.0;
  plot.note = "Thick solid line: the two differ at the level by the " + JudgedBy(comparison) +
              ". Thin dashed line: they do not.";
  return plot;
}

}  // namespace npar_host
