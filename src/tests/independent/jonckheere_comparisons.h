#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_counts.h"
#include "kit/ranks/ties.h"
#include "kit/statistics/jonckheere.h"
#include "tests/independent/jonckheere_statistic.h"

/// What pairs or ranges of ordered groups come to in a Jonckheere-Terpstra test, one-sided in the
/// direction of the overall test. Positions are those of the groups with data in their order.
class JonckheereComparisons {
 public:
  /// `sizes`: weights of the groups by position; `overallZ` of the test of them all. Throws
  /// std::bad_alloc.
  JonckheereComparisons(ComparisonKind kind, std::vector<double> sizes, double overallZ);

  /// Values ascend; of groups without data too, since pairs and ranges have the ties of the whole.
  void MeetValue(double x) { static_cast<void>(runs.Begins(x)); }
  /// A unit of the value that was met last.
  void Add(std::int64_t weight, std::size_t position);

  /// To be asked once for a pair, after the last value.
  [[nodiscard]] PairFigures PairOf(std::size_t earlier, std::size_t later);
  /// After the last value and before the first range.
  void StartRanges();
  /// None where the range is surely significant at the level.
  [[nodiscard]] std::optional<RangeFigures> RangeOf(const SampleRange& range, double level);

 private:
  /// Sums of the sizes of groups and of what a variance has of them.
  struct SizeSums {
    double sum = 0.0;
    double squares = 0.0;
    double cubic = 0.0;  // n^2 (2n + 3)
    [[nodiscard]] SizeSums With(double n) const noexcept {
      return {sum + n, squares + n * n, cubic + n * n * (2.0 * n + 3.0)};
    }
  };

  [[nodiscard]] bool IsSurelyApart(const SampleRange& range, double statistic, double level) const;
  [[nodiscard]] double OneTailedSig(double z) const { return JonckheereSigToward(overallZ, z); }

  std::vector<double> sizes;
  double overallZ;
  TieRuns runs;                       // of all values
  std::vector<JonckheerePair> pairs;  // all, where they are compared
  RangeCounts ranges{0};              // all, where they are
  std::vector<SizeSums> sizesBefore;  // by position: of all earlier groups
};
