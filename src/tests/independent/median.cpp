#include "catalogue/cards/median.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/run.h"
#include "kit/comparisons/multiple_comparisons.h"
#include "kit/contract/test.h"
#include "kit/groups/group_median_limits.h"
#include "kit/groups/group_tally.h"
#include "kit/statistics/chi_square.h"
#include "kit/statistics/freeman_halton.h"
#include "kit/statistics/two_row_table.h"
#include "planning/group_construction.h"
#include "report/algorithm_element.h"
#include "report/box_plot_table.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "tests/independent/median_comparisons.h"

namespace card = catalogue::median;

namespace {

constexpr std::int32_t kPasses = 3;

/// Median test: do k independent samples come from populations of one median?
///
/// Formulas, limits, sources: docs/statistics/median.md.
///
/// L_j is the weight of group j at or below the median, which is that of all records together, or a
/// given one.
/// Pass 0 counts the groups, pass 1 finds the median and the cells, pass 2 keeps the sorted groups
/// for a comparison. Passes 1 and 2 find the box plots too. Records ascend by the test variable;
/// but for a comparison an excerpt of that order will do.
class NPARKSMedian final : public NPARTest {
 public:
  explicit NPARKSMedian(QDSettings* settings)
      : NPARTest(settings), comparison(card::kGroupsCodes.comparison) {}

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = DecidingSig(),
         .condition = {"DefaultAllDistinctValuesUsed_I_Median_2",
                       {IndexText(groups.testVariable), IndexText(groups.groupVariable)}}},
        [this](XMLElement& algorithm) {
          WriteCells(algorithm);
          XMLElement* statistics = AddFigures(algorithm, "StatisticsResult",
                                              {{"TotalN", tally->TotalWeight()},
                                               {"Median", *median},
                                               {"TestStatistic", overall.statistic},
                                               {"DegreeOfFreedom", lowerCounts.size() - 1},
                                               {"AsymptoticSig2Tailed", overall.sig}});
          if (lowerCounts.size() == 2) {
            AddAttributeRow(*statistics, "YatesTestStatistic", yates.statistic);
            AddAttributeRow(*statistics, "YatesAsymptoticSig2Tailed", yates.sig);
            if (exactSig) AddAttributeRow(*statistics, "ExactSig2Tailed", *exactSig);
          }
          AddBoxPlotInfo(algorithm, *tally, groups.groupCount);
          WriteComparison(algorithm, comparison);
        });
  }

  [[nodiscard]] bool TakesExcerpts() const override {
    return Pass() < 2 || !comparison.IsPending();
  }
  void WantPlaces(OrderExcerpt& wanted) const override {
    tally->WantPlaces(wanted);
    if (Pass() != 1) return;
    if (median) {
      wanted.places.values.push_back(*median);
    } else {
      wanted.places.ranks.insert(wanted.places.ranks.end(), {LowerMiddle(), UpperMiddle()});
    }
    if (wantsExtended) medianLimits.WantRanks(wanted.places);
  }

 protected:
  void Prepare(const SettingsReader& settings) override {
    groups.ReadVariables(settings);
    if (HasFailed()) return;
    ExpectPasses(kPasses);
    Require({groups.testVariable, groups.groupVariable});
    double value = 0.0;
    if (settings.Flag(card::kMedianIsGiven.key) && settings.Find(card::kMedian.key, value)) {
      givenMedian = value;
    }
    groups.groupCount = settings.Get("numberOfCategories", std::int32_t{0});
    tally = Share<GroupTally>(groups);
    comparison.Want(ComparisonFromWord(settings.Text("typeOfMultipleComparison", "none")));
  }

  /// Errors 220003: no weight; 222312: fewer than two groups with data; 222313: no value below, or
  /// none above the median. Help message 222311: cells with E below 5, their percentage, the
  /// smallest E. Warnings 222318, 222316: fewer than 3 groups; 222319, 222317: not significant;
  /// 220013: a group alone.
  void Compute() override {
    if (tally->TotalWeight() == 0) {
      Fail(catalogue::run::kNoData);
    } else if (tally->Groups().size() < 2) {
      Fail(card::kGroupsCodes.tooFewGroups);
    }
    lowerCounts.assign(tally->Groups().size(), 0);
    median = givenMedian;
    if (wantsExtended) medianLimits = GroupMedianLimits(*tally, confidenceLevel);
  }

  void TakeAgain(RecordBatch& /*batch*/) override {
    const GroupTally::Units& units = tally->GetUnits();
    const bool countsCells = Pass() == 1;
    if (countsCells && wantsExtended) medianLimits.Take(units);
    if (countsCells ? PassOver(units) : !comparison.IsPending()) return;
    for (std::size_t i = 0; i < units.count; ++i) {
      const std::size_t place = tally->PlaceOf(units.groups[i]);
      if (place == GroupTally::kNoPlace) continue;
      if (countsCells) {
        CountCell(units.values[i], units.Weight(i), place);
      } else {
        comparisons->Add(units.values[i], units.Weight(i), place);
      }
    }
  }

  void Finish() override {
    if (Pass() == 1) EndOverall();
    if (Pass() == 2 && comparison.IsPending()) Compare();
  }

  void Extend(ExtendedFigures& figures) override {
    if (!tally->HasNegativeWeight()) {
      std::vector<GroupInRows> rows;
      for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
        rows.push_back({lowerCounts[place], tally->CountOf(tally->Groups()[place])});
      }
      figures.Add("FisherFreemanHaltonSig", FreemanHaltonSig(rows));
    }
    figures.Add(ExtendedGroups());
  }

 private:
  /// The ranks of the two units whose mean the median is; one for an odd number.
  [[nodiscard]] std::int64_t LowerMiddle() const {
    return tally->TotalWeight() / 2 + tally->TotalWeight() % 2;
  }
  [[nodiscard]] std::int64_t UpperMiddle() const { return tally->TotalWeight() / 2 + 1; }
  /// Counts records that are all on one side of the median; false, and nothing done, for others.
  bool PassOver(const GroupTally::Units& units) {
    if (units.count == 0 || (median && units.values[0] > *median)) return true;
    if (units.weights != nullptr || units.shares == nullptr) return false;
    const double last = units.values[units.count - 1];
    if (median) {
      if (!(last <= *median)) return false;
    } else {
      const std::int64_t after = cumulative + static_cast<std::int64_t>(units.count);
      if (after > tally->TotalWeight() / 2) return false;
      cumulative = after;
      lowerMiddle = last;
    }
    for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
      lowerCounts[place] += units.shares[static_cast<std::size_t>(tally->Groups()[place])].weight;
    }
    return true;
  }

  /// Counts a record in its cell and finds the median on the way.
  void CountCell(double x, std::int64_t weight, std::size_t place) {
    if (!median) {
      // Values ascend, so all before the upper middle unit are at or below the median.
      const std::int64_t before = cumulative;
      cumulative += weight;
      if (before < LowerMiddle()) lowerMiddle = x;
      if (cumulative >= UpperMiddle()) median = std::midpoint(lowerMiddle, x);
    }
    if (!median || x <= *median) lowerCounts[place] += weight;
  }

  void EndOverall() {
    TwoRowTable table;
    for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
      table.Add(lowerCounts[place], tally->CountOf(tally->Groups()[place]));
    }
    if (table.IsOneSided()) {
      Fail(card::kOneSided);
      return;
    }
    overall = table.ChiSquare();
    if (lowerCounts.size() == 2) {
      yates = table.YatesChiSquare();
      if (table.Total() <= TwoRowTable::kExactLimit) exactSig = table.FisherSig();
    }
    const ExpectedCounts expected = table.Expected();
    Help(card::kExpectedCounts,
         {IntegerText(expected.lowCells), NumberText(expected.LowPercentage()),
          NumberText(expected.smallest)});
    if (comparison.PassGate(*this, sigLevel, DecidingSig(), lowerCounts.size())) {
      comparisons.emplace(lowerCounts.size(), givenMedian);
    }
  }

  void Compare() {
    std::vector<ComparedSample> list;
    for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
      list.push_back({tally->Groups()[place], comparisons->MedianOfGroup(place)});
    }
    if (comparison.WantsPairwise()) {
      comparison.RunPairwise(
          std::move(list), lowerCounts.size(), [&](std::int32_t i, std::int32_t j) {
            const RangeFigures figures =
                comparisons->PairOf(static_cast<std::size_t>(i), static_cast<std::size_t>(j));
            return PairFigures{figures.testStatistic, QDMV::gMissingValue, QDMV::gMissingValue,
                               figures.sig};
          });
      return;
    }
    OrderByMeasure(list);
    std::vector<std::size_t> places;
    places.reserve(list.size());
    for (const ComparedSample& sample : list) places.push_back(tally->PlaceOf(sample.index));
    comparisons->StartRanges(places);
    comparison.RunStepwise(*this, std::move(list), [&](const SampleRange& range) {
      return comparisons->RangeOf(range, comparison.DecidingLevel(range));
    });
  }

  void WriteCells(XMLElement& algorithm) const {
    XMLElement* table = AddStructuredTable(algorithm, "TwoClassComparison");
    XMLElement* content =
        AddSimpleTable(*table, "Content", JoinIntegers(tally->Groups()), "lessOrEqual;greater");
    for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
      const std::int64_t greater = tally->CountOf(tally->Groups()[place]) - lowerCounts[place];
      AddRow(*content, IntegerText(lowerCounts[place]) + ';' + IntegerText(greater));
    }
  }

  /// With the limits of the medians.
  [[nodiscard]] FigureTable ExtendedGroups() const {
    FigureTable table = GroupsTable(*tally);
    table.columns.insert(table.columns.end(),
                         {"MedianLower", "MedianUpper", "MedianAttainedLevel"});
    for (std::size_t place = 0; place < table.rows.size(); ++place) {
      std::vector<FigureValue>& cells = table.rows[place].cells;
      if (const auto& limits = medianLimits.Of(place)) {
        cells.insert(cells.end(), {limits->lower, limits->upper, limits->ranks.attainedLevel});
      } else {
        cells.resize(table.columns.size());
      }
    }
    return table;
  }

  /// Decides: the exact p where there is one.
  [[nodiscard]] double DecidingSig() const { return exactSig.value_or(overall.sig); }

  GroupTally::Key groups;
  GroupTally* tally = nullptr;
  std::optional<double> givenMedian;
  std::optional<double> median;
  std::int64_t cumulative = 0;
  double lowerMiddle = 0.0;
  std::vector<std::int64_t> lowerCounts;  // L_j, by place
  ChiSquareFigures overall;
  ChiSquareFigures yates;  // two groups only
  std::optional<double> exactSig;
  MultipleComparison comparison;
  std::optional<MedianComparisons> comparisons;  // of groups by place
  GroupMedianLimits medianLimits;                // only for the extended figures
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = LookUpSeveralGroups(construction, card::kGroupsCodes);
  if (construction.IsOK() && construction.CategoriesOf(variables.group)->Size() < 2) {
    construction.Fail(card::kGroupsCodes.tooFewCategories);
  }
  construction.Put("typeOfMultipleComparison",
                   construction.ReadText("typeOfMultipleComparison", "none"));
  if (construction.ReadFlag("userSpecifyMedian")) {
    double given = 0.0;
    if (!construction.Read("median", given)) construction.Fail(card::kNoMedian);
    construction.Put("userSpecifyMedian", true);
    construction.Put("median", given);
  }
  return AddGroupTest<NPARKSMedian>(construction, variables);
}
