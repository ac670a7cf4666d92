#include "tests/related/sign.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "support/run_all_passes.h"
#include "support/schema.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Message = AlgorithmElement::Message;

struct SignCase {
  const char* catches;     // the fault that this row shows
  int above, below, tied;  // records of weight 1 with d > 0, d < 0, d = 0
  double z, asymptotic;
  std::optional<double> exact;
};

// z by hand; asymptotic from R 4.2.2, 2 * pnorm(-abs(z)); exact by counting:
// C(25,18) + ... + C(25,25) = 726206 of 2^25 outcomes.
const SignCase kCases[] = {
    {"ties alone: p is 1, no exact p", 0, 0, 4, 0.0, 1.0, std::nullopt},
    {"doubled tail above 1; correction past n/2", 1, 1, 0, 0.0, 1.0, 1.0},
    {"excess of exactly one half", 1, 0, 0, 0.0, 1.0, 1.0},
    {"last n with an exact p", 18, 7, 3, 2.0, 0.04550026389635842, 2 * 726206 / 33554432.0},
    {"first n without", 18, 8, 3, 1.765045216243656, 0.07755616674366549, std::nullopt},
    {"sign of z, upper tail", 7, 18, 0, -2.0, 0.04550026389635842, 2 * 726206 / 33554432.0},
};

/// Pairs (0, d) with d of either sign and zero.
Rows Pairs(int above, int below, int tied) {
  Rows rows;
  for (int i = 0; i < above; ++i) rows.push_back({0.0, 1.0 + i});
  for (int i = 0; i < below; ++i) rows.push_back({2.0 + i, 1.0});
  for (int i = 0; i < tied; ++i) rows.push_back({3.0 + i, 3.0 + i});
  return rows;
}

TEST(SignTest, FiguresAgreeWithCountingAndR) {
  for (const SignCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    NPARSign test(PairSettings(0, 1));
    ASSERT_THAT(RunAllPasses(test, Pairs(row.above, row.below, row.tied)), IsOk());
    const AlgorithmElement result(test.WriteResults());
    EXPECT_EQ(result.Text("TestStatistic"), std::to_string(row.above));
    EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(row.z));
    EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(row.asymptotic));
    EXPECT_THAT(result.Number("ExactSig2Tailed"), IsCloseTo(row.exact));
    if (row.exact) {
      EXPECT_THAT(result.Messages(), ElementsAre(Message{220916, "helpMessage", {}}));
    } else {
      EXPECT_THAT(result.Messages(), IsEmpty());
    }
  }
}

TEST(SignTest, TheExactValueDecidesAndALevelEqualToItRetains) {
  // n = 6, all above: exact 2 / 64, asymptotic 2 * (1 - Phi(2.5 / sqrt(1.5))) = 0.0412.
  for (const auto& [sigLevel, decision] :
       {std::pair(0.04, "reject"), {0.03125, "retain"}, {0.03126, "reject"}}) {
    NPARSign test(PairSettings(0, 1, -1, sigLevel));
    ASSERT_THAT(RunAllPasses(test, Pairs(6, 0, 0)), IsOk());
    EXPECT_EQ(AlgorithmElement(test.WriteResults()).Decision(), decision) << sigLevel;
  }
}

TEST(SignTest, WeightCountsAsThatManyRecordsWithoutItsFraction) {
  NPARSign test(PairSettings(0, 1, 2));
  ASSERT_THAT(RunAllPasses(test, {{0, 1, 13.9}, {1, 0, 13}, {5, 5, 2}, {0, 9, 0.5}}), IsOk());
  const AlgorithmElement result(test.WriteResults());
  EXPECT_EQ(result.Text("TotalN"), "28");
  EXPECT_EQ(result.Text("TestStatistic"), "13");
  EXPECT_FALSE(result.Has("ExactSig2Tailed"));  // 26 cases, though of two records
}

TEST(SignTest, DocumentHoldsCountsHistogramAndFigures) {
  NPARSign test(PairSettings(1, 0));
  ASSERT_THAT(RunAllPasses(test, {{3, 1}, {1, 1}, {QDMV::gMissingValue, 4}, {0, 1}, {7, 7}}),
              IsOk());
  EXPECT_EQ(
      AlgorithmElement(test.WriteResults()).Xml(),
      R"(<Algorithm name="RSign" type="hypothesis_test" classification="Related_Samples" decision="retain">
 <StructuredTable name="Condition">
  <Attribute name="ConditionKey" value="R_Sign_2" />
  <Attribute name="%0" value="1" />
  <Attribute name="%1" value="0" />
 </StructuredTable>
 <StructuredTable name="WarningMessages">
  <StructuredTable name="Message">
   <Attribute name="code" value="220916" />
   <Attribute name="type" value="helpMessage" />
   <Attribute name="paramNum" value="0" />
  </StructuredTable>
 </StructuredTable>
 <StructuredTable name="ContinuousDistribution">
  <Attribute name="NegativeDifferences" value="1" />
  <Attribute name="Ties" value="2" />
  <Attribute name="PositiveDifferences" value="1" />
  <SimpleTable name="Interval">
   <RowNames>count;value</RowNames>
   <ColumnNames />
   <Row>1;1;2</Row>
   <Row>-1;2;0</Row>
  </SimpleTable>
 </StructuredTable>
 <StructuredTable name="StatisticsResult">
  <Attribute name="TotalN" value="4" />
  <Attribute name="TestStatistic" value="1" />
  <Attribute name="StandardError" value="0.707106781186548" />
  <Attribute name="StandardTestStatistic" value="0" />
  <Attribute name="AsymptoticSig2Tailed" value="1" />
  <Attribute name="ExactSig2Tailed" value="1" />
 </StructuredTable>
</Algorithm>
)");
}

TEST(SignTest, PassesAreCountedDownAndNeedOnlyThePair) {
  NPARSign test(PairSettings(0, 1, 2));
  std::vector<std::int64_t> required = {9};
  for (const int left : {2, 1}) {
    ASSERT_THAT(test.BeginPass(), IsOk());
    EXPECT_EQ(test.GetPassesLeft(), left);
    const std::vector<double> row = {1, 2, 1};
    ASSERT_THAT(test.ProcessRecord(Record::View(row.data(), 3)), IsOk());
    ASSERT_THAT(test.EndPass(), IsOk());
    EXPECT_EQ(test.GetPassesLeft(), left - 1);
    EXPECT_EQ(test.NeedsAnotherPass(), left == 2);
  }
  test.GetRequiredVariables(required);
  EXPECT_THAT(required, ElementsAre(9, 0, 1));
}

TEST(SignTest, NoPairFailsInBeginPassAndStillWritesItsElement) {
  struct {
    TestSettings::Indices indices;
    const char* shown;
  } const cases[] = {
      {{1, 1}, "1"}, {{0, -1}, "0"}, {{0}, "__MISSING__"}, {{0, 1, 2}, "__MISSING__"}};
  for (const auto& row : cases) {
    NPARSign test(RelatedSettings(row.indices));
    EXPECT_THAT(test.BeginPass(), HasCode(220918));
    EXPECT_FALSE(test.NeedsAnotherPass());
    EXPECT_EQ(test.GetPassesLeft(), 0);
    const AlgorithmElement result(test.WriteResults());
    EXPECT_EQ(result.Decision(), "unknown");
    EXPECT_EQ(result.Text("%0"), row.shown);
    EXPECT_THAT(result.Messages(), ElementsAre(Message{220918, "error", {}}));
    EXPECT_THAT(result.ChildNames(),
                ElementsAre("StructuredTable Condition", "StructuredTable WarningMessages"));
  }
}

TEST(SignTest, NoWeightAtAllIsNoData) {
  for (const Rows& rows : {Rows{}, Rows{{1, 2, 0.9}}}) {
    NPARSign test(PairSettings(0, 1, 2));
    EXPECT_THAT(RunAllPasses(test, rows), HasCode(220003));
    EXPECT_EQ(AlgorithmElement(test.WriteResults()).Decision(), "unknown");
  }
}

using Names = std::vector<std::string>;

struct ConstructionCase {
  const char* catches;
  std::optional<Names> names;
  std::vector<Message> messages;
};

const ConstructionCase kConstructionCases[] = {
    {"no list", std::nullopt, {{220912, "error", {}}}},
    {"unknown name ends the walk", Names{"x", "nobody", "g"}, {{220903, "error", {"nobody"}}}},
    {"every unfit variable is told", Names{"g", "x", "z"}, {{220915, "error", {"2", "3"}}}},
    {"one variable", Names{"x"}, {{220918, "error", {}}}},
    {"three variables", Names{"x", "y", "x"}, {{220917, "error", {}}}},
    {"the same twice is found in the first pass", Names{"x", "x"}, {{220918, "error", {}}}},
    {"a pair", Names{"y", "x"}, {{220916, "helpMessage", {}}}},
};

TEST(SignTest, ConstructionTellsWhatIsWrongWithAnEntry) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Continuous("y").Nominal("g", {"a"}).Other("z").Build();
  const Rows rows = {{1, 2, 0, 0}, {3, 1, 0, 0}};
  for (const ConstructionCase& row : kConstructionCases) {
    SCOPED_TRACE(row.catches);
    TestSettings entry;
    if (row.names) entry.Put("variableName", *row.names);
    const std::string document = RunEntryDocument(variables, rows, "RSign", entry.Get());
    EXPECT_TRUE(IsValid(document, "statxml-7.0.xsd"));
    const std::vector<AlgorithmElement> elements = AlgorithmElement::AllOf(document);
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0].Messages(), row.messages);
  }
}

TEST(SignTest, SummariesOfTheFirstTwoVariablesAreShownWhicheverPairIsTested) {
  const QDVarList variables =
      VariableListBuilder().Continuous("a").Continuous("b").Continuous("c").Continuous("d").Build();
  TestSettings entry;
  entry.Put("variableName", Names{"c", "d"});
  const std::string document = RunEntryDocument(variables, {{1, 2, 3, 4}}, "RSign", entry.Get());
  EXPECT_NE(document.find("<FieldInfo varIndex=\"0\">"), std::string::npos);
  EXPECT_NE(document.find("<FieldInfo varIndex=\"1\">"), std::string::npos);
  EXPECT_EQ(document.find("<FieldInfo varIndex=\"2\">"), std::string::npos);
}

}  // namespace
