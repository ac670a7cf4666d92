#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/statistics/chi_square.h"

/// The table of k groups by two rows: of the n_j units of group j, L_j lie in the lower row, the
/// others in the upper one. Formulas: docs/statistics/median.md. Add throws std::bad_alloc; the
/// others want at least one group, and every n_j above 0.
class TwoRowTable {
 public:
  void Add(std::int64_t lowerCount, std::int64_t size);

  [[nodiscard]] double Total() const noexcept { return total; }
  /// No unit in one of the rows.
  [[nodiscard]] bool IsOneSided() const noexcept { return lowerSum == 0.0 || lowerSum == total; }
  [[nodiscard]] ExpectedCounts Expected() const;

  /// Pearson's statistic of homogeneity, with k - 1 degrees of freedom. 0 and 1 where the table is
  /// one-sided.
  /// K. Pearson, Philosophical Magazine 50 (1900); of medians: G. W. Brown, A. M. Mood, Proc. 2nd
  /// Berkeley Symp. (1951).
  [[nodiscard]] ChiSquareFigures ChiSquare() const;

  /// Of two groups, corrected for continuity; the table is not one-sided. F. Yates, JRSS Supplement
  /// 1 (1934).
  [[nodiscard]] ChiSquareFigures YatesChiSquare() const;

  /// Largest N for which FisherSig is meant; the counts of tables are exact up to 51.
  static constexpr double kExactLimit = 30.0;
  /// Of two groups, two-sided; tables as likely as this one but for rounding count with those less
  /// likely. R. A. Fisher, Statistical Methods for Research Workers, 5th ed. (1934), 21.02.
  [[nodiscard]] double FisherSig() const;

 private:
  /// Expected counts of a group.
  struct Cells {
    double lower;
    double upper;
  };
  [[nodiscard]] Cells ExpectedOf(std::size_t j) const noexcept {
    return {lowerSum * sizes[j] / total, (total - lowerSum) * sizes[j] / total};
  }

  std::vector<double> lower;  // L_j
  std::vector<double> sizes;  // n_j
  double lowerSum = 0.0;
  double total = 0.0;
};
