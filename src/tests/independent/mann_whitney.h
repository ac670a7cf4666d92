#pragma once

#include <cstdint>
#include <optional>

#include "kit/groups/two_group_runs.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/normal.h"
#include "tests/independent/two_group_test.h"

/// Mann-Whitney U test: does a continuous field tend to larger values in one of two groups?
///
/// Formulas, limits, sources: docs/statistics/mann_whitney.md.
///
/// U is that of group 1 as it stands, W the rank sum of group 2. The exact value decides where
/// there is one.
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
  void Extend(ExtendedFigures& figures) override;

 private:
  void AddExact(ExtendedFigures& figures) const;
  void AddSuperiority(ExtendedFigures& figures) const;

  NPARRank ranks;
  TwoGroupRuns runs;  // only for the extended figures
  std::array<double, 2> meanRanks{0.0, 0.0};
  double mannWhitneyU = 0.0;
  double wilcoxonW = 0.0;
  NormalFigures approximation;
  std::optional<double> exactSig;
};
