#pragma once

#include <optional>

#include "kit/order/order_statistics.h"
#include "kit/ranks/walsh_interval.h"
#include "kit/statistics/sign_flip.h"
#include "tests/related/paired_test.h"

/// Hodges-Lehmann estimate of the median of the paired differences d = second - first, with its
/// distribution-free interval.
///
/// Formulas, limits, sources: docs/statistics/hodges_lehmann_pairs.md.
///
/// One pass; the Walsh averages are not listed.
class NPARHodgesLehmannPairs final : public NPARPairedTest {
 public:
  using NPARPairedTest::NPARPairedTest;

  XMLElement* WriteResults() override;

 protected:
  /// Reads "confidenceLevel", a probability. Error 222409: "variableIndex" does not hold two
  /// positions.
  void Prepare(const SettingsReader& settings) override;
  /// A record whose weight is below 1 has no averages.
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0.
  void Compute() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  WeightedValues values;  // d of each record
  double estimate = 0.0;
  double lower = 0.0;
  double upper = 0.0;
  std::optional<SignFlipDistribution> signedRanks;  // for extended figures of few units
  std::optional<WalshInterval> exact;
  double attainedLevel = 0.0;
};
