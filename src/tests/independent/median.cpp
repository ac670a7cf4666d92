#include "tests/independent/median.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <string>
#include <utility>

#include "catalogue/cards/median.h"
#include "catalogue/run.h"
#include "planning/group_construction.h"
#include "report/algorithm_element.h"
#include "report/box_plot_table.h"
#include "report/comparison_tables.h"
#include "report/elements.h"

namespace card = catalogue::median;

namespace {

constexpr ComparisonCodes kComparisonCodes{.tooFewPairwise = card::kTooFewPairwise,
                                           .tooFewStepwise = card::kTooFewStepwise,
                                           .notSignificantPairwise = card::kNotSignificantPairwise,
                                           .notSignificantStepwise = card::kNotSignificantStepwise};

constexpr std::int32_t kPasses = 3;
constexpr double kLowExpectedCount = 5.0;
/// Largest N with Fisher's exact p.
constexpr double kExactLimit = 30.0;
/// Tables as likely as the observed one but for rounding count as such.
constexpr double kProbabilityTolerance = 1e-7;

/// The table of 2 k cells.
struct Cells {
  std::vector<double> lower;  // L_j
  std::vector<double> sizes;  // n_j
  double lowerSum = 0.0;
  double total = 0.0;

  void Add(std::int64_t lowerCount, std::int64_t size) {
    lower.push_back(static_cast<double>(lowerCount));
    sizes.push_back(static_cast<double>(size));
    lowerSum += lower.back();
    total += sizes.back();
  }
  [[nodiscard]] bool IsOneSided() const noexcept { return lowerSum == 0.0 || lowerSum == total; }
  /// Expected counts of a group below and above.
  [[nodiscard]] std::pair<double, double> Expected(std::size_t j) const {
    return {lowerSum * sizes[j] / total, (total - lowerSum) * sizes[j] / total};
  }
};

RangeFigures ChiSquareOf(const Cells& cells) {
  if (cells.IsOneSided()) return {0.0, 1.0};
  double x = 0.0;
  for (std::size_t j = 0; j < cells.sizes.size(); ++j) {
    const auto [below, above] = cells.Expected(j);
    const double lowerDeviation = cells.lower[j] - below;
    const double greaterDeviation = cells.sizes[j] - cells.lower[j] - above;
    x += lowerDeviation * lowerDeviation / below + greaterDeviation * greaterDeviation / above;
  }
  return {x, QDDistFun::SfChi(x, static_cast<double>(cells.sizes.size()) - 1.0)};
}

/// C(n, k), exact for n up to 30.
double Binomial(std::int32_t n, std::int32_t k) {
  double product = 1.0;
  for (std::int32_t i = 1; i <= k; ++i) product = product * (n - k + i) / i;
  return product;
}

/// R. A. Fisher's two-sided p of a 2 x 2 table: the probability of all tables with its margins that
/// are not likelier than it.
double FisherSig(const Cells& cells) {
  const std::int32_t first = TruncateToInt32(cells.sizes[0]);
  const std::int32_t second = TruncateToInt32(cells.sizes[1]);
  const std::int32_t below = TruncateToInt32(cells.lowerSum);
  const auto waysOf = [&](std::int32_t lower) {
    return Binomial(first, lower) * Binomial(second, below - lower);
  };
  const double observed = waysOf(TruncateToInt32(cells.lower[0]));
  double extreme = 0.0;
  for (std::int32_t lower = std::max(0, below - second); lower <= std::min(below, first); ++lower) {
    const double ways = waysOf(lower);
    if (ways <= observed * (1.0 + kProbabilityTolerance)) extreme += ways;
  }
  return std::min(1.0, extreme / Binomial(first + second, below));
}

}  // namespace

NPARKSMedian::NPARKSMedian(QDSettings* settings)
    : NPARTest(settings), comparison(kComparisonCodes) {}

void NPARKSMedian::Prepare(const SettingsReader& settings) {
  groups.ReadVariables(settings);
  if (HasFailed()) return;
  ExpectPasses(kPasses);
  double value = 0.0;
  if (settings.Flag(card::kMedianIsGiven.key) && settings.Find(card::kMedian.key, value)) {
    givenMedian = value;
  }
  groups.groupCount = settings.Get("numberOfCategories", std::int32_t{0});
  tally = Share<GroupTally>(groups);
  comparison.Want(ComparisonFromWord(settings.Text("typeOfMultipleComparison", "none")));
}

void NPARKSMedian::Take(RecordBatch& /*batch*/) {}  // the tally counts the groups

void NPARKSMedian::TakeAgain(RecordBatch& /*batch*/) {
  const GroupTally::Units& units = tally->GetUnits();
  const bool countsCells = Pass() == 1;
  if (countsCells ? PassOver(units) : !comparison.IsPending()) return;
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = tally->PlaceOf(units.groups[i]);
    if (place == GroupTally::kNoPlace) continue;
    if (countsCells) {
      CountCell(units.values[i], units.Weight(i), place);
    } else {
      sortedGroups[place].Add(units.values[i], units.Weight(i));
    }
  }
}

bool NPARKSMedian::PassOver(const GroupTally::Units& units) {
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

void NPARKSMedian::CountCell(double x, std::int64_t weight, std::size_t place) {
  if (!median) {
    // Values ascend, so all before the upper middle unit are at or below the median.
    const std::int64_t total = tally->TotalWeight();
    const std::int64_t before = cumulative;
    cumulative += weight;
    if (before < total / 2 + total % 2) lowerMiddle = x;
    if (cumulative >= total / 2 + 1) median = std::midpoint(lowerMiddle, x);
  }
  if (!median || x <= *median) lowerCounts[place] += weight;
}

void NPARKSMedian::Compute() {
  if (tally->TotalWeight() == 0) {
    Fail(catalogue::run::kNoData);
  } else if (tally->Groups().size() < 2) {
    Fail(card::kTooFewGroups);
  }
  lowerCounts.assign(tally->Groups().size(), 0);
  median = givenMedian;
}

void NPARKSMedian::Finish() {
  if (Pass() == 1) EndOverall();
  if (Pass() == 2 && comparison.IsPending()) Compare();
}

void NPARKSMedian::EndOverall() {
  Cells cells;
  for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
    cells.Add(lowerCounts[place], tally->CountOf(tally->Groups()[place]));
  }
  if (cells.IsOneSided()) {
    Fail(card::kOneSided);
    return;
  }
  overall = ChiSquareOf(cells);
  const double n = cells.total;
  if (lowerCounts.size() == 2) {
    const double greaterSum = n - cells.lowerSum;
    const double determinant = cells.lower[0] * (cells.sizes[1] - cells.lower[1]) -
                               cells.lower[1] * (cells.sizes[0] - cells.lower[0]);
    const double corrected = std::max(0.0, std::fabs(determinant) - n / 2.0);
    yates.testStatistic =
        n * corrected * corrected / (cells.lowerSum * greaterSum * cells.sizes[0] * cells.sizes[1]);
    yates.sig = QDDistFun::SfChi(yates.testStatistic, 1.0);
    if (n <= kExactLimit) exactSig = FisherSig(cells);
  }

  std::int64_t lowCells = 0;
  double smallest = std::numeric_limits<double>::max();
  for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
    const auto [below, above] = cells.Expected(place);
    lowCells += (below < kLowExpectedCount) + (above < kLowExpectedCount);
    smallest = std::min({smallest, below, above});
  }
  const double share =
      static_cast<double>(lowCells) / static_cast<double>(2 * lowerCounts.size()) * 100.0;
  Help(card::kExpectedCounts, {IntegerText(lowCells), NumberText(share), NumberText(smallest)});
  if (comparison.PassGate(*this, sigLevel, DecidingSig(), lowerCounts.size())) {
    sortedGroups.resize(lowerCounts.size());
  }
}

RangeFigures NPARKSMedian::ComputeFor(std::span<const SortedSample* const> groups) const {
  const double cut = givenMedian ? *givenMedian : MedianOf(groups);
  Cells cells;
  for (const SortedSample* group : groups) cells.Add(group->CountUpTo(cut), group->Total());
  return ChiSquareOf(cells);
}

void NPARKSMedian::Compare() {
  std::vector<const SortedSample*> groups;
  std::vector<ComparedSample> list;
  for (std::size_t place = 0; place < sortedGroups.size(); ++place) {
    groups.push_back(&sortedGroups[place]);
    list.push_back({tally->Groups()[place], MedianOf({&groups.back(), 1})});
  }
  if (comparison.WantsPairwise()) {
    const std::size_t groupCount = groups.size();
    comparison.RunPairwise(std::move(list), groupCount, [&](std::int32_t i, std::int32_t j) {
      const SortedSample* const pair[] = {groups[static_cast<std::size_t>(i)],
                                          groups[static_cast<std::size_t>(j)]};
      const RangeFigures figures = ComputeFor(pair);
      return PairFigures{figures.testStatistic, QDMV::gMissingValue, QDMV::gMissingValue,
                         figures.sig};
    });
    return;
  }
  OrderByMeasure(list);
  std::transform(list.begin(), list.end(), groups.begin(), [this](const ComparedSample& sample) {
    return &sortedGroups[tally->PlaceOf(sample.index)];
  });
  comparison.StartStepwise(std::move(list), sigLevel);
  while (!comparison.IsDone()) {
    comparison.EndStepwisePass(*this, [&](std::size_t i) {
      const SampleRange& range = comparison.GetWorkList()[i];
      return ComputeFor(std::span(groups).subspan(range.first, range.Size()));
    });
  }
}

void NPARKSMedian::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  groups.AppendRequired(positions);
}

void NPARKSMedian::WriteCells(XMLElement& algorithm) const {
  XMLElement* table = AddStructuredTable(algorithm, "TwoClassComparison");
  XMLElement* content =
      AddSimpleTable(*table, "Content", JoinIntegers(tally->Groups()), "lessOrEqual;greater");
  for (std::size_t place = 0; place < lowerCounts.size(); ++place) {
    const std::int64_t greater = tally->CountOf(tally->Groups()[place]) - lowerCounts[place];
    AddRow(*content, IntegerText(lowerCounts[place]) + ';' + IntegerText(greater));
  }
}

XMLElement* NPARKSMedian::WriteResults() {
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
                                             {"TestStatistic", overall.testStatistic},
                                             {"DegreeOfFreedom", lowerCounts.size() - 1},
                                             {"AsymptoticSig2Tailed", overall.sig}});
        if (lowerCounts.size() == 2) {
          AddAttributeRow(*statistics, "YatesTestStatistic", yates.testStatistic);
          AddAttributeRow(*statistics, "YatesAsymptoticSig2Tailed", yates.sig);
          if (exactSig) AddAttributeRow(*statistics, "ExactSig2Tailed", *exactSig);
        }
        AddBoxPlotInfo(algorithm, *tally, groups.groupCount);
        WriteComparison(algorithm, comparison);
      });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = construction.LookUpTestAndGroup(
      {card::kUnknownVariable, card::kUnknownVariable, card::kUnknownVariable, card::kNotContinuous,
       card::kNotCategorical, false});
  construction.PutTestAndGroup(variables);
  if (construction.IsOK() && construction.CategoriesOf(variables.group)->Size() < 2) {
    construction.Fail(card::kTooFewCategories);
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
