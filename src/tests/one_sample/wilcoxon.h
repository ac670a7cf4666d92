#pragma once

#include <cstdint>

#include "kit/contract/test.h"
#include "kit/ranks/signed_ranks.h"
#include "kit/statistics/signed_rank.h"
#include "kit/summaries/field_quartiles.h"
#include "kit/summaries/histogram.h"
#include "kit/summaries/univariate.h"

/// Wilcoxon signed-rank test of one sample: is the median of a continuous field a given value, by
/// default the sample's own median?
///
/// Formulas, limits, sources: docs/statistics/wilcoxon.md.
///
/// One pass.
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
  void Extend(ExtendedFigures& extended) override;

 private:
  std::int32_t variableIndex = -1;  // of a test that could be prepared
  double testValue = 0.0;
  double observedMedian = 0.0;
  Histogram distribution;
  double totalWeight = 0.0;
  std::int64_t zeroDifferences = 0;
  FieldQuartiles kept;  // the field's values, for extended figures
  SignedRanks ranks;
  double effectiveN = 0.0;
  double testStatistic = 0.0;
  NormalFigures figures;
};
