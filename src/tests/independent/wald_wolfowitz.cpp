#include "tests/independent/wald_wolfowitz.h"

#include "catalogue/cards/wald_wolfowitz.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "report/two_group_tables.h"

namespace card = catalogue::wald_wolfowitz;

NPARWaldWolfRuns::NPARWaldWolfRuns(QDSettings* settings)
    : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::WithHistograms) {}

void NPARWaldWolfRuns::TakeUnits(const GroupTally::Units& units) {
  for (std::size_t i = 0; i < units.count; ++i) {
    runs.Add(units.values[i], units.GroupOf(i), units.Weight(i));
  }
}

void NPARWaldWolfRuns::ComputeFigures() {
  runs.Finish();
  approximation = RunsApproximation(static_cast<double>(counts[0]), static_cast<double>(counts[1]));
  minimum = FiguresOf(runs.Minimum());
  maximum = FiguresOf(runs.Maximum());
  if (runs.InterGroupTies() > 0) {
    Warn(card::kTiesBetweenGroups, {IntegerText(runs.InterGroupTies())});
  }
}

NPARWaldWolfRuns::Figures NPARWaldWolfRuns::FiguresOf(std::int64_t runCount) const {
  Figures figures;
  figures.runs = runCount;
  figures.standardTestStatistic = approximation.FiguresOf(runCount).z;
  figures.asymptoticSig = QDDistFun::CdfStdNorm(figures.standardTestStatistic);
  if (TotalCount() <= kExactLimit) figures.exactSig = RunsLowerTail(counts[0], counts[1], runCount);
  return figures;
}

void NPARWaldWolfRuns::Extend(ExtendedFigures& figures) {
  const auto fewest = ExactRunsTails(counts[0], counts[1], minimum.runs);
  const auto most = ExactRunsTails(counts[0], counts[1], maximum.runs);
  if (fewest && most && !tally->HasNegativeWeight()) {
    figures.Add("MinimumRunsExactSig1Tailed", fewest->less);
    figures.Add("MinimumRunsExactSig2Tailed", fewest->twoSided);
    figures.Add("MaximumRunsExactSig1Tailed", most->less);
    figures.Add("MaximumRunsExactSig2Tailed", most->twoSided);
  }
  figures.Add(TwoGroupsTable(*tally));
}

void NPARWaldWolfRuns::WriteFigures(XMLElement& statistics, const char* name,
                                    const Figures& figures) const {
  AddFigures(statistics, name,
             {{"TestStatistic", figures.runs},
              {"StandardError", approximation.standardError},
              {"StandardTestStatistic", figures.standardTestStatistic},
              {"AsymptoticSig1Tailed", figures.asymptoticSig},
              {"ExactSig1Tailed", figures.exactSig}});
}

XMLElement* NPARWaldWolfRuns::WriteResults() {
  return WriteAlgorithm(
      *this,
      {.card = card::kCard,
       .decidingSig = maximum.Sig(),
       .condition = TwoGroupCondition("WaldWolfowitz", groups)},
      [this](XMLElement& algorithm) {
        AddTwoGroupTables(algorithm, groups, *tally, {counts[0], {}}, {counts[1], {}});
        XMLElement* statistics =
            AddFigures(algorithm, "StatisticsResult",
                       {{"TotalN", TotalCount()}, {"InterGroupTies", runs.InterGroupTies()}});
        WriteFigures(*statistics, "MinimumRuns", minimum);
        WriteFigures(*statistics, "MaximumRuns", maximum);
      });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  return AddTwoGroupTest<NPARWaldWolfRuns>(construction, variables);
}
