#pragma once

#include <cstdint>
#include <vector>

#include "kit/contract/column_test.h"
#include "kit/groups/paired_differences.h"
#include "kit/ranks/signed_ranks.h"
#include "kit/records/record_weight.h"
#include "kit/statistics/signed_rank.h"

/// Wilcoxon matched-pairs signed-rank test: are the differences d = second - first symmetric about
/// zero?
///
/// The n differences other than 0 (n a sum of weights) are ranked by size, equal sizes sharing the
/// mean of their ranks; figures as in kit/statistics/signed_rank.h. No continuity correction, no
/// exact value. Without any difference z and p are not a number. Pass 0 yields every figure; pass 1
/// only the histogram of d, whose range pass 0 found.
///
/// Source: F. Wilcoxon, Biometrics Bulletin 1 (1945), 80-83; ties as in M. Hollander and D. A.
/// Wolfe, Nonparametric Statistical Methods, 2nd ed., 1999, section 3.1.
class NPARWilcoxonPairs final : public NPARColumnTest {
 public:
  using NPARColumnTest::NPARColumnTest;

  void SetSharedData(UnivariateResults*) override {}  // reads no shared summaries
  /// Reads "variableIndex" (two positions in the record), "weightVariableIndex" (absent: each
  /// record weighs 1) and "sigLevel". Error 221009: not two positions.
  QDStatus BeginPass() override;
  QDStatus ProcessBatch(RecordBatch& batch) override;
  bool NeedsAnotherPass() override { return passIndex == 1; }
  /// Error 220003: the weights sum to 0.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  void Compute();

  RecordWeight weight;
  double sigLevel = 0.05;
  PairedDifferences differences;
  SignedRanks ranks;
  double positiveRankSum = 0.0;  // T+
  NormalFigures figures;
  int passIndex = 0;  // passes finished
};
