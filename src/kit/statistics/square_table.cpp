// Stuart and Maxwell's d' S^- d without a generalized inverse.
//
// S is the Laplacian of a graph: its nodes are the categories, two of them joined by a weight
// w_ij = n_ij + n_ji, and S_ii is the sum of the weights at i. Eliminating a node v leaves the
// Laplacian of the others, joined by w_ij + w_iv w_jv / W_v, where W_v is the sum of the weights at
// v, and changes d_i by d_v w_iv / W_v; d_v^2 / W_v is what v adds to the statistic. A node without
// weights is the last one of its connected part: it adds neither to the statistic nor to the
// degrees of freedom. Weights are only added up, so that none of their digits cancel.

#include "kit/statistics/square_table.h"

#include <vector>

#include "foundation/names.h"

namespace {

std::optional<TableFigures> FiguresOf(double statistic, std::int64_t degreeOfFreedom) {
  if (degreeOfFreedom == 0) return std::nullopt;
  return TableFigures{statistic, degreeOfFreedom,
                      QDDistFun::SfChi(statistic, static_cast<double>(degreeOfFreedom))};
}

/// The categories that are not eliminated yet: the first `count`.
struct ChangeGraph {
  ChangeGraph(std::span<const std::int64_t> table, std::size_t categories)
      : count(categories),
        stride(categories),
        weights(categories * categories, 0.0),
        excess(categories, 0.0) {
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t j = 0; j < count; ++j) {
        if (i == j) continue;
        const std::int64_t there = table[i * stride + j];
        const std::int64_t back = table[j * stride + i];
        weights[i * stride + j] = static_cast<double>(there + back);
        excess[i] += static_cast<double>(there - back);
      }
    }
  }

  /// The sum of the weights at the last one, which goes.
  double Eliminate(double& statistic) {
    --count;
    const double* edges = weights.data() + count * stride;
    double sum = 0.0;
    for (std::size_t i = 0; i < count; ++i) sum += edges[i];
    if (sum == 0.0) return sum;
    const double flow = excess[count] / sum;
    statistic += flow * excess[count];
    for (std::size_t i = 0; i < count; ++i) {
      if (edges[i] == 0.0) continue;
      excess[i] += flow * edges[i];
      const double share = edges[i] / sum;
      for (std::size_t j = 0; j < count; ++j) {
        if (j != i) weights[i * stride + j] += share * edges[j];
      }
    }
    return sum;
  }

  std::size_t count;
  std::size_t stride;
  std::vector<double> weights;
  std::vector<double> excess;
};

}  // namespace

std::optional<TableFigures> StuartMaxwell(std::span<const std::int64_t> table,
                                          std::size_t categories) {
  ChangeGraph graph(table, categories);
  double statistic = 0.0;
  std::int64_t degreeOfFreedom = 0;
  while (graph.count > 1) {
    if (graph.Eliminate(statistic) > 0.0) ++degreeOfFreedom;
  }
  return FiguresOf(statistic, degreeOfFreedom);
}

std::optional<TableFigures> Bowker(std::span<const std::int64_t> table, std::size_t categories) {
  double statistic = 0.0;
  std::int64_t degreeOfFreedom = 0;
  for (std::size_t i = 0; i < categories; ++i) {
    for (std::size_t j = i + 1; j < categories; ++j) {
      const std::int64_t there = table[i * categories + j];
      const std::int64_t back = table[j * categories + i];
      if (there + back == 0) continue;
      const auto excess = static_cast<double>(there - back);
      statistic += excess * excess / static_cast<double>(there + back);
      ++degreeOfFreedom;
    }
  }
  return FiguresOf(statistic, degreeOfFreedom);
}
