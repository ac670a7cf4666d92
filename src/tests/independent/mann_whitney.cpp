#include "tests/independent/mann_whitney.h"

#include <algorithm>

#include "catalogue/cards/mann_whitney.h"
#include "kit/statistics/mann_whitney.h"
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
  mannWhitneyU = MannWhitneyU(n1, n2, rankSum1);
  if (pairs <= kMostExactPairs && pairs * 0.5 + std::min(n1, n2) <= kMostExactHalfPairsAndUnits) {
    exactSig = ExactMannWhitneyP(counts[0], counts[1], mannWhitneyU);
  }
  approximation = MannWhitneyApproximation(mannWhitneyU, n1, n2, ranks.TieSum());
}

XMLElement* NPARMannWU::WriteResults() {
  return WriteAlgorithm(*this,
                        {.card = card::kCard,
                         .decidingSig = exactSig.value_or(approximation.sig),
                         .condition = TwoGroupCondition("MannWhitneyU", groups, false)},
                        [this](XMLElement& algorithm) {
                          AddTwoGroupTables(algorithm, groups, *tally, {counts[0], meanRanks[0]},
                                            {counts[1], meanRanks[1]});
                          AddFigures(algorithm, "StatisticsResult",
                                     {{"TotalN", TotalCount()},
                                      {"MannWhitneyU", mannWhitneyU},
                                      {"WilcoxonW", wilcoxonW},
                                      {"TestStatistic", mannWhitneyU},
                                      {"StandardError", approximation.standardError},
                                      {"StandardTestStatistic", approximation.z},
                                      {"AsymptoticSig2Tailed", approximation.sig},
                                      {"ExactSig2Tailed", exactSig}});
                        });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  return AddTwoGroupTest<NPARMannWU>(construction, variables);
}
