#include "catalogue/cards/jonckheere_terpstra.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "arithmetic/elementary.h"
#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_counts.h"
#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/jonckheere.h"
#include "kit/statistics/normal.h"
#include "planning/group_construction.h"
#include "report/algorithm_element.h"
#include "report/box_plot_table.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "tests/independent/jonckheere_statistic.h"

namespace card = catalogue::jonckheere_terpstra;

namespace {

constexpr std::int32_t kPasses = 3;

/// The codes of all categories, ascending: as listed for an ordinal variable, else by value.
std::vector<double> AscendingCodes(TestConstruction& construction, std::int32_t group) {
  const QDCategoryList& categories = *construction.CategoriesOf(group);
  std::vector<std::int32_t> codes(static_cast<std::size_t>(categories.Size()));
  std::iota(codes.begin(), codes.end(), 0);
  if (!construction.Planner().GetVarInfo().IsOrdinal(group)) {
    const bool isNumeric = construction.KindOf(group) == VariableKind::NumericCategory;
    std::stable_sort(codes.begin(), codes.end(), [&](std::int32_t a, std::int32_t b) {
      return isNumeric ? categories.GetNumber(a) < categories.GetNumber(b)
                       : categories.GetText(a) < categories.GetText(b);
    });
  }
  return {codes.begin(), codes.end()};
}

NormalFigures Standardize(const JonckheereSums& sums, const std::vector<double>& sizes) {
  return JonckheereTerpstra(sums.statistic, sums.ties.pairs, sums.ties.triples, sizes);
}

/// Jonckheere-Terpstra test for ordered alternatives: does a field rise or fall along the ordered
/// groups?
///
/// Formulas, limits, sources: docs/statistics/jonckheere_terpstra.md.
///
/// The groups are the categories with data, in the hypothesised order. The overall test sets the
/// direction in which pairs and ranges of groups are then judged, one-sided.
/// Pass 0 is the overall test, pass 1 counts what the comparisons need. Passes 1 and 2 find the box
/// plots. Records ascend by the test variable.
class NPARJonckTer final : public NPARTest {
 public:
  explicit NPARJonckTer(QDSettings* settings)
      : NPARTest(settings), comparison(card::kComparisonCodes, {.countsPairsOfGroups = true}) {}

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = overall.sig,
         .condition = {hasGroupRange
                           ? "CategoryListsAreSpecified_I_JonckheereTerpstra_2 "  // with a blank
                           : "DefaultAllDistinctValuesUsed_I_JonckheereTerpstra_2",
                       {IndexText(groups.testVariable), IndexText(groups.groupVariable)}}},
        [this](XMLElement& algorithm) {
          AddFigures(algorithm, "StatisticsResult",
                     {{"TestStatistic", overallCounts.Sums().statistic},
                      {"StandardError", overall.standardError},
                      {"StandardTestStatistic", overall.z},
                      {"AsymptoticSig2Tailed", overall.sig}});
          AddBoxPlotInfo(algorithm, *tally, static_cast<std::int64_t>(tally->Groups().size()));
          WriteComparison(algorithm, comparison);
        });
  }

 protected:
  void Prepare(const SettingsReader& settings) override {
    groups.ReadVariables(settings);
    if (HasFailed()) return;
    ExpectPasses(kPasses);
    Require({groups.testVariable, groups.groupVariable});
    hasGroupRange = settings.Flag("userSpecifyGroupRange");
    std::vector<std::int32_t> order;
    if (!settings.Find("groupOrder", order) && sharedData != nullptr) {
      const std::int32_t count = sharedData->GetCategoryCount(groups.groupVariable);
      order.resize(static_cast<std::size_t>(std::max(0, count)));
      std::iota(order.begin(), order.end(), 0);
    }
    if (settings.Text("orderOfHypotheses") == "orderLargestToSmallest") {
      std::reverse(order.begin(), order.end());
    }
    if (settings.Get("pairWise", 0.0) == 1.0) comparison.Want(ComparisonKind::Pairwise);
    if (settings.Get("stepWise", 0.0) == 1.0) comparison.Want(ComparisonKind::Stepwise);

    groups.groupCount = static_cast<std::int32_t>(order.size());
    tally = Share<GroupTally>(groups);
    positionOfCode.resize(order.size());
    for (std::size_t position = 0; position < order.size(); ++position) {
      positionOfCode[static_cast<std::size_t>(order[position])] = position;
    }
    overallCounts = JonckheereCounts(order.size());
  }

  void Take(RecordBatch& /*batch*/) override {
    const GroupTally::Units& units = tally->GetUnits();
    for (std::size_t i = 0; i < units.count; ++i) {
      overallCounts.Add(units.values[i], units.Weight(i), PositionOf(units.groups[i]));
    }
    if (comparison.IsPending() || wantsExtended) units.AddTo(overallRanks);
  }

  /// Error 222210: fewer than two groups with data. Warnings 222211, 222212: fewer than 3 groups;
  /// 222213, 222214: not significant; 220013: a group alone.
  void Compute() override {
    orderedCodes = tally->Groups();
    std::sort(orderedCodes.begin(), orderedCodes.end(), [this](std::int32_t a, std::int32_t b) {
      return positionOfCode[static_cast<std::size_t>(a)] <
             positionOfCode[static_cast<std::size_t>(b)];
    });
    if (orderedCodes.size() < 2) {
      Fail(card::kTooFewGroups);
      return;
    }
    std::vector<double> sizes;
    for (std::size_t position = 0; position < orderedCodes.size(); ++position) {
      positionOfCode[static_cast<std::size_t>(orderedCodes[position])] = position;
      sizes.push_back(SizeAt(position));
    }
    overallCounts.CloseRun();
    overall = Standardize(overallCounts.Sums(), sizes);
    overallRanks.CloseRun();
    if (!comparison.PassGate(*this, sigLevel, overall.sig, orderedCodes.size())) return;
    if (comparison.WantsPairwise()) {
      pairs.resize(PairIndex(0, orderedCodes.size()));
    } else {
      ranges = RangeCounts(orderedCodes.size());
    }
  }

  void TakeAgain(RecordBatch& /*batch*/) override {
    if (!comparison.IsPending()) return;
    const GroupTally::Units& units = tally->GetUnits();
    for (std::size_t i = 0; i < units.count; ++i) {
      // A value stands for its run, so that pairs and ranges have the ties of the whole.
      static_cast<void>(runs.Begins(units.values[i]));
      if (tally->PlaceOf(units.groups[i]) == GroupTally::kNoPlace) continue;
      Compare(runs.First(), units.Weight(i), PositionOf(units.groups[i]));
    }
  }

  void Finish() override {
    if (!comparison.IsPending()) return;
    if (comparison.WantsPairwise()) EndPairwise();
    if (comparison.WantsStepwise()) EndStepwise();
  }

  void Extend(ExtendedFigures& figures) override {
    const JonckheereSums& sums = overallCounts.Sums();
    const auto n = static_cast<double>(tally->TotalWeight());
    const double pairsOfUnits = PairsOfUnits();
    figures.Add("TotalN", tally->TotalWeight());
    if (overall.standardError > 0.0) {
      const NormalTails tails(overall.z);
      figures.Add("AsymptoticSig1TailedLess", tails.less);
      figures.Add("AsymptoticSig1TailedGreater", tails.greater);
    }
    if (!tally->HasNegativeWeight()) {
      if (sums.ties.pairs == DoubleDouble{} && pairsOfUnits <= kMostJonckheerePairs) {
        std::vector<std::int64_t> sizes;
        for (const std::int32_t code : orderedCodes) sizes.push_back(tally->CountOf(code));
        const ExactTails exact = JonckheereExact(TruncateToInt64(sums.statistic), sizes);
        figures.Add("ExactSig2Tailed", exact.twoSided);
        figures.Add("ExactSig1TailedLess", exact.less);
        figures.Add("ExactSig1TailedGreater", exact.greater);
      }
      const OrderedAssociation association =
          AssociationOf(sums.statistic, pairsOfUnits, n, sums.ties.pairs);
      figures.Add("KendallsTauB", association.kendallsTauB);
      figures.Add("SomersD", association.somersD);
    }
    std::vector<double> meanRanks;
    for (const std::int32_t code : tally->Groups()) meanRanks.push_back(MeanRankOf(code));
    figures.Add(GroupsTable(*tally, meanRanks));
  }

 private:
  /// Pairs of units of different groups.
  [[nodiscard]] double PairsOfUnits() const {
    double before = 0.0;
    double pairsOfUnits = 0.0;
    for (std::size_t position = 0; position < orderedCodes.size(); ++position) {
      pairsOfUnits += before * SizeAt(position);
      before += SizeAt(position);
    }
    return pairsOfUnits;
  }

  [[nodiscard]] double MeanRankOf(std::int32_t code) {
    return overallRanks.GroupEntry(code).rankSum / static_cast<double>(tally->CountOf(code));
  }

  /// In a pass of comparisons.
  void Compare(double x, std::int64_t weight, std::size_t position) {
    if (comparison.WantsStepwise()) {
      ranges.Add(x, weight, position);
      return;
    }
    for (std::size_t earlier = 0; earlier < position; ++earlier) {
      pairs[PairIndex(earlier, position)].Add(x, weight, true);
    }
    for (std::size_t later = position + 1; later < orderedCodes.size(); ++later) {
      pairs[PairIndex(position, later)].Add(x, weight, false);
    }
  }

  void EndPairwise() {
    const std::size_t groupCount = orderedCodes.size();
    comparison.RunPairwise(OrderedSamples(), groupCount, [this](std::int32_t i, std::int32_t j) {
      const auto earlier = static_cast<std::size_t>(i);
      const auto later = static_cast<std::size_t>(j);
      JonckheerePair& pair = pairs[PairIndex(earlier, later)];
      pair.CloseRun();
      const NormalFigures figures = Standardize(pair.Sums(), {SizeAt(earlier), SizeAt(later)});
      return PairFigures{pair.Sums().statistic, figures.standardError, figures.z,
                         OneTailedSig(figures.z)};
    });
    pairs = {};
  }

  void EndStepwise() {
    ranges.Finish();
    sizesBefore.assign(1, {});
    for (std::size_t position = 0; position < orderedCodes.size(); ++position) {
      sizesBefore.push_back(sizesBefore.back().With(SizeAt(position)));
    }
    comparison.RunStepwise(*this, OrderedSamples(),
                           [this](const SampleRange& range) { return ComputeRange(range); });
    ranges = RangeCounts(0);
  }

  [[nodiscard]] std::optional<RangeFigures> ComputeRange(const SampleRange& range) {
    const double statistic = ranges.OrderedPairs(range);
    if (IsSurelyApart(range, statistic)) return std::nullopt;
    std::vector<double> sizes;
    sizes.reserve(range.Size());
    for (std::size_t p = range.first; p <= range.last; ++p) sizes.push_back(SizeAt(p));
    return RangeFigures{statistic,
                        OneTailedSig(Standardize({statistic, ranges.Ties(range)}, sizes).z)};
  }

  // No ties make the variance larger, and a tail beyond z is at most exp(-z^2 / 2) / 2.
  [[nodiscard]] bool IsSurelyApart(const SampleRange& range, double statistic) const {
    const SizeSums& all = sizesBefore[range.last + 1];
    const SizeSums& earlier = sizesBefore[range.first];
    const double n = all.sum - earlier.sum;
    const double deviation = statistic - (n * n - (all.squares - earlier.squares)) / 4.0;
    const double variance = (n * n * (2.0 * n + 3.0) - (all.cubic - earlier.cubic)) / 72.0;
    const double enough = variance * -2.0 * arithmetic::Log(2.0 * comparison.DecidingLevel(range));
    return (deviation < 0.0) == (overall.z < 0.0) &&
           deviation * deviation > std::max(enough, variance);
  }

  /// The groups with data in their order, with their overall mean ranks.
  [[nodiscard]] std::vector<ComparedSample> OrderedSamples() {
    std::vector<ComparedSample> list;
    for (const std::int32_t code : orderedCodes) {
      list.push_back({code, MeanRankOf(code)});
    }
    return list;
  }

  /// One-sided, in the direction of the overall test.
  [[nodiscard]] double OneTailedSig(double z) const {
    const bool wasBelow = overall.z < 0.0;
    const double size = std::fabs(z);
    return (z < 0.0) == wasBelow ? QDDistFun::SfStdNorm(size) : QDDistFun::CdfStdNorm(size);
  }

  [[nodiscard]] std::size_t PositionOf(std::int32_t code) const noexcept {
    return positionOfCode[static_cast<std::size_t>(code)];
  }
  [[nodiscard]] double SizeAt(std::size_t position) const {
    return static_cast<double>(tally->CountOf(orderedCodes[position]));
  }
  [[nodiscard]] std::size_t PairIndex(std::size_t earlier, std::size_t later) const noexcept {
    return later * (later - 1) / 2 + earlier;
  }

  /// Sums of the sizes of groups and of what a variance has of them.
  struct SizeSums {
    double sum = 0.0;
    double squares = 0.0;
    double cubic = 0.0;  // n^2 (2n + 3)
    [[nodiscard]] SizeSums With(double n) const noexcept {
      return {sum + n, squares + n * n, cubic + n * n * (2.0 * n + 3.0)};
    }
  };

  bool hasGroupRange = false;
  GroupTally::Key groups;
  GroupTally* tally = nullptr;
  std::vector<std::size_t> positionOfCode;  // in the hypothesised order of all categories
  JonckheereCounts overallCounts{0};
  NPARRank overallRanks;  // by category code; only for comparisons and extended figures
  NormalFigures overall;
  MultipleComparison comparison;
  std::vector<std::int32_t> orderedCodes;  // of the groups with data
  TieRuns runs;                            // of all values, for the comparisons
  std::vector<JonckheerePair> pairs;       // all pairs of the groups with data
  RangeCounts ranges{0};                   // all ranges of them
  std::vector<SizeSums> sizesBefore;       // by position: of all earlier groups
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = construction.LookUpTestAndGroup(
      {card::kNoVariableName, card::kNoGroup, card::kUnknownVariable, card::kNotContinuous,
       card::kNotCategorical});
  if (construction.IsOK()) {
    construction.PutTestAndGroup(variables);
    RegisterTestAndGroup(construction, variables);
    construction.Put("groupOrder", AscendingCodes(construction, variables.group));
    construction.Put("orderOfHypotheses",
                     construction.ReadText("orderOfHypotheses", "orderSmallestToLargest"));
    construction.Put("userSpecifyGroupRange", false);  // all groups take part
    const std::string word = construction.ReadText("typeOfMultipleComparison", "none");
    construction.Put("pairWise", word == "pairWise");
    construction.Put("stepWise", word == "stepWise");
  }
  return AddGroupTest<NPARJonckTer>(construction, variables);
}
