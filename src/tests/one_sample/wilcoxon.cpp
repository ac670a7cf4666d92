#include "catalogue/cards/wilcoxon.h"

#include <cstdint>
#include <vector>

#include "catalogue/run.h"
#include "kit/contract/test.h"
#include "kit/ranks/signed_ranks.h"
#include "kit/statistics/signed_rank.h"
#include "kit/summaries/field_quartiles.h"
#include "kit/summaries/histogram.h"
#include "kit/summaries/univariate.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/signed_rank_figures.h"

namespace card = catalogue::wilcoxon;

namespace {

/// Wilcoxon signed-rank test of one sample: is the median of a continuous field a given value, by
/// default the sample's own median?
///
/// Formulas, limits, sources: docs/statistics/wilcoxon.md.
///
/// One pass.
class NPARWilcoxonSR final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = figures.sig,
         .condition = {"O_WilcoxonSignedRanks_2",
                       {IndexText(variableIndex),
                        variableIndex < 0 ? kMissingText : NumberText(testValue)}}},
        [this](XMLElement& algorithm) {
          XMLElement* values =
              AddFigures(algorithm, "ContinuousDistribution",
                         {{"HypotheticalMedian", testValue}, {"ObservedMedian", observedMedian}});
          std::vector<HistogramBin> bins{{zeroDifferences, 0.0}};
          bins.insert(bins.end(), distribution.GetBins().begin(), distribution.GetBins().end());
          AddIntervalTable(*values, bins);
          AddNormalStatistics(algorithm, {{"TotalN", effectiveN}, {"TestStatistic", testStatistic}},
                              figures);
        });
  }

 protected:
  /// Error 220801: a test value is to be given and is not.
  void Prepare(const SettingsReader& settings) override {
    const std::int32_t variable = settings.Index("variableIndex");
    observedMedian = sharedData == nullptr ? QDMV::gMissingValue : sharedData->GetMedian(variable);
    testValue = observedMedian;
    if (settings.Get(card::kValueIsGiven) && !settings.Find(card::kTestValue.key, testValue)) {
      Fail(card::kNoTestValue);
    }
    if (HasFailed()) return;
    variableIndex = variable;
    Require({variable});
    if (wantsExtended) kept = FieldQuartiles({variable});
    if (sharedData != nullptr) {
      distribution.SetRange(sharedData->GetMinimum(variable), sharedData->GetMaximum(variable));
    }
  }

  [[nodiscard]] bool TakesCells() const override { return true; }

  void Take(RecordBatch& batch) override {
    const double* values = batch.Of(variableIndex);
    if (wantsExtended) kept.Take(batch, weight);
    distribution.AddColumn(values, batch.Size(), weight.TruncatedOf(batch));
    weight.UsePlain(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        const double w = weightAt(i);
        const double d = values[i] - testValue;
        if (d != 0.0) {
          ranks.Add(d, w);
          effectiveN += w;
        } else {
          zeroDifferences += TruncateToInt32(w);
        }
        totalWeight += w;
      }
    });
  }

  /// Error 220003: the weights sum to 0.
  void Compute() override {
    if (!(totalWeight > 0.0)) {
      Fail(catalogue::run::kNoData);
      return;
    }
    distribution.AddZeroBin();
    ranks.Rank();
    testStatistic = ranks.PositiveRankSum();
    figures = WilcoxonSignedRank(testStatistic, effectiveN, ranks.TieSum());
  }

  void Extend(ExtendedFigures& extended) override {
    const SignedRanks::Units& units = ranks.InUnits();
    extended.Add("PositiveN", units.positives);
    extended.Add("NegativeN", units.negatives);
    extended.Add("ZeroN", zeroDifferences);
    AddSignedRankFigures(extended, units, zeroDifferences);
    if (!kept.AreKept()) return;
    kept.Sort();
    AddPseudoMedian(extended, kept.Of(0), confidenceLevel);
  }

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

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const std::int32_t index =
      construction.LookUpVariable("variableName", card::kNoVariableName, card::kUnknownVariable);
  construction.RequireContinuous(index, card::kNotContinuous);
  const bool valueIsGiven = construction.ReadFlag(card::kValueIsGiven.key);
  construction.Put("variableIndex", index);
  construction.Put(card::kValueIsGiven.key, valueIsGiven);
  if (valueIsGiven && !construction.Copy(card::kTestValue.key))
    construction.Fail(card::kNoTestValue);
  if (construction.IsOK()) {
    planner.RegisterSortedVariable(index);
    planner.RegisterStatistic(index, Statistic::Median);
  }
  return construction.Make<NPARWilcoxonSR>();
}
