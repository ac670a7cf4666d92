#pragma once

#include <cstdint>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/paired_differences.h"
#include "kit/ranks/signed_ranks.h"
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
class NPARWilcoxonPairs final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 221009: "variableIndex" does not hold two positions.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0.
  void Compute() override;
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;

 private:
  PairedDifferences differences;
  SignedRanks ranks;
  NormalFigures figures;
};
