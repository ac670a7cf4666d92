#include "tests/independent/wald_wolfowitz.h"

#include "catalogue/cards/wald_wolfowitz.h"
#include "planning/two_group_construction.h"
#include "report/elements.h"
#include "report/messages.h"
#include "report/two_group_tables.h"

namespace {

constexpr std::int32_t kTiesBetweenGroups = 220616;  // warning; parameter: blocks of ties

}  // namespace

NPARWaldWolfRuns::NPARWaldWolfRuns(QDSettings* settings)
    : NPARTwoGroupTest(settings, kCodeBase, Passes::WithHistograms) {}

void NPARWaldWolfRuns::Take(const TwoGroupUnits& records) {
  for (std::size_t i = 0; i < records.count; ++i) {
    runs.Add(records.values[i], records.groups[i], records.Weight(i));
  }
}

void NPARWaldWolfRuns::Compute() {
  runs.Finish();
  approximation = RunsApproximation(static_cast<double>(counts[0]), static_cast<double>(counts[1]));
  minimum = FiguresOf(runs.Minimum());
  maximum = FiguresOf(runs.Maximum());
  if (runs.InterGroupTies() > 0) {
    AddMessage(NPARMessage{QDStatus(kTiesBetweenGroups),
                           MessageKind::Warning,
                           {IntegerText(runs.InterGroupTies())},
                           {}});
  }
}

NPARWaldWolfRuns::Figures NPARWaldWolfRuns::FiguresOf(std::int64_t runCount) const {
  Figures figures;
  figures.runs = runCount;
  figures.standardTestStatistic = approximation.Standardize(static_cast<double>(runCount));
  figures.asymptoticSig = QDDistFun::CdfStdNorm(figures.standardTestStatistic);
  if (TotalCount() <= kExactLimit) figures.exactSig = RunsLowerTail(counts[0], counts[1], runCount);
  return figures;
}

void NPARWaldWolfRuns::WriteFigures(XMLElement& statistics, const char* name,
                                    const Figures& figures) const {
  XMLElement* table = AddStructuredTable(statistics, name);
  AddAttributeRow(*table, "TestStatistic", figures.runs);
  AddAttributeRow(*table, "StandardError", approximation.standardError);
  AddAttributeRow(*table, "StandardTestStatistic", figures.standardTestStatistic);
  AddAttributeRow(*table, "AsymptoticSig1Tailed", figures.asymptoticSig);
  if (figures.exactSig) AddAttributeRow(*table, "ExactSig1Tailed", *figures.exactSig);
}

XMLElement* NPARWaldWolfRuns::WriteResults() {
  auto algorithm = CreateAlgorithm("IWaldWolfowitzRuns", "hypothesis_test", "Independent_Samples",
                                   DecisionWord(status, sigLevel, maximum.Sig()));
  AddTwoGroupCondition(*algorithm, "WaldWolfowitz", groups);
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  AddTwoGroupTables(*algorithm, groups, tally->Histograms(), {counts[0], {}}, {counts[1], {}});
  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", TotalCount());
  AddAttributeRow(*statistics, "InterGroupTies", runs.InterGroupTies());
  WriteFigures(*statistics, "MinimumRuns", minimum);
  WriteFigures(*statistics, "MaximumRuns", maximum);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::wald_wolfowitz::kCard>(
    TestConstruction& construction) {
  const auto variables =
      ResolveTwoGroups(construction, TwoGroupEntryCodesFrom(NPARWaldWolfRuns::kCodeBase));
  return AddTwoGroupTest<NPARWaldWolfRuns>(construction, variables);
}
