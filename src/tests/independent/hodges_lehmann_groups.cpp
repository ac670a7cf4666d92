#include "tests/independent/hodges_lehmann_groups.h"

#include <cmath>

#include "catalogue/cards/hodges_lehmann_groups.h"
#include "kit/statistics/mann_whitney_moments.h"
#include "planning/two_group_construction.h"
#include "report/elements.h"
#include "report/messages.h"
#include "report/two_group_tables.h"

NPARHodgesLehmannTwoIndep::NPARHodgesLehmannTwoIndep(QDSettings* settings)
    : NPARTwoGroupTest(settings, kCodeBase, Passes::FiguresOnly) {}

QDStatus NPARHodgesLehmannTwoIndep::BeginPass() {
  static_cast<void>(settings->GetSettingValByName("confidenceLevel", confidenceLevel));
  return NPARTwoGroupTest::BeginPass();
}

void NPARHodgesLehmannTwoIndep::Take(const TwoGroupUnits& records) {
  records.AddTo(ranks);
  for (std::size_t i = 0; i < records.count; ++i) {
    if (records.Weight(i) >= 1) {
      values[records.groups[i]].Add(records.values[i], records.Weight(i));
    }
  }
}

void NPARHodgesLehmannTwoIndep::Compute() {
  ranks.CloseRun();
  for (WeightedValues& group : values) group.Sort();
  const GroupDifferences differences(values[TwoGroups::First], values[TwoGroups::Second]);
  estimate = differences.Median();
  const auto n1 = static_cast<double>(counts[0]);
  const auto n2 = static_cast<double>(counts[1]);
  const double expected = n1 * n2 * 0.5;
  const double reach = QDDistFun::IdfStdNorm(1.0 - (1.0 - confidenceLevel) * 0.5) *
                       MannWhitneyStandardError(n1, n2, ranks.TieSum());
  lower = differences.Select(ToWeightProduct(std::floor(expected - reach)) + 1);
  upper = differences.Select(ToWeightProduct(std::ceil(expected + reach)));
  values = {};
}

XMLElement* NPARHodgesLehmannTwoIndep::WriteResults() {
  auto algorithm = CreateAlgorithm("IHodgesLehmannEstimateGroups", "confidence_interval",
                                   "Independent_Samples", "");
  AddTwoGroupCondition(*algorithm, "HodgesLehmann", groups);
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "Estimate", estimate);
  XMLElement* interval = AddStructuredTable(*algorithm, "Asymptotic");
  AddAttributeRow(*interval, "Lower", lower);
  AddAttributeRow(*interval, "Upper", upper);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::hodges_lehmann_groups::kCard>(
    TestConstruction& construction) {
  const auto variables =
      ResolveTwoGroups(construction, TwoGroupEntryCodesFrom(NPARHodgesLehmannTwoIndep::kCodeBase));
  return AddTwoGroupTest<NPARHodgesLehmannTwoIndep>(construction, variables);
}
