#include "tests/one_sample/wilcoxon.h"

#include <vector>

#include "catalogue/cards/wilcoxon.h"
#include "catalogue/run.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/signed_rank_figures.h"

namespace card = catalogue::wilcoxon;

void NPARWilcoxonSR::Prepare(const SettingsReader& settings) {
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

void NPARWilcoxonSR::Take(RecordBatch& batch) {
  const double* values = batch.Of(variableIndex);
  if (wantsExtended) kept.Take(batch, weight);
  const double* weights = weight.Index() < 0 ? nullptr : batch.Of(weight.Index());
  distribution.AddColumn(values, batch.Size(), weight.TruncatedOf(batch));
  for (std::size_t i = 0; i < batch.Size(); ++i) {
    const double w = weights == nullptr ? 1.0 : weights[i];
    const double d = values[i] - testValue;
    if (d != 0.0) {
      ranks.Add(d, w);
      effectiveN += w;
    } else {
      zeroDifferences += TruncateToInt32(w);
    }
    totalWeight += w;
  }
}

void NPARWilcoxonSR::Compute() {
  if (!(totalWeight > 0.0)) {
    Fail(catalogue::run::kNoData);
    return;
  }
  distribution.AddZeroBin();
  ranks.Rank();
  testStatistic = ranks.PositiveRankSum();
  figures = WilcoxonSignedRank(testStatistic, effectiveN, ranks.TieSum());
}

void NPARWilcoxonSR::Extend(ExtendedFigures& extended) {
  const SignedRanks::Units& units = ranks.InUnits();
  extended.Add("PositiveN", units.positives);
  extended.Add("NegativeN", units.negatives);
  extended.Add("ZeroN", zeroDifferences);
  AddSignedRankFigures(extended, units, zeroDifferences);
  if (!kept.AreKept()) return;
  kept.Sort();
  AddPseudoMedian(extended, kept.Of(0), confidenceLevel);
}

XMLElement* NPARWilcoxonSR::WriteResults() {
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
        AddFigures(algorithm, "StatisticsResult",
                   {{"TotalN", effectiveN},
                    {"TestStatistic", testStatistic},
                    {"StandardError", figures.standardError},
                    {"StandardTestStatistic", figures.z},
                    {"AsymptoticSig2Tailed", figures.sig}});
      });
}

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
