#include "kit/statistics/marginal_homogeneity.h"

#include <cmath>
#include <cstddef>

MarginalHomogeneity TestMarginalHomogeneity(std::span<const double> scores,
                                            std::span<const std::int64_t> table) {
  MarginalHomogeneity result;
  double deviation = 0.0;
  double variance = 0.0;
  for (std::size_t i = 0; i < scores.size(); ++i) {
    for (std::size_t j = 0; j < scores.size(); ++j) {
      if (i == j) continue;
      const auto n = static_cast<double>(table[i * scores.size() + j]);
      const double half = (scores[i] - scores[j]) * 0.5;
      result.statistic += n * scores[i];
      deviation += n * half;
      variance += half * half * n;
    }
  }
  result.figures = StandardizedFigures(deviation, std::sqrt(variance));
  return result;
}
