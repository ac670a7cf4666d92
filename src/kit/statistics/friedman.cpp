#include "kit/statistics/friedman.h"

#include <cmath>

ChiSquareFigures Friedman(std::span<const double> rankSums, double n, const DoubleDouble& tieSum) {
  const auto k = static_cast<double>(rankSums.size());
  const double meanSum = n * (k + 1.0) * 0.5;
  double squares = 0.0;
  for (const double sum : rankSums) squares += (sum - meanSum) * (sum - meanSum);
  // The difference of whole numbers, not that of 1 and their quotient: few untied records among
  // many would leave few digits of it.
  const DoubleDouble mostTies = DoubleDouble::Product((k - 1.0) * (k + 1.0) * k, n);
  const double correction = (mostTies - tieSum).high / mostTies.high;
  double chiSquare = 0.0;
  if (correction < 0.0 || correction > 0.0) {
    chiSquare = 12.0 * squares / ((k + 1.0) * k * n) / correction;
  }
  return ChiSquareOf(chiSquare, rankSums.size());
}

double FriedmanPairStandardError(double k, double n) {
  return std::sqrt((k + 1.0) * k / (n * 6.0));
}
