#include "kit/statistics/chi_square.h"

#include <cmath>
#include <numeric>

#include "arithmetic/elementary.h"
#include "foundation/names.h"

ChiSquareFigures ChiSquareOf(double statistic, std::size_t samples) {
  return {statistic, QDDistFun::SfChi(statistic, static_cast<double>(samples) - 1.0)};
}

double SurelySignificantChiSquare(double level, std::size_t samples) {
  const double df = static_cast<double>(samples) - 1.0;
  const double t = -arithmetic::Log(level);
  return df + 2.0 * std::sqrt(df * t) + 2.0 * t;
}

GoodnessOfFit ChiSquareGoodnessOfFit(std::span<const std::int64_t> observed,
                                     std::span<const double> proportions) {
  const double total = std::accumulate(proportions.begin(), proportions.end(), 0.0);
  const auto n =
      static_cast<double>(std::accumulate(observed.begin(), observed.end(), std::int64_t{0}));
  GoodnessOfFit fit;
  double chiSquare = 0.0;
  for (std::size_t i = 0; i < observed.size(); ++i) {
    const double expected = proportions[i] / total * n;
    const double deviation = static_cast<double>(observed[i]) - expected;
    chiSquare += deviation * deviation / expected;
    fit.expected.Add(expected);
  }
  fit.figures = ChiSquareOf(chiSquare, observed.size());
  return fit;
}
