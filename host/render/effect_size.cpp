#include "host/render/effect_size.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "arithmetic/elementary.h"
#include "catalogue/catalogue.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

using catalogue::EffectFormula;
using Figure = std::optional<double>;

Figure FindFigure(const std::vector<ResultStatistic>& figures, std::string_view name,
                  std::string_view group = {}) {
  for (const ResultStatistic& figure : figures) {
    if (figure.group == group && figure.name == name) return FigureNumber(figure.text);
  }
  return std::nullopt;
}

Figure Cell(const ResultTable& table, std::size_t row, std::size_t column) {
  if (row >= table.rows.size() || column >= table.rows[row].size()) return std::nullopt;
  return FigureNumber(table.rows[row][column]);
}

// Formulas: nothing where a figure is missing. A zero divisor leaves no finite value, which
// FindEffectSize refuses.

Figure MeanRankDifference(const ResultTest& test) {
  if (test.groups.size() != 2) return std::nullopt;
  const Figure first = FindFigure(test.groups[0].figures, "MeanOfRank");
  const Figure second = FindFigure(test.groups[1].figures, "MeanOfRank");
  const Figure total = FindFigure(test.statistics, "TotalN");
  if (!first || !second || !total) return std::nullopt;
  return 2.0 * (*second - *first) / *total;
}

// The statistic is the rank sum of the positive differences, n the number of differences not zero.
Figure RankBiserial(const Figure& positiveRankSum, const Figure& n) {
  if (!positiveRankSum || !n) return std::nullopt;
  return 4.0 * *positiveRankSum / (*n * (*n + 1.0)) - 1.0;
}

Figure DifferencesNotZero(const ResultTest& test) {
  if (!test.differences) return std::nullopt;
  const Figure negative = FindFigure(test.differences->figures, "NegativeDifferences");
  const Figure positive = FindFigure(test.differences->figures, "PositiveDifferences");
  if (!negative || !positive) return std::nullopt;
  return *negative + *positive;
}

Figure StatisticOverRootOfN(const ResultTest& test, std::string_view group = {}) {
  const Figure z = FindFigure(test.statistics, "StandardTestStatistic", group);
  const Figure n = FindFigure(test.statistics, "TotalN");
  if (!z || !n) return std::nullopt;
  return *z / std::sqrt(*n);
}

Figure RootOfStatisticOverN(const ResultTest& test) {
  const Figure chiSquare = FindFigure(test.statistics, "TestStatistic");
  const Figure n = FindFigure(test.statistics, "TotalN");
  if (!chiSquare || !n) return std::nullopt;
  return std::sqrt(*chiSquare / *n);
}

// The median test of the same fields takes the same records and tells how many they were.
Figure TotalOfMedianTest(const ResultDocument& document, const ResultTest& test) {
  for (const ResultTest& other : document.tests) {
    if (other.name != catalogue::median::kCard.element || other.Failed()) continue;
    const std::size_t count = document.fields.size();
    if (other.ConditionFields(0, count) != test.ConditionFields(0, count)) continue;
    if (GroupField(document, other) != GroupField(document, test)) continue;
    if (const Figure total = FindFigure(other.statistics, "TotalN")) return total;
  }
  return std::nullopt;
}

// The Kruskal-Wallis statistics have no total; the extended figures have. A record counts where
// neither its value nor its group is missing, so the total is known where at most one of the two
// fields has missing values.
Figure GroupedRecords(const ResultDocument& document, const ResultTest& test) {
  if (test.extended) {
    if (const Figure total = FindFigure(test.extended->figures, "TotalN")) return total;
  }
  const auto tested = test.ConditionFields(0, document.fields.size());
  const ResultField* group = GroupField(document, test);
  if (tested.empty() || group == nullptr) return std::nullopt;
  const auto& values = document.fields[tested.front()].distribution;
  if (!values || !group->distribution) return std::nullopt;
  const Figure valueCount = FindFigure(values->figures, "TotalN");
  const Figure groupCount = FindFigure(group->distribution->figures, "TotalN");
  if (!valueCount || !groupCount) return std::nullopt;
  const bool oneIsComplete = std::max(*valueCount, *groupCount) == document.totalFreq;
  if (!oneIsComplete && !document.listwise) return TotalOfMedianTest(document, test);
  return std::min(*valueCount, *groupCount);
}

Figure EpsilonSquared(const ResultDocument& document, const ResultTest& test) {
  const Figure h = FindFigure(test.statistics, "TestStatistic");
  const Figure n = GroupedRecords(document, test);
  if (!h || !n) return std::nullopt;
  return *h / (*n - 1.0);
}

Figure Concordance(const ResultTest& test) {
  const Figure chiSquare = FindFigure(test.statistics, "TestStatistic");
  const Figure n = FindFigure(test.statistics, "TotalN");
  const Figure freedom = FindFigure(test.statistics, "DegreeOfFreedom");
  if (!chiSquare || !n || !freedom) return std::nullopt;
  return *chiSquare / (*n * *freedom);
}

Figure CohensG(const ResultTest& test) {
  for (const ResultTable& table : test.tables) {
    if (table.name != "CategoryFieldsComparison") continue;
    const Figure upper = Cell(table, 0, 1);
    const Figure lower = Cell(table, 1, 0);
    if (!upper || !lower) return std::nullopt;
    return std::max(*upper, *lower) / (*upper + *lower) - 0.5;
  }
  return std::nullopt;
}

// The table holds percentages, the observed ones first.
Figure CohensH(const ResultTest& test) {
  for (const ResultTable& table : test.tables) {
    if (table.name != "TwoClassComparison") continue;
    const Figure observed = Cell(table, 0, 0);
    const Figure hypothesized = Cell(table, 1, 0);
    if (!observed || !hypothesized) return std::nullopt;
    const auto angle = [](double percentage) {
      return 2.0 * arithmetic::Asin(std::sqrt(percentage / 100.0));
    };
    return angle(*observed) - angle(*hypothesized);
  }
  return std::nullopt;
}

// With ties between the groups the number of runs is a range, and so is z.
bool RunsAreARange(const ResultTest& test) {
  return FindFigure(test.statistics, "InterGroupTies") != 0.0;
}

Figure Value(const ResultDocument& document, const ResultTest& test, const catalogue::Card& card) {
  switch (card.effectSize.formula) {
    case EffectFormula::None:
      break;
    case EffectFormula::MeanRanks:
      return MeanRankDifference(test);
    case EffectFormula::SignedRanks:
      return RankBiserial(FindFigure(test.statistics, "TestStatistic"),
                          FindFigure(test.statistics, "TotalN"));
    case EffectFormula::PairedSignedRanks:
      return RankBiserial(FindFigure(test.statistics, "TestStatistic"), DifferencesNotZero(test));
    case EffectFormula::EpsilonSquared:
      return EpsilonSquared(document, test);
    case EffectFormula::Concordance:
      return Concordance(test);
    case EffectFormula::GivenConcordance:
      return FindFigure(test.statistics, "KendallsW");
    case EffectFormula::ChangedProportion:
      return CohensG(test);
    case EffectFormula::ProportionAngles:
      return CohensH(test);
    case EffectFormula::RootOfChiSquare:
      return RootOfStatisticOverN(test);
    case EffectFormula::UntiedStandardised:
      if (RunsAreARange(test)) break;
      [[fallthrough]];
    case EffectFormula::StandardisedByN:
      return StatisticOverRootOfN(test, card.decision.table);
  }
  return std::nullopt;
}

}  // namespace

std::optional<EffectSize> FindEffectSize(const ResultDocument& document, const ResultTest& test) {
  const catalogue::Card* const card = catalogue::FindElement(test.name);
  if (test.Failed() || card == nullptr) return std::nullopt;
  const Figure value = Value(document, test, *card);
  if (!value || !std::isfinite(*value)) return std::nullopt;
  return EffectSize{std::string(card->effectSize.name), std::string(card->effectSize.symbol),
                    *value};
}

std::optional<double> CountedRecords(const ResultDocument& document, const ResultTest& test) {
  if (const Figure total = FindFigure(test.statistics, "TotalN")) return total;
  return test.classification == "Independent_Samples" ? GroupedRecords(document, test)
                                                      : std::nullopt;
}

std::string EffectSizeGap(const ResultDocument& document, const ResultTest& test) {
  const catalogue::Card* const card = catalogue::FindElement(test.name);
  if (test.Failed() || card == nullptr || FindEffectSize(document, test)) return {};
  if (card->effectSize.formula == EffectFormula::EpsilonSquared &&
      FindFigure(test.statistics, "TestStatistic")) {
    return "No epsilon squared: the result does not tell how many records have both a value and a "
           "group.";
  }
  if (card->effectSize.formula == EffectFormula::UntiedStandardised && RunsAreARange(test)) {
    return "No effect size: ties between the groups leave more than one number of runs possible.";
  }
  return {};
}

}  // namespace npar_host
