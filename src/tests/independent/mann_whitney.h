#pragma once

#include <cstdint>
#include <optional>

#include "kit/ranks/rank.h"
#include "kit/statistics/normal.h"
#include "tests/independent/two_group_test.h"

/// Mann-Whitney U test: does a continuous field tend to larger values in one of two groups?
///
/// n1 and n2 are the sums of weights of the groups; figures as in kit/statistics/mann_whitney.h,
/// the exact one for n1 n2 <= 400 and n1 n2 / 2 + min(n1, n2) <= 220. U is that of group 1 as it
/// stands, W the rank sum of group 2. The exact value is that of untied values, with ties as well;
/// where there is one, it decides. No continuity correction.
///
/// Source: H. B. Mann, D. R. Whitney, Ann. Math. Stat. 18 (1947); ties as in E. L. Lehmann,
/// Nonparametrics (1975).
class NPARMannWU final : public NPARTwoGroupTest {
 public:
  /// The exact distribution costs memory and time in proportion to n1 n2.
  static constexpr double kMostExactPairs = 400.0;
  static constexpr double kMostExactHalfPairsAndUnits = 220.0;

  explicit NPARMannWU(QDSettings* settings);

  XMLElement* WriteResults() override;

 protected:
  void TakeUnits(const GroupTally::Units& units) override;
  void ComputeFigures() override;

 private:
  NPARRank ranks;
  std::array<double, 2> meanRanks{0.0, 0.0};
  double mannWhitneyU = 0.0;
  double wilcoxonW = 0.0;
  NormalFigures approximation;
  std::optional<double> exactSig;
};
