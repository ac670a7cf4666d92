#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/groups/two_groups.h"
#include "kit/order/wide_integer.h"

/// Two-sample Kolmogorov-Smirnov test: does a continuous field have the same distribution in two
/// groups?
///
/// Formulas, limits, sources: docs/statistics/ks_two_sample.md.
///
/// Two passes over the records ascending by the field: sizes and ranges, then differences and
/// histograms.
class NPARKSmirnowTwoSample final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 222001: a setting cannot be read.
  void Prepare(const SettingsReader& settings) override;
  void Compute() override;
  void TakeAgain(RecordBatch& batch) override;
  /// Errors 222010: a group is empty; 222005: an exponential failed. Warning 222011: no record of
  /// either group came.
  void Finish() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  /// What is known of one group.
  struct Sample : GroupTally::Sample {
    std::int64_t cumulative = 0;  // weight up to and including previousValue

    [[nodiscard]] double DistributionAt(double x) const;
  };
  /// Takes units whose differences are all inside the extremes so far; false, and nothing done, for
  /// others.
  bool PassOver(const GroupTally::Units& units);
  void UpdateDifferences();
  void TakeWholeDistance();

  TwoGroups groups;
  GroupTally* tally = nullptr;
  std::array<Sample, 2> samples;
  double previousValue = QDMV::gMissingValue;
  std::int32_t previousGroup = TwoGroups::Neither;
  double positiveDifference = std::numeric_limits<double>::lowest();
  double negativeDifference = std::numeric_limits<double>::max();
  double absoluteDifference = 0.0;
  double z = 0.0;
  double asymptoticSig = 0.0;
  // Only for the extended figures: F1 - F2 times n1 n2.
  bool keepsRunEnds = false;
  std::vector<bool> endsRun;  // by the number of units up to there
  WideInteger firstAbove = 0;
  WideInteger secondAbove = 0;
  std::optional<double> location;
};
