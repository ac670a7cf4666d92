#pragma once

#include <cstdint>

#include "kit/ranks/signed_ranks.h"
#include "kit/statistics/signed_rank.h"
#include "tests/related/paired_test.h"

/// Wilcoxon matched-pairs signed-rank test: are the differences d = second - first symmetric about
/// zero?
///
/// Formulas, limits, sources: docs/statistics/wilcoxon_pairs.md.
///
/// Pass 0 yields every figure; pass 1 only the histogram of d, whose range pass 0 found.
class NPARWilcoxonPairs final : public NPARPairedTest {
 public:
  using NPARPairedTest::NPARPairedTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 221009: "variableIndex" does not hold two positions.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0.
  void Compute() override;
  void Extend(ExtendedFigures& extended) override;

 private:
  SignedRanks ranks;
  NormalFigures figures;
};
