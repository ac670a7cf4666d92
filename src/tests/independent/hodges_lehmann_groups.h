#pragma once

#include <array>
#include <cstdint>

#include "kit/order/order_statistics.h"
#include "kit/ranks/rank.h"
#include "tests/independent/two_group_test.h"

/// Hodges-Lehmann estimate of the shift from group 1 to group 2, with its distribution-free
/// interval.
///
/// Formulas, limits, sources: docs/statistics/hodges_lehmann_groups.md.
///
/// One pass; the differences are not listed.
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
  NPARRank ranks;  // for their ties
  std::array<WeightedValues, 2> values;
  double estimate = 0.0;
  double lower = 0.0;
  double upper = 0.0;
};
