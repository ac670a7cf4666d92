#include "tests/independent/mann_whitney.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/mann_whitney.h"
#include "kit/statistics/mann_whitney_exact.h"
#include "kit/statistics/mann_whitney_moments.h"
#include "planning/two_group_construction.h"
#include "report/elements.h"
#include "report/messages.h"
#include "report/two_group_tables.h"

NPARMannWU::NPARMannWU(QDSettings* settings)
    : NPARTwoGroupTest(settings, kCodeBase, Passes::WithHistograms) {}

void NPARMannWU::Take(const TwoGroupUnits& records) { records.AddTo(ranks); }

void NPARMannWU::Compute() {
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
  auto algorithm =
      CreateAlgorithm("IMannWhitneyU", "hypothesis_test", "Independent_Samples",
                      DecisionWord(status, sigLevel, exactSig.value_or(asymptoticSig)));
  AddTwoGroupCondition(*algorithm, "MannWhitneyU", groups, false);
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  AddTwoGroupTables(*algorithm, groups, tally->Histograms(), {counts[0], meanRanks[0]},
                    {counts[1], meanRanks[1]});
  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", TotalCount());
  AddAttributeRow(*statistics, "MannWhitneyU", mannWhitneyU);
  AddAttributeRow(*statistics, "WilcoxonW", wilcoxonW);
  AddAttributeRow(*statistics, "TestStatistic", mannWhitneyU);
  AddAttributeRow(*statistics, "StandardError", standardError);
  AddAttributeRow(*statistics, "StandardTestStatistic", standardTestStatistic);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", asymptoticSig);
  if (exactSig) AddAttributeRow(*statistics, "ExactSig2Tailed", *exactSig);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::mann_whitney::kCard>(
    TestConstruction& construction) {
  const auto variables =
      ResolveTwoGroups(construction, TwoGroupEntryCodesFrom(NPARMannWU::kCodeBase));
  return AddTwoGroupTest<NPARMannWU>(construction, variables);
}
