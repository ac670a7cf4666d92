#pragma once

#include <cstdint>

#include "kit/contract/test.h"
#include "kit/ranks/signed_ranks.h"
#include "kit/statistics/signed_rank.h"
#include "kit/summaries/histogram.h"
#include "kit/summaries/univariate.h"

/// Wilcoxon signed-rank test of one sample: is the median of a continuous field a given value, by
/// default the sample's own median?
///
/// The differences d = x - value that are not 0 are ranked by size, n is their weight; figures as
/// in kit/statistics/signed_rank.h. No continuity correction, no exact value. One pass.
///
/// Source: F. Wilcoxon, Biometrics Bulletin 1 (1945).
class NPARWilcoxonSR final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 220801: a test value is to be given and is not.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0.
  void Compute() override;

 private:
  std::int32_t variableIndex = -1;  // of a test that could be prepared
  double testValue = 0.0;
  double observedMedian = 0.0;
  Histogram distribution;
  double totalWeight = 0.0;
  std::int64_t zeroDifferences = 0;
  SignedRanks ranks;
  double effectiveN = 0.0;
  double testStatistic = 0.0;
  NormalFigures figures;
};
