#include "catalogue/cards/wilcoxon_pairs.h"

#include <cstdint>

#include "catalogue/run.h"
#include "kit/ranks/signed_ranks.h"
#include "kit/statistics/signed_rank.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/difference_table.h"
#include "report/elements.h"
#include "report/signed_rank_figures.h"
#include "tests/related/continuous_fields.h"
#include "tests/related/paired_test.h"

namespace card = catalogue::wilcoxon_pairs;

namespace {

/// Wilcoxon matched-pairs signed-rank test: are the differences d = second - first symmetric about
/// zero?
///
/// Formulas, limits, sources: docs/statistics/wilcoxon_pairs.md.
///
/// Pass 0 yields every figure; pass 1 only the histogram of d, whose range pass 0 found.
class NPARWilcoxonPairs final : public NPARPairedTest {
 public:
  using NPARPairedTest::NPARPairedTest;

  XMLElement* WriteResults() override {
    // Without a pair the indices stand as -1.
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = figures.sig,
         .condition = {"R_WilcoxonSignedRanks_2",
                       {IntegerText(differences.First()), IntegerText(differences.Second())}}},
        [this](XMLElement& algorithm) {
          AddDifferenceTable(algorithm, differences);
          AddNormalStatistics(
              algorithm,
              {{"TotalN", differences.TotalN()}, {"TestStatistic", ranks.PositiveRankSum()}},
              figures);
        });
  }

 protected:
  /// Error 221009: "variableIndex" does not hold two positions.
  void Prepare(const SettingsReader& settings) override {
    ExpectPasses(2);
    PreparePair(settings, card::kFieldsCodes.wrongCount);
  }

  void Take(RecordBatch& batch) override {
    const double* d = TakeDifferences(batch);
    const std::int32_t* weights = weight.TruncatedOf(batch);
    if (weights == nullptr) {
      ranks.AddUnits(d, batch.Size());
      return;
    }
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      if (d[i] > 0.0 || d[i] < 0.0) ranks.Add(d[i], static_cast<double>(weights[i]));
    }
  }

  /// Error 220003: the weights sum to 0.
  void Compute() override {
    if (differences.TotalN() == 0) {
      Fail(catalogue::run::kNoData);
      return;
    }
    ranks.Rank();
    const auto n = static_cast<double>(differences.PositiveCount() + differences.NegativeCount());
    figures = WilcoxonSignedRank(ranks.PositiveRankSum(), n, ranks.TieSum());
  }

  void Extend(ExtendedFigures& extended) override {
    AddSignedRankFigures(extended, ranks.InUnits(), differences.TieCount());
    const WeightedValues& values = SortDifferences();
    if (values.Size() > 0) AddPseudoMedian(extended, values, confidenceLevel);
    AddFields(extended);
  }

 private:
  SignedRanks ranks;
  NormalFigures figures;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  LookUpContinuousFields(construction, card::kFieldsCodes, FieldCount::Two);
  return construction.Make<NPARWilcoxonPairs>();
}
