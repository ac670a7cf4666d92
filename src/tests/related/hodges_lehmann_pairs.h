#pragma once

#include <cstdint>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/paired_differences.h"
#include "kit/order/order_statistics.h"

/// Hodges-Lehmann estimate of the median of the paired differences d = second - first, with its
/// distribution-free interval.
///
/// The n differences (n a sum of weights) have T = n (n + 1) / 2 Walsh averages (d_i + d_j) / 2,
/// i <= j. The estimate is their median; the limits are those that kit/statistics/interval_ranks.h
/// gives for the signed-rank sum (kit/statistics/signed_rank.h), the first and the last at the
/// most. Zero differences take part: where there are any, every d is raised above zero before, and
/// the results lowered by as much. One pass; the averages are not listed.
///
/// Source: J. L. Hodges and E. L. Lehmann, Ann. Math. Stat. 34 (1963), 598-611; J. W. Tukey (1949)
/// for the interval, as in M. Hollander and D. A. Wolfe, Nonparametric Statistical Methods, 2nd
/// ed., 1999, sections 3.2 and 3.3.
class NPARHodgesLehmannPairs final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  /// Reads "confidenceLevel", a probability. Error 222409: "variableIndex" does not hold two
  /// positions.
  void Prepare(const SettingsReader& settings) override;
  /// A record whose weight is below 1 has no averages.
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0.
  void Compute() override;

 private:
  double confidenceLevel = 0.95;
  PairedDifferences differences;
  WeightedValues values;  // d of each record
  double estimate = 0.0;
  double lower = 0.0;
  double upper = 0.0;
};
