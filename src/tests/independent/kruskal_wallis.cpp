#include "catalogue/cards/kruskal_wallis.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_counts.h"
#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/chi_square.h"
#include "kit/statistics/kruskal_wallis.h"
#include "kit/statistics/mann_whitney.h"
#include "planning/group_construction.h"
#include "report/algorithm_element.h"
#include "report/box_plot_table.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/extended_tables.h"

namespace card = catalogue::kruskal_wallis;

namespace {

constexpr StepwisePolicy kPolicy{.judgesOnAdjusted = false, .countsPairsOfGroups = true};
constexpr std::int32_t kPasses = 3;

/// Kruskal-Wallis one-way analysis of variance by ranks: do k independent samples come from the
/// same population?
///
/// Formulas, limits, sources: docs/statistics/kruskal_wallis.md.
///
/// A step-down orders the groups by their mean ranks, then medians; pairs are adjusted for all
/// categories of the group variable, also those without data.
/// Pass 0 ranks, pass 1 finds the hinges of the box plots, pass 2 their outliers and what the
/// ranges of a step-down come to. Records ascend by the test variable.
class NPARKruskalWOneWay final : public NPARTest {
 public:
  explicit NPARKruskalWOneWay(QDSettings* settings)
      : NPARTest(settings), comparison(card::kGroupsCodes.comparison, kPolicy) {}

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = overall.sig,
         .condition = {"DefaultAllDistinctValuesUsed_I_KruskalWallis_2",
                       {IndexText(groups.testVariable), IndexText(groups.groupVariable)}}},
        [this](XMLElement& algorithm) {
          AddFigures(algorithm, "StatisticsResult",
                     {{"TestStatistic", overall.statistic},
                      {"DegreeOfFreedom", tally->Groups().size() - 1},
                      {"AsymptoticSig2Tailed", overall.sig}});
          AddBoxPlotInfo(algorithm, *tally, groups.groupCount, meanRanks);
          WriteComparison(algorithm, comparison);
        });
  }

 protected:
  void Prepare(const SettingsReader& settings) override {
    groups.ReadVariables(settings);
    if (HasFailed()) return;
    ExpectPasses(kPasses);
    Require({groups.testVariable, groups.groupVariable});
    groups.groupCount = settings.Get("numberOfCategories", std::int32_t{0});
    tally = Share<GroupTally>(groups);
    comparison.Want(ComparisonFromWord(settings.Text("typeOfMultipleComparison", "none")));
  }

  void Take(RecordBatch& /*batch*/) override { tally->GetUnits().AddTo(overallRanks); }

  /// Error 222112: fewer than two groups with data. Help message 222111 with every result. Warnings
  /// 222118, 222116: fewer than 3 groups; 222119, 222117: not significant; 220013: a group alone.
  void Compute() override {
    if (tally->Groups().size() < 2) {
      Fail(card::kGroupsCodes.tooFewGroups);
      return;
    }
    overallRanks.CloseRun();
    std::vector<RankedGroup> groups;
    for (const std::int32_t code : tally->Groups()) {
      groups.push_back(
          {overallRanks.GroupEntry(code).rankSum, static_cast<double>(tally->CountOf(code))});
      meanRanks.push_back(groups.back().rankSum / groups.back().size);
    }
    overall = KruskalWallis(groups, overallRanks.TieSum());
    Help(card::kAsymptotic);
    if (comparison.PassGate(*this, sigLevel, overall.sig, groups.size()) &&
        comparison.WantsPairwise()) {
      RunPairwise();
    }
  }

  void StartPass() override {
    if (Pass() == 2 && comparison.WantsStepwise()) OrderGroups();
  }

  void TakeAgain(RecordBatch& /*batch*/) override {
    if (Pass() < 2 || !comparison.IsPending()) return;
    const GroupTally::Units& units = tally->GetUnits();
    for (std::size_t i = 0; i < units.count; ++i) {
      const std::size_t place = tally->PlaceOf(units.groups[i]);
      if (place == GroupTally::kNoPlace) continue;
      ranges.Add(units.values[i], units.Weight(i), positionOfPlace[place]);
    }
  }

  void Finish() override {
    if (Pass() == 2 && comparison.IsPending()) RunStepwise();
  }

  void Extend(ExtendedFigures& figures) override {
    const auto n = static_cast<double>(tally->TotalWeight());
    figures.Add("TotalN", tally->TotalWeight());
    if (UntiedSum(n, overallRanks.TieSum()) > 0.0) {
      const KruskalWallisEffects effects =
          EffectsOf(overall.statistic, static_cast<double>(tally->Groups().size()), n);
      figures.Add("EpsilonSquared", effects.epsilonSquared);
      figures.Add("EtaSquaredH", effects.etaSquared);
      if (effects.conover) {
        figures.Add("ConoverF", effects.conover->f);
        figures.Add("ConoverFDegreeOfFreedom1", effects.conover->df1);
        figures.Add("ConoverFDegreeOfFreedom2", effects.conover->df2);
        figures.Add("ConoverFSig", effects.conover->sig);
      }
    }
    figures.Add(GroupsTable(*tally, meanRanks));
    figures.Add(PairsTable());
  }

 private:
  void RunPairwise() {
    const double n = static_cast<double>(tally->TotalWeight());
    std::vector<ComparedSample> list;
    for (std::size_t place = 0; place < meanRanks.size(); ++place) {
      list.push_back({tally->Groups()[place], meanRanks[place]});
    }
    // Categories without data take no part, and yet they count in the adjustment.
    const auto adjustedFor = static_cast<std::size_t>(groups.groupCount);
    comparison.RunPairwise(std::move(list), adjustedFor, [&](std::int32_t i, std::int32_t j) {
      const auto a = static_cast<std::size_t>(i);
      const auto b = static_cast<std::size_t>(j);
      return NormalPair(
          meanRanks[a] - meanRanks[b],
          DunnStandardError(tally->CountAt(a), tally->CountAt(b), n, overallRanks.TieSum()));
    });
  }

  [[nodiscard]] FigureTable PairsTable() const {
    FigureTable table{"Pairs", {"Sample1", "Sample2", "EffectR"}, {}};
    for (const PairwiseComparison& pair : comparison.GetPairs()) {
      const std::int64_t units = tally->CountOf(pair.sample1) + tally->CountOf(pair.sample2);
      const double effect =
          pair.figures.standardTestStatistic / std::sqrt(static_cast<double>(units));
      table.AddRow("", {pair.sample1, pair.sample2, effect});
    }
    return table;
  }

  void OrderGroups() {
    orderedPlaces.resize(meanRanks.size());
    std::iota(orderedPlaces.begin(), orderedPlaces.end(), std::size_t{0});
    const auto key = [this](std::size_t place) {
      return std::pair(meanRanks[place], tally->BoxPlots()[place].Hinges().Median());
    };
    std::stable_sort(orderedPlaces.begin(), orderedPlaces.end(),
                     [&key](std::size_t a, std::size_t b) { return key(a) < key(b); });
    positionOfPlace.resize(orderedPlaces.size());
    for (std::size_t position = 0; position < orderedPlaces.size(); ++position) {
      positionOfPlace[orderedPlaces[position]] = position;
    }
    ranges = RangeCounts(orderedPlaces.size());
  }

  void RunStepwise() {
    ranges.Finish();
    std::vector<ComparedSample> ordered;
    for (const std::size_t place : orderedPlaces) {
      ordered.push_back({tally->Groups()[place], meanRanks[place]});
    }
    comparison.RunStepwise(*this, std::move(ordered),
                           [this](const SampleRange& range) { return ComputeRange(range); });
    ranges = RangeCounts(0);
  }

  /// H within a range of the groups in stepwise order; nothing where it is significant for sure.
  [[nodiscard]] std::optional<RangeFigures> ComputeRange(const SampleRange& range) {
    if (IsSurelyApart(range)) return std::nullopt;
    std::vector<RankedGroup> groups;
    groups.reserve(range.Size());
    for (std::size_t place = range.first; place <= range.last; ++place) {
      groups.push_back({ranges.RankSum(range, place), ranges.SizeOf(place)});
    }
    const auto [h, sig] = KruskalWallis(groups, ranges.Ties(range).Cubic());
    return RangeFigures{h, sig};
  }

  // H is a sum of positive terms, and no correction for ties makes it smaller.
  [[nodiscard]] bool IsSurelyApart(const SampleRange& range) const {
    const double n = ranges.SizeOf(range);
    const double enough = n * (n + 1.0) / 12.0 *
                          SurelySignificantChiSquare(comparison.DecidingLevel(range), range.Size());
    return TermsPass(range, enough, [&](std::size_t place) {
      const double size = ranges.SizeOf(place);
      const double deviation = ranges.RankSum(range, place) - size * (n + 1.0) * 0.5;
      return deviation * deviation / size;
    });
  }

  GroupTally::Key groups;
  GroupTally* tally = nullptr;
  NPARRank overallRanks;          // by category code
  std::vector<double> meanRanks;  // by place among the groups with data
  ChiSquareFigures overall;
  MultipleComparison comparison;
  std::vector<std::size_t> orderedPlaces;    // the groups in stepwise order
  std::vector<std::size_t> positionOfPlace;  // and back
  RangeCounts ranges{0};                     // of the groups in that order
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = LookUpSeveralGroups(construction, card::kGroupsCodes);
  if (!construction.Copy("typeOfMultipleComparison")) construction.Fail(card::kNoComparison);
  if (construction.IsOK() && construction.CategoriesOf(variables.group)->Size() < 2) {
    construction.Fail(card::kGroupsCodes.tooFewCategories);
  }
  return AddGroupTest<NPARKruskalWOneWay>(construction, variables);
}
