#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "kit/order/order_statistics.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/interval_ranks.h"
#include "kit/summaries/quartiles.h"
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
  void Extend(ExtendedFigures& figures) override;

 private:
  /// What the exact distribution without ties says of intervals.
  struct Exact {
    double attainedLevel = 0.0;  // of the asymptotic limits
    bool isAttainable = false;
    double lower = 0.0;
    double upper = 0.0;
    double ownLevel = 0.0;
  };
  [[nodiscard]] std::optional<Exact> FindExact(const GroupDifferences& differences,
                                               const IntervalRanks& limits) const;

  NPARRank ranks;  // for their ties
  std::array<WeightedValues, 2> values;
  double estimate = 0.0;
  double lower = 0.0;
  double upper = 0.0;
  // Only for the extended figures.
  std::optional<Exact> exact;
  std::array<Quartiles, 2> quartiles;
};
