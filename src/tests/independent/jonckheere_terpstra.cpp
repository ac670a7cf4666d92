#include "catalogue/cards/jonckheere_terpstra.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
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
#include "tests/independent/jonckheere_comparisons.h"
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
          AddNormalStatistics(algorithm, {{"TestStatistic", overallCounts.Sums().statistic}},
                              overall);
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
    comparison.Want(ComparisonFromFlags(settings));

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
    compared.emplace(comparison.Kind(), std::move(sizes), overall.z);
  }

  void TakeAgain(RecordBatch& /*batch*/) override {
    if (!comparison.IsPending()) return;
    const GroupTally::Units& units = tally->GetUnits();
    for (std::size_t i = 0; i < units.count; ++i) {
      compared->MeetValue(units.values[i]);
      if (tally->PlaceOf(units.groups[i]) == GroupTally::kNoPlace) continue;
      compared->Add(units.Weight(i), PositionOf(units.groups[i]));
    }
  }

  void Finish() override {
    if (!comparison.IsPending()) return;
    if (comparison.WantsPairwise()) {
      comparison.RunPairwise(
          OrderedSamples(), orderedCodes.size(), [this](std::int32_t i, std::int32_t j) {
            return compared->PairOf(static_cast<std::size_t>(i), static_cast<std::size_t>(j));
          });
    } else {
      compared->StartRanges();
      comparison.RunStepwise(*this, OrderedSamples(), [this](const SampleRange& range) {
        return compared->RangeOf(range, comparison.DecidingLevel(range));
      });
    }
    compared.reset();
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

  /// The groups with data in their order, with their overall mean ranks.
  [[nodiscard]] std::vector<ComparedSample> OrderedSamples() {
    std::vector<ComparedSample> list;
    for (const std::int32_t code : orderedCodes) {
      list.push_back({code, MeanRankOf(code)});
    }
    return list;
  }

  [[nodiscard]] std::size_t PositionOf(std::int32_t code) const noexcept {
    return positionOfCode[static_cast<std::size_t>(code)];
  }
  [[nodiscard]] double SizeAt(std::size_t position) const {
    return static_cast<double>(tally->CountOf(orderedCodes[position]));
  }
  bool hasGroupRange = false;
  GroupTally::Key groups;
  GroupTally* tally = nullptr;
  std::vector<std::size_t> positionOfCode;  // in the hypothesised order of all categories
  JonckheereCounts overallCounts{0};
  NPARRank overallRanks;  // by category code; only for comparisons and extended figures
  NormalFigures overall;
  MultipleComparison comparison;
  std::vector<std::int32_t> orderedCodes;  // of the groups with data
  std::optional<JonckheereComparisons> compared;
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
