#pragma once

#include <array>
#include <cstdint>

#include "kit/order/order_statistics.h"
#include "kit/ranks/rank.h"
#include "tests/independent/two_group_test.h"

/// Hodges-Lehmann estimate of the shift from group 1 to group 2, with its distribution-free
/// interval.
///
/// n1 and n2 are the sums of weights of the groups. The estimate is the median of the n1 n2
/// differences of each value of group 2 and each of group 1; the limits are those that
/// kit/statistics/interval_ranks.h gives for the Mann-Whitney statistic, the first and the last at
/// the most. One pass; the differences are not listed.
///
/// Source: J. L. Hodges, E. L. Lehmann, Ann. Math. Stat. 34 (1963); interval as in M. Hollander,
/// D. A. Wolfe, Nonparametric Statistical Methods.
class NPARHodgesLehmannTwoIndep final : public NPARTwoGroupTest {
 public:
  explicit NPARHodgesLehmannTwoIndep(QDSettings* settings);

  /// Also reads "confidenceLevel", a probability.
  XMLElement* WriteResults() override;

 protected:
  void Prepare(const SettingsReader& settings) override;
  void TakeUnits(const GroupTally::Units& units) override;
  void ComputeFigures() override;

 private:
  double confidenceLevel = 0.95;
  NPARRank ranks;  // for their ties
  std::array<WeightedValues, 2> values;
  double estimate = 0.0;
  double lower = 0.0;
  double upper = 0.0;
};
