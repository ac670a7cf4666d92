#pragma once

#include <cstdint>

#include "kit/contract/column_test.h"
#include "kit/ranks/signed_ranks.h"
#include "kit/records/record_weight.h"
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
class NPARWilcoxonSR final : public NPARRecordTest {
 public:
  using NPARRecordTest::NPARRecordTest;

  void SetSharedData(UnivariateResults* data) override;
  /// Error 220801: a test value is to be given and is not.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record& record) override;
  bool NeedsAnotherPass() override { return false; }
  /// Error 220003: the weights sum to 0.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  UnivariateResults* sharedData = nullptr;
  RecordWeight weight;
  std::int32_t variableIndex = -1;
  bool settingsRead = false;
  double sigLevel = 0.05;
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
