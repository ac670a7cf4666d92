#include "catalogue/cards/cochran_q.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <span>
#include <vector>

#include "catalogue/run.h"
#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_successes.h"
#include "kit/contract/test.h"
#include "kit/groups/success_categories.h"
#include "kit/order/wide_integer.h"
#include "kit/statistics/cochran_q.h"
#include "planning/comparison_construction.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "tests/related/success_values.h"

namespace card = catalogue::cochran_q;

namespace {

constexpr std::int32_t kPassesWithStepwise = 2;

/// Sum of w R (k - R) over the records, exact until it is rounded, of k fields with `successes`
/// together.
double WithinRecordsOf(std::size_t k, WideInteger successes, WideInteger sumRSquared) {
  return static_cast<double>(static_cast<WideInteger>(k) * successes - sumRSquared);
}

/// Cochran's Q test: do k related binary fields have the same proportion of successes?
///
/// Formulas, limits, sources: docs/statistics/cochran_q.md.
///
/// T_j is the weight of the successes of field j, R the number of successes of a record. Success is
/// what kit/groups/success_categories.h says. One pass, and one more for what a step-down needs.
class NPARCochransQ final : public NPARTest {
 public:
  /// Takes the settings over, not the variables.
  NPARCochransQ(QDSettings* settings, const QDVarList* variables)
      : NPARTest(settings),
        categories(variables, {.noSharedData = card::kNoSummaries,
                               .notTwoCategories = card::kNotTwoCategories,
                               .tooManyValues = card::kTooManyValues,
                               .noGivenSplit = card::kNoSplit}),
        comparison(card::kComparisonCodes, {.countsPairsOfGroups = true}) {}

  XMLElement* WriteResults() override {
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

 protected:
  /// Errors 221206, 221209, 221210, 221213, 221214: no split, or too few fields.
  void Prepare(const SettingsReader& settings) override {
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
    if (comparison.WantsStepwise()) ExpectPasses(kPassesWithStepwise);
    successCounts.assign(tested.size(), 0);
  }

  // Classes that are not given are learnt from the first record.
  [[nodiscard]] bool TakesCells() const override { return categories.AreGiven(); }

  void Take(RecordBatch& batch) override {
    if (batch.Size() == 0) return;
    categories.LearnFrom(batch.TruncatedOf(tested.front())[0]);
    successesOf.assign(batch.Size(), 0);
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t place = 0; place < tested.size(); ++place) {
        const std::int32_t* codes = batch.TruncatedOf(tested[place]);
        for (std::size_t i = 0; i < batch.Size(); ++i) {
          const std::int32_t success = categories.IsSuccess(place, codes[i]) ? 1 : 0;
          successesOf[i] += success;
          successCounts[place] += success * weightAt(i);
        }
      }
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        totalN += weightAt(i);
        sumRSquared += WideInteger{std::int64_t{successesOf[i]} * successesOf[i]} * weightAt(i);
      }
    });
  }

  /// Errors 220003: no success at all; 221210: all fields always, or never, a success.
  void Compute() override {
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
    const auto [q, sig] = CochranQ(successCounts, WithinRecords());
    overall = {q, sig};
    const bool goesOn = comparison.PassGate(*this, sigLevel, overall.sig, tested.size());
    if (goesOn && comparison.WantsPairwise()) ComparePairs();
    if (!comparison.IsPending()) ExpectPasses(0);
  }

  void StartPass() override {
    ordered = OrderedSamples();
    ranges = RangeSuccesses(ordered.size());
  }

  void TakeAgain(RecordBatch& batch) override {
    ranges.Start(batch.Size(), weight.TruncatedOf(batch));
    for (std::size_t place = 0; place < ordered.size(); ++place) {
      const std::int32_t* codes = batch.TruncatedOf(ordered[place].index);
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        // Looked up at the ordered place: hosts know the results so.
        if (categories.IsSuccess(place, codes[i])) ranges.PutSuccess(place, i);
      }
    }
    ranges.CountPairs();
  }

  void Finish() override {
    ranges.Finish();
    successesBefore.assign(1, 0);
    for (const ComparedSample& sample : ordered) {
      orderedCounts.push_back(CountOf(sample.index));
      successesBefore.push_back(successesBefore.back() + orderedCounts.back());
    }
    comparison.RunStepwise(*this, std::move(ordered),
                           [this](const SampleRange& range) { return ComputeRange(range); });
    ranges = RangeSuccesses();
  }

  void Extend(ExtendedFigures& figures) override {
    figures.Add("EtaSquaredQ", EtaSquaredQ(overall.testStatistic, static_cast<double>(totalN),
                                           static_cast<double>(tested.size())));
    figures.Add(SuccessTable(tested, successCounts, totalN, confidenceLevel));
  }

 private:
  /// Of all fields.
  [[nodiscard]] double WithinRecords() const {
    const WideInteger successes =
        std::accumulate(successCounts.begin(), successCounts.end(), WideInteger{0});
    return WithinRecordsOf(tested.size(), successes, sumRSquared);
  }

  [[nodiscard]] std::vector<ComparedSample> OrderedSamples() const {
    std::vector<ComparedSample> samples;
    for (const std::int32_t variable : tested) {
      samples.push_back(
          {variable, static_cast<double>(CountOf(variable)) / static_cast<double>(totalN)});
    }
    OrderByMeasure(samples);
    return samples;
  }

  [[nodiscard]] std::optional<RangeFigures> ComputeRange(const SampleRange& range) const {
    const WideInteger successes = successesBefore[range.last + 1] - successesBefore[range.first];
    const double within = WithinRecordsOf(range.Size(), successes, ranges.SumOfSquares(range));
    const auto k = static_cast<double>(range.Size());
    const double mean = static_cast<double>(successes) / k;
    const double enough = within / (k * (k - 1.0)) *
                          SurelySignificantChiSquare(comparison.DecidingLevel(range), range.Size());
    // Q is a sum of squares over `within`, which what stands at ordered places can make negative.
    if (within > 0.0 && TermsPass(range, enough, [&](std::size_t place) {
          const double deviation = static_cast<double>(orderedCounts[place]) - mean;
          return deviation * deviation;
        })) {
      return std::nullopt;
    }
    const auto counts = std::span(orderedCounts).subspan(range.first, range.Size());
    const auto [q, sig] = CochranQ(counts, within);
    return RangeFigures{q, sig};
  }

  void ComparePairs() {
    const auto n = static_cast<double>(totalN);
    const auto k = static_cast<double>(tested.size());
    const double standardError = CochranPairStandardError(WithinRecords(), n, k);
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

  /// T of a field by its index in the data. The table is read at that index as long as it has one
  /// there.
  [[nodiscard]] std::int64_t CountOf(std::int32_t variable) const {
    if (static_cast<std::size_t>(variable) < successCounts.size()) {
      return successCounts[static_cast<std::size_t>(variable)];
    }
    const auto place = std::find(tested.begin(), tested.end(), variable) - tested.begin();
    return successCounts[static_cast<std::size_t>(place)];
  }

  std::vector<std::int32_t> tested;
  SuccessCategories categories;
  MultipleComparison comparison;
  std::vector<std::int32_t> successesOf;  // the records in hand
  std::int64_t totalN = 0;
  std::vector<std::int64_t> successCounts;  // T by place
  WideInteger sumRSquared = 0;
  RangeFigures overall;
  // The fields as the step-down has them.
  std::vector<ComparedSample> ordered;
  std::vector<std::int64_t> orderedCounts;   // T
  std::vector<WideInteger> successesBefore;  // T of all earlier ones
  RangeSuccesses ranges;
};

}  // namespace

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
