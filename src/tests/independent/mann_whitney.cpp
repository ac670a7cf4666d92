#include "tests/independent/mann_whitney.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/mann_whitney.h"
#include "kit/statistics/mann_whitney_exact.h"
#include "kit/statistics/mann_whitney_moments.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/two_group_tables.h"

namespace card = catalogue::mann_whitney;

NPARMannWU::NPARMannWU(QDSettings* settings)
    : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::WithHistograms) {}

void NPARMannWU::TakeUnits(const GroupTally::Units& units) { units.AddTo(ranks); }

void NPARMannWU::ComputeFigures() {
  ranks.CloseRun();
  const auto n1 = static_cast<double>(counts[0]);
  const auto n2 = static_cast<double>(counts[1]);
  const double rankSum1 = ranks.GroupEntry(TwoGroups::First).rankSum;
  wilcoxonW = ranks.GroupEntry(TwoGroups::Second).rankSum;
  meanRanks = {rankSum1 / n1, wilcoxonW / n2};
  const double pairs = n1 * n2;
  mannWhitneyU = (n1 + 1.0) * n1 * 0.5 + pairs - rankSum1;
  if (pairs <= kMostExactPairs && pairs * 0.5 + std::min(n1, n2) <= kMostExactHalfPairsAndUnits) {
    exactSig = ExactMannWhitneyP(counts[0], counts[1], mannWhitneyU);
  }
  standardError = MannWhitneyStandardError(n1, n2, ranks.TieSum());
  if (standardError != 0.0) {
    standardTestStatistic = (mannWhitneyU - pairs * 0.5) / standardError;
  }
  asymptoticSig = QDDistFun::SfStdNorm(std::abs(standardTestStatistic)) * 2.0;
}

XMLElement* NPARMannWU::WriteResults() {
  return WriteAlgorithm(*this,
                        {.card = card::kCard,
                         .decidingSig = exactSig.value_or(asymptoticSig),
                         .condition = TwoGroupCondition("MannWhitneyU", groups, false)},
                        [this](XMLElement& algorithm) {
                          AddTwoGroupTables(algorithm, groups, *tally, {counts[0], meanRanks[0]},
                                            {counts[1], meanRanks[1]});
                          AddFigures(algorithm, "StatisticsResult",
                                     {{"TotalN", TotalCount()},
                                      {"MannWhitneyU", mannWhitneyU},
                                      {"WilcoxonW", wilcoxonW},
                                      {"TestStatistic", mannWhitneyU},
                                      {"StandardError", standardError},
                                      {"StandardTestStatistic", standardTestStatistic},
                                      {"AsymptoticSig2Tailed", asymptoticSig},
                                      {"ExactSig2Tailed", exactSig}});
                        });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  return AddTwoGroupTest<NPARMannWU>(construction, variables);
}
