#include "kit/statistics/friedman.h"

#include <cmath>

#include "foundation/names.h"

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

std::optional<ConcordanceFigures> FindConcordance(std::span<const double> rankSums, double n,
                                                  const DoubleDouble& tieSum) {
  constexpr double kLeastDiscord = 1e-12;
  const auto k = static_cast<double>(rankSums.size());
  // X is n (k - 1) times agreement / most.
  DoubleDouble agreement;
  for (const double sum : rankSums) {
    const double twiceDeviation = 2.0 * sum - n * (k + 1.0);
    agreement = agreement + DoubleDouble::Product(3.0 * twiceDeviation, twiceDeviation);
  }
  const DoubleDouble most = (DoubleDouble::Product((k - 1.0) * (k + 1.0) * k, n) - tieSum) * n;
  if (n < 2.0 || !(most.high > 0.0)) return std::nullopt;

  ConcordanceFigures figures;
  figures.meanSpearman = (agreement * n - most).high / (most.high * (n - 1.0));
  const double discord = (most - agreement).high;
  if (discord > kLeastDiscord * most.high) {
    const double f = (n - 1.0) * agreement.high / discord;
    const double df1 = k - 1.0;
    const double df2 = (n - 1.0) * df1;
    figures.imanDavenport = {f, df1, df2, QDDistFun::SfF(f, df1, df2)};
  }
  return figures;
}
