#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "kit/contract/column_test.h"
#include "kit/groups/two_group_tally.h"
#include "kit/groups/two_groups.h"

/// Two-sample Kolmogorov-Smirnov test: does a continuous field have the same distribution in two
/// groups?
///
/// F1 and F2 are the empirical distribution functions of the weighted values, n1 and n2 the sums of
/// weights. At each distinct value d is the difference of the two, the larger group's first (group
/// 1's for equal sizes); D is the largest |d|:
///   z = sqrt(n1 n2 / (n1 + n2)) D;  p by Smirnov's limiting distribution
///                                   (kit/kolmogorov_smirnov.h)
/// No exact value. Two passes over the records ascending by the field: sizes and ranges, then
/// differences and histograms.
///
/// Source: N. V. Smirnov, Ann. Math. Stat. 19 (1948).
class NPARKSmirnowTwoSample final : public NPARColumnTest {
 public:
  using NPARColumnTest::NPARColumnTest;

  void SetSharedData(UnivariateResults*) override {}
  /// Error 222001: a setting cannot be read.
  QDStatus BeginPass() override;
  QDStatus ProcessBatch(RecordBatch& batch) override;
  bool NeedsAnotherPass() override;
  /// Second pass: errors 222010 (a group is empty) and 222005 (an exponential failed), warning
  /// 222011 (no record of either group came).
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;
  Tally* GetTally() const noexcept override { return tally.Get(); }

 private:
  /// What is known of one group.
  struct Sample : TwoGroupTally::Sample {
    std::int64_t cumulative = 0;  // weight up to and including previousValue

    [[nodiscard]] double DistributionAt(double x) const;
  };
  void ReadSettings();
  void TakeDifferences(const TwoGroupUnits& units);
  /// Is every difference between these sums of weights inside the extremes so far?
  [[nodiscard]] bool IsInside(const std::array<std::int64_t, 2>& added) const;
  void UpdateDifferences();
  void Compute();

  double sigLevel = 0.05;
  TwoGroups groups;
  TallyShare<TwoGroupTally> tally;
  std::int32_t passNumber = 0;
  std::array<Sample, 2> samples;
  double previousValue = QDMV::gMissingValue;
  TwoGroups::Group previousGroup = TwoGroups::Neither;
  double positiveDifference = std::numeric_limits<double>::lowest();
  double negativeDifference = std::numeric_limits<double>::max();
  double absoluteDifference = 0.0;
  double z = 0.0;
  double asymptoticSig = 0.0;
};
