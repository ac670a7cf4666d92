#include "host/render/html/comparison_plots.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

#include "catalogue/cards/cochran_q.h"
#include "catalogue/cards/median.h"
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
constexpr std::size_t kMostTracedEdges = 100;  // an eye follows no more

struct Node {
  std::string title;
  std::string measure;
  double y = 0.0;
  double labelY = 0.0;
};

struct Edge {
  std::size_t first = 0;
  std::size_t second = 0;
  std::string significance;
  bool isSignificant = false;
};

std::vector<Edge> Edges(const ResultComparison& comparison, double sigLevel) {
  const std::size_t column = ContentColumn(comparison, "AdjSig");
  std::vector<Edge> edges;
  for (const auto& row : comparison.content.rows) {
    if (row.size() <= std::max<std::size_t>(column, 2)) continue;
    const auto first = FigureNumber(row[0]);
    const auto second = FigureNumber(row[1]);
    const auto count = static_cast<double>(comparison.order.size());
    if (!first || !second || !(*first >= 0.0 && *first < count) ||
        !(*second >= 0.0 && *second < count)) {
      continue;
    }
    const auto p = FigureNumber(row[column]);
    edges.push_back({static_cast<std::size_t>(*first), static_cast<std::size_t>(*second),
                     row[column], p && *p < sigLevel});
  }
  return edges;
}

// What each sample is placed by; its position where the document does not tell.
std::vector<double> Measures(const ResultComparison& comparison) {
  std::vector<double> measures;
  for (std::size_t i = 0; i < comparison.order.size(); ++i) {
    const std::string text = i < comparison.values.size() ? comparison.values[i] : "";
    const double measure = FigureNumber(text).value_or(static_cast<double>(i));
    measures.push_back(std::isfinite(measure) ? measure : 0.0);
  }
  return measures;
}

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

std::string GraphWords(const std::vector<Node>& nodes, const std::vector<Edge>& edges) {
  std::string words;
  std::size_t count = 0;
  for (const Edge& edge : edges) {
    if (!edge.isSignificant) continue;
    if (++count > kPairsInWords) {
      return "These and more pairs differ:" + words + " the table lists all.";
    }
    words += " " + nodes[edge.first].title + " and " + nodes[edge.second].title + " (" +
             SignificanceText(edge.significance) + ");";
  }
  if (words.empty()) return "No two samples differ at the level.";
  words.back() = '.';
  return "These pairs differ:" + words;
}

}  // namespace

std::string ComparedMeasure(const ResultTest& test) {
  if (test.name == catalogue::median::kCard.element) return "Median";
  if (test.name == catalogue::cochran_q::kCard.element) return "Successes";
  return "Mean rank";
}

std::size_t ContentColumn(const ResultComparison& comparison, std::string_view name) {
  const auto& names = comparison.content.columnNames;
  return static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
}

std::optional<Plot> PairwiseGraph(const ResultDocument& document, const ResultTest& test) {
  const ResultComparison& comparison = test.pairwise;
  if (!comparison.present || comparison.order.empty()) return std::nullopt;
  const std::size_t count = comparison.order.size();
  const double bottom = std::max(200.0, kTop + kLabelGap * static_cast<double>(count + 1));
  const std::vector<double> measures = Measures(comparison);
  const Scale down = ScaleOver(measures, bottom, kTop);  // larger ones above
  std::vector<Node> nodes;
  for (std::size_t i = 0; i < count; ++i) {
    const double y = down(measures[i]);
    nodes.push_back({SampleTitle(document, test, comparison.order[i]),
                     i < comparison.values.size() ? FigureText(comparison.values[i]) : "", y, y});
  }
  std::vector<double*> nodePlaces;
  std::vector<double*> labelPlaces;
  for (Node& node : nodes) {
    nodePlaces.push_back(&node.y);
    labelPlaces.push_back(&node.labelY);
  }
  Spread(nodePlaces, kNodeGap, bottom);
  Spread(labelPlaces, kLabelGap, bottom);
  const std::vector<Edge> edges = Edges(comparison, document.sigLevel);
  Plot plot;
  plot.kind = "pairwise";
  plot.title = "Pairwise comparisons, samples placed by " +
               std::string(ComparedMeasure(test) == "Mean rank" ? "mean rank"
                           : ComparedMeasure(test) == "Median"  ? "median"
                                                                : "number of successes");
  plot.description = GraphWords(nodes, edges);
  plot.drawing.Line(kAxis, kTop - 8.0, kAxis, bottom + 8.0, "axis");
  const bool areTraced = edges.size() <= kMostTracedEdges;
  for (const bool drawn : {false, true}) {  // significant edges lie above the others
    for (const Edge& edge : edges) {
      if (edge.isSignificant != drawn || !(drawn || areTraced)) continue;
      const Node& from = nodes[edge.first];
      const Node& to = nodes[edge.second];
      const double reach = 30.0 + 380.0 * std::abs(from.y - to.y) / (bottom - kTop);
      plot.drawing.Curve(kAxis, from.y, kAxis + reach, (from.y + to.y) / 2.0, kAxis, to.y,
                         !drawn      ? "edge dashed"
                         : areTraced ? "edge significant"
                                     : "edge significant thin");
    }
  }
  for (const Node& node : nodes) {
    plot.drawing.Line(kLabelEnd + 4.0, node.labelY, kAxis, node.y, "leader");
    plot.drawing.Dot(kAxis, node.y, 5.0, "node");
    plot.drawing.Text(kLabelEnd, node.labelY + 4.0, "end", node.measure, "value");
    plot.drawing.Name(kLabelEnd - 66.0, node.labelY + 4.0, "end", node.title, kLabelEnd - 70.0);
  }
  plot.drawing.Text(kLabelEnd, kTop - 14.0, "end", ComparedMeasure(test), "tick");
  plot.height = bottom + 24.0;
  plot.note = areTraced
                  ? "Thick solid line: the two differ at the level after adjustment. Thin dashed "
                    "line: they do not."
                  : "Each line joins two that differ at the level after adjustment; the grid shows "
                    "which.";
  return plot;
}

std::optional<Plot> PairwiseGrid(const ResultDocument& document, const ResultTest& test) {
  const ResultComparison& comparison = test.pairwise;
  const std::vector<Edge> edges = Edges(comparison, document.sigLevel);
  if (!comparison.present || edges.size() <= kMostTracedEdges) return std::nullopt;
  const std::size_t count = comparison.order.size();
  const double left = kLabelEnd - 30.0;
  const double width = (kPlotWidth - left - 8.0) / static_cast<double>(count);
  const auto at = [](double start, double step, std::size_t i) {
    return start + step * static_cast<double>(i);
  };
  const std::vector<double> measures = Measures(comparison);
  std::vector<std::size_t> samples(count);  // from the top, as in the graph
  std::iota(samples.begin(), samples.end(), std::size_t{0});
  std::ranges::stable_sort(samples, std::greater(), [&](std::size_t i) { return measures[i]; });
  std::vector<std::size_t> rows(count);
  for (std::size_t i = 0; i < count; ++i) rows[samples[i]] = i;
  std::vector<std::vector<bool>> differ(count, std::vector<bool>(count));
  for (const Edge& edge : edges) {
    const auto [low, high] = std::minmax(rows[edge.first], rows[edge.second]);
    differ[high][low] = edge.isSignificant;
  }
  Plot plot;
  plot.kind = "pairwise-grid";
  plot.title = "Pairs that differ, samples in the order of the graph";
  plot.description = "A grid with a row and a column for each sample; the table lists all pairs.";
  for (std::size_t row = 0; row < count; ++row) {
    const double y = at(kTop, kLabelGap, row);
    plot.drawing.Name(left - 6.0, y + 12.0, "end",
                      SampleTitle(document, test, comparison.order[samples[row]]), left - 10.0);
    plot.drawing.Box(at(left, width, row), y, width, kLabelGap, "cell");
    for (std::size_t column = 0; column < row; ++column) {
      if (!differ[row][column]) continue;
      const std::size_t begin = column;  // neighbours in one box
      while (column + 1 < row && differ[row][column + 1]) ++column;
      plot.drawing.Box(at(left, width, begin), y + 1.0, at(0.0, width, column + 1 - begin),
                       kLabelGap - 2.0, "second");
    }
  }
  plot.height = at(kTop, kLabelGap, count) + 10.0;
  plot.note =
      "Filled: the sample of the row and that of the column differ at the level after adjustment. "
      "A column's sample stands where the column meets the diagonal.";
  return plot;
}

}  // namespace npar_host
