#include "report/comparison_tables.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class QuietTest final : public NPARTest {
 public:
  QuietTest() : NPARTest(nullptr) {}
  void SetSharedData(UnivariateResults*) override {}
  QDStatus BeginPass() override { return status; }
  QDStatus ProcessRecord(const Record&) override { return status; }
  bool NeedsAnotherPass() override { return false; }
  QDStatus EndPass() override { return status; }
  void GetRequiredVariables(std::vector<std::int64_t>&) override {}
  XMLElement* WriteResults() override { return nullptr; }
};

std::string TablesOf(const MultipleComparison& comparison, std::string_view pairwiseValues = {}) {
  const std::unique_ptr<XMLElement> algorithm(XMLElement::Create("A"));
  WriteComparison(*algorithm, comparison, pairwiseValues);
  std::string text;
  algorithm->Write(text, 0, false);
  return text;
}

MultipleComparison Pairs(double standardError) {
  MultipleComparison comparison({1, 2, 3, 4});
  comparison.Want(ComparisonKind::Pairwise);
  comparison.RunPairwise({{7, 1.5}, {4, 2.0}}, 3, [&](std::int32_t, std::int32_t) {
    return PairFigures{-0.5, standardError, standardError == 0.25 ? -2.0 : standardError, 0.125};
  });
  return comparison;
}

TEST(ComparisonTablesTest, PairsAreRowsOfSevenCells) {
  EXPECT_EQ(TablesOf(Pairs(0.25)),
            "<A><StructuredTable name=\"PairwiseResult\">"
            "<SimpleTable name=\"PairwiseInfo\"><RowNames/><ColumnNames>IndexOrder;Value"
            "</ColumnNames><Row>7;4</Row><Row>1.5;2</Row></SimpleTable>"
            "<SimpleTable name=\"Content\"><RowNames/><ColumnNames>Sample1;Sample2;TestStatistic;"
            "StandardError;StandardTestStatistic;Sig;AdjSig</ColumnNames>"
            "<Row>0;1;-0.5;0.25;-2;0.125;0.375</Row></SimpleTable></StructuredTable></A>");
}

TEST(ComparisonTablesTest, FiguresThatATestDoesNotHaveAreEmptyCells) {
  const std::string text = TablesOf(Pairs(QDMV::gMissingValue));
  EXPECT_NE(text.find("<Row>0;1;-0.5;;;0.125;0.375</Row>"), std::string::npos) << text;
}

TEST(ComparisonTablesTest, OtherValuesMayStandForTheMeasures) {
  const std::string text = TablesOf(Pairs(0.25), "30;40");
  EXPECT_NE(text.find("<Row>7;4</Row><Row>30;40</Row>"), std::string::npos) << text;
}

TEST(ComparisonTablesTest, SubsetsStandWithTheirRangeAndSinglesWithoutFigures) {
  MultipleComparison comparison({1, 2, 3, 4});
  comparison.Want(ComparisonKind::Stepwise);
  comparison.StartStepwise({{5, 0.5}, {3, 1.0}, {4, 2.0}}, 0.05);
  QuietTest test;
  comparison.EndStepwisePass(test, [](std::size_t place) {
    return RangeFigures{3.5, place == 0 ? 0.25 : 0.01};
  });
  EXPECT_EQ(TablesOf(comparison),
            "<A><StructuredTable name=\"StepwiseResult\">"
            "<SimpleTable name=\"StepwiseInfo\"><RowNames/><ColumnNames>IndexOrder;Value"
            "</ColumnNames><Row>5;3;4</Row><Row>0.5;1;2</Row></SimpleTable>"
            "<SimpleTable name=\"Content\"><RowNames/><ColumnNames>FirstPosition;LastPosition;"
            "TestStatistic;StandardError;StandardTestStatistic;Sig;AdjSig</ColumnNames>"
            "<Row>0;1;3.5;;;0.25;0.25</Row><Row>2;2;__MISSING__;;;__MISSING__;__MISSING__</Row>"
            "</SimpleTable></StructuredTable></A>");
}

TEST(ComparisonTablesTest, NothingStandsBeforeTheComparisonHasRun) {
  MultipleComparison comparison({1, 2, 3, 4});
  comparison.Want(ComparisonKind::Stepwise);
  EXPECT_EQ(TablesOf(comparison), "<A/>");
  comparison.Want(ComparisonKind::Pairwise);
  comparison.RunPairwise({{1, 0.0}}, 1, [](std::int32_t, std::int32_t) { return PairFigures{}; });
  EXPECT_EQ(TablesOf(comparison), "<A/>");  // one sample, no pair
}

}  // namespace
