#include "tests/related/cochran_q.h"

#include <algorithm>
#include <numeric>

#include "catalogue/cards/cochran_q.h"
#include "catalogue/run.h"
#include "kit/statistics/cochran_q.h"
#include "planning/comparison_construction.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "tests/related/success_values.h"

namespace card = catalogue::cochran_q;

namespace {

/// Sum of w R (k - R) over the records, exact until it is rounded.
double WithinRecords(const std::vector<std::int64_t>& counts, WideInteger sumRSquared) {
  const WideInteger sum = std::accumulate(counts.begin(), counts.end(), WideInteger{0});
  return static_cast<double>(static_cast<WideInteger>(counts.size()) * sum - sumRSquared);
}

/// Over samples with successes T, where sum w R^2 counts these samples only.
RangeFigures ComputeQ(const std::vector<std::int64_t>& counts, WideInteger sumRSquared) {
  const auto [q, sig] = CochranQ(counts, WithinRecords(counts, sumRSquared));
  return {q, sig};
}

}  // namespace

NPARCochransQ::NPARCochransQ(QDSettings* settings, const QDVarList* variables)
    : NPARTest(settings),
      categories(variables, {.noSharedData = card::kNoSummaries,
                             .notTwoCategories = card::kNotTwoCategories,
                             .tooManyValues = card::kTooManyValues,
                             .noGivenSplit = card::kNoSplit}),
      comparison({.tooFewPairwise = card::kTooFewPairwise,
                  .tooFewStepwise = card::kTooFewStepwise,
                  .notSignificantPairwise = card::kNotSignificantPairwise,
                  .notSignificantStepwise = card::kNotSignificantStepwise}) {}

void NPARCochransQ::Prepare(const SettingsReader& settings) {
  tested = settings.List<std::int32_t>("variableIndex");
  categories.Read(settings, tested);
  if (HasFailed()) return;
  Require(tested);
  std::int32_t code = 0;
  if (sharedData != nullptr && tested.size() < 2) {
    code = card::kTooFewVariables;
  } else {
    code = categories.Check(sharedData);
  }
  if (code != 0) {
    Fail(code);
    return;
  }
  comparison.Want(ComparisonFromFlags(settings));
  if (comparison.WantsStepwise()) ExpectPasses(static_cast<std::int32_t>(tested.size()) - 1);
  successCounts.assign(tested.size(), 0);
}

void NPARCochransQ::CountSuccesses(RecordBatch& batch, const std::vector<std::int32_t>& fields) {
  const std::size_t count = batch.Size();
  successesBefore.assign((fields.size() + 1) * count, 0);
  std::int32_t* before = successesBefore.data();
  for (std::size_t place = 0; place < fields.size(); ++place, before += count) {
    const std::int32_t* codes = batch.TruncatedOf(fields[place]);
    for (std::size_t i = 0; i < count; ++i) {
      before[count + i] = before[i] + (categories.IsSuccess(place, codes[i]) ? 1 : 0);
    }
  }
}

void NPARCochransQ::Take(RecordBatch& batch) {
  if (batch.Size() == 0) return;
  categories.LearnFrom(batch.TruncatedOf(tested.front())[0]);
  CountSuccesses(batch, tested);
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t place = 0; place < tested.size(); ++place) {
      const std::int32_t* before = SuccessesBefore(place, batch);
      const std::int32_t* after = SuccessesBefore(place + 1, batch);
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        successCounts[place] += (after[i] - before[i]) * weightAt(i);
      }
    }
    const std::int32_t* all = SuccessesBefore(tested.size(), batch);
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      totalN += weightAt(i);
      sumRSquared += WideInteger{std::int64_t{all[i]} * all[i]} * weightAt(i);
    }
  });
}

void NPARCochransQ::Compute() {
  for (std::int64_t& count : successCounts) count = WeightOrNone(count);
  if (totalN <= 0 || std::ranges::all_of(successCounts, [](auto count) { return count == 0; })) {
    Fail(catalogue::run::kNoData);
    return;
  }
  const bool anyFailure =
      std::ranges::any_of(successCounts, [this](std::int64_t count) { return count != totalN; });
  if (!anyFailure) {
    Fail(card::kNoSplit);
    return;
  }
  overall = ComputeQ(successCounts, sumRSquared);
  const bool goesOn = comparison.PassGate(*this, sigLevel, overall.sig, tested.size());
  if (goesOn && comparison.WantsPairwise()) ComparePairs();
  if (!comparison.IsPending()) ExpectPasses(0);
}

void NPARCochransQ::ComparePairs() {
  const auto n = static_cast<double>(totalN);
  const auto k = static_cast<double>(tested.size());
  const double standardError =
      CochranPairStandardError(WithinRecords(successCounts, sumRSquared), n, k);
  std::vector<ComparedSample> samples;
  for (std::size_t i = 0; i < tested.size(); ++i) {
    samples.push_back({tested[i], static_cast<double>(successCounts[i])});
  }
  comparison.RunPairwise(std::move(samples), tested.size(), [&](std::int32_t i, std::int32_t j) {
    const std::int64_t difference =
        successCounts[static_cast<std::size_t>(i)] - successCounts[static_cast<std::size_t>(j)];
    return NormalPair(static_cast<double>(difference) / n, standardError);
  });
}

std::int64_t NPARCochransQ::CountOf(std::int32_t variable) const {
  if (static_cast<std::size_t>(variable) < successCounts.size()) {
    return successCounts[static_cast<std::size_t>(variable)];
  }
  const auto place = std::find(tested.begin(), tested.end(), variable) - tested.begin();
  return successCounts[static_cast<std::size_t>(place)];
}

std::vector<ComparedSample> NPARCochransQ::OrderedSamples() const {
  std::vector<ComparedSample> samples;
  for (const std::int32_t variable : tested) {
    samples.push_back(
        {variable, static_cast<double>(CountOf(variable)) / static_cast<double>(totalN)});
  }
  OrderByMeasure(samples);
  return samples;
}

void NPARCochransQ::StartPass() {
  if (Pass() == 1) {
    comparison.StartStepwise(OrderedSamples(), sigLevel);
    for (const ComparedSample& sample : comparison.GetSamples()) ordered.push_back(sample.index);
  }
  rangeSumRSquared.assign(comparison.GetWorkList().size(), 0);
}

void NPARCochransQ::TakeAgain(RecordBatch& batch) {
  // The success of an ordered sample is looked up at its ordered place: hosts know the results so.
  CountSuccesses(batch, ordered);
  const std::vector<SampleRange>& ranges = comparison.GetWorkList();
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t range = 0; range < ranges.size(); ++range) {
      const std::int32_t* before = SuccessesBefore(ranges[range].first, batch);
      const std::int32_t* after = SuccessesBefore(ranges[range].last + 1, batch);
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        const std::int64_t successes = after[i] - before[i];
        rangeSumRSquared[range] += WideInteger{successes * successes} * weightAt(i);
      }
    }
  });
}

void NPARCochransQ::Finish() {
  comparison.EndStepwisePass(*this, [this](std::size_t i) {
    const SampleRange& range = comparison.GetWorkList()[i];
    std::vector<std::int64_t> counts;
    for (std::size_t place = range.first; place <= range.last; ++place) {
      counts.push_back(CountOf(ordered[place]));
    }
    return ComputeQ(counts, rangeSumRSquared[i]);
  });
  ExpectPasses(comparison.IsPending() ? std::max(GetPassesLeft(), 1) : 0);
}

XMLElement* NPARCochransQ::WriteResults() {
  return WriteAlgorithm(
      *this,
      {.card = card::kCard,
       .decidingSig = overall.sig,
       .condition = {categories.AreGiven() ? "CategoryListsAreSpecified_R_CochransQ_1"
                                           : "DefaultAllDistinctValuesUsed_R_CochransQ_1",
                     {JoinIntegers(tested)}}},
      [this](XMLElement& algorithm) {
        XMLElement* shares = AddStructuredTable(algorithm, "TwoClassComparison");
        XMLElement* content = AddSimpleTable(*shares, "Content", JoinIntegers(tested), "0;1");
        for (const std::int64_t count : successCounts) {
          const std::int64_t percent =
              TruncateToInt64(static_cast<double>(count) * 100.0 / static_cast<double>(totalN));
          AddRow(*content, JoinIntegers(std::vector{percent, 100 - percent}));
        }
        AddFigures(algorithm, "StatisticsResult",
                   {{"TotalN", totalN},
                    {"TestStatistic", overall.testStatistic},
                    {"DegreeOfFreedom", tested.size() - 1},
                    {"AsymptoticSig2Tailed", overall.sig}});
        WriteComparison(algorithm, comparison);
      });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  VariableKind kind = VariableKind::None;
  const std::vector<std::int32_t> tested = construction.LookUpList(
      card::kNoVariableName, card::kUnknownVariable, [&](std::int32_t index) {
        const VariableKind found = construction.KindOf(index);
        if (kind == VariableKind::None) kind = found;
        if (!TestConstruction::IsCategorical(found) || found != kind) {
          construction.FailOver(card::kUnfitVariable, IntegerText(index));
        }
      });
  if (construction.IsOK() && tested.size() < 2) construction.Fail(card::kTooFewVariables);
  const bool areGiven =
      construction.IsOK() && construction.ReadText("classFormation") == "givenCategoryList";
  if (areGiven) {
    PutSuccessValues(construction, card::kSuccessCategories.key.c_str(),
                     *planner.GetVariables().GetVarAt(tested.front()), card::kNoSplit);
  }
  PutComparisonFlags(construction);
  construction.Put("variableIndex", tested);
  construction.Put("userSpecifyGroupList", areGiven);
  if (construction.IsOK()) {
    for (const std::int32_t index : tested) {
      planner.RegisterStatistic(index, Statistic::Frequencies);
    }
  }
  return construction.Make<NPARCochransQ>(&planner.GetVariables());
}
