#pragma once

#include <optional>
#include <span>

#include "foundation/double_double.h"
#include "kit/statistics/chi_square.h"

/// Friedman's statistic of k >= 2 fields that n > 0 records rank, each its own k values, with k - 1
/// degrees of freedom (docs/statistics/friedman.md). `rankSums` are the R_j; `tieSum` is the sum of
/// t^3 - t over the groups of t tied values of every record, 0 for no correction. 0 where every
/// record is one tie.
/// Summed about the known mean, since the sum of R_j^2 less its expectation would cancel most
/// digits.
/// M. Friedman, JASA 32 (1937).
[[nodiscard]] ChiSquareFigures Friedman(std::span<const double> rankSums, double n,
                                        const DoubleDouble& tieSum);

/// Standard error of the difference of two fields' mean ranks, on the same page.
[[nodiscard]] double FriedmanPairStandardError(double k, double n);

/// Kendall's coefficient of concordance from Friedman's statistic (docs/statistics/kendall_w.md).
/// M. G. Kendall, B. Babington Smith, Ann. Math. Stat. 10 (1939).
[[nodiscard]] constexpr double KendallsW(double chiSquare, double n, double k) {
  return chiSquare / ((k - 1.0) * n);
}

/// Friedman's statistic X beside the F distribution, and the agreement of two records on average,
/// of n > 0 records.
struct ConcordanceFigures {
  struct ImanDavenport {
    double f = 0.0;
    double df1 = 0.0;
    double df2 = 0.0;
    double sig = 1.0;  ///< upper tail
  };
  /// R. L. Iman, J. M. Davenport, Communications in Statistics A 9 (1980). Nothing where X is
  /// within 1e-12 of the largest there can be.
  std::optional<ImanDavenport> imanDavenport;
  /// Without ties the mean of the rank correlations of all pairs of records. M. G. Kendall, Rank
  /// Correlation Methods, 6.
  double meanSpearman = 0.0;
};
/// Arguments as Friedman has them (docs/statistics/friedman.md). Nothing for a single record, or
/// where every record is one tie. Formed of whole numbers, so that no digits cancel where the
/// records nearly agree.
[[nodiscard]] std::optional<ConcordanceFigures> FindConcordance(std::span<const double> rankSums,
                                                                double n,
                                                                const DoubleDouble& tieSum);
