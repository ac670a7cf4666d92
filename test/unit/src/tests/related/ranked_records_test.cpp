#include "tests/related/ranked_records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/entry_cases.h"
#include "support/matchers.h"
#include "tests/related/friedman.h"
#include "tests/related/kendalls_w.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Message = AlgorithmElement::Message;

QDSettings* ComparisonSettings(const TestSettings::Indices& variables, const std::string& word,
                               std::int32_t weightIndex = -1, double sigLevel = 0.05) {
  QDSettings* settings = RelatedSettings(variables, weightIndex, sigLevel);
  settings->AddNewSetting("typeOfMultipleComparison", word, std::string());
  return settings;
}

struct RankedCase {
  const char* catches;
  Rows rows;  // of three fields, and a weight
  double chiSquare, kendallsW, sig;
};

// SciPy 1.11.4, friedmanchisquare, on the records written out; W = chi-square / (2 N).
const RankedCase kCases[] = {
    {"ties inside records and a weight",
     {{1, 2, 2, 1}, {1, 2, 3, 3.9}, {3, 2, 1, 1}, {5, 5, 5, 2}, {9, 1, 1, 0.9}},
     3.263157894736833,
     0.23308270676691664,
     0.1956204557464946},
    {"every record one tie: nothing to judge", {{1, 1, 1, 5}, {2, 2, 2, 1}}, 0, 0, 1},
    {"full agreement", {{1, 2, 3, 4}}, 8, 1, 0.01831563888873418},  // exp(-4)
};

TEST(RankedRecordsTest, FiguresAgreeWithSciPy) {
  for (const RankedCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    NPARFriedman friedman(RelatedSettings({0, 1, 2}, 3));
    NPARKendallsW kendall(RelatedSettings({0, 1, 2}, 3));
    ASSERT_THAT(RunAllPasses(friedman, row.rows), IsOk());
    ASSERT_THAT(RunAllPasses(kendall, row.rows), IsOk());
    const AlgorithmElement friedmans(friedman.WriteResults());
    const AlgorithmElement kendalls(kendall.WriteResults());
    for (const AlgorithmElement* result : {&friedmans, &kendalls}) {
      EXPECT_THAT(result->Number("TestStatistic"), IsCloseTo(row.chiSquare, 1e-12));
      EXPECT_THAT(result->Number("AsymptoticSig2Tailed"), IsCloseTo(row.sig, 1e-12));
      EXPECT_EQ(result->Text("DegreeOfFreedom"), "2");
      EXPECT_EQ(result->Decision(), row.sig < 0.05 ? "reject" : "retain");
    }
    EXPECT_THAT(kendalls.Number("KendallsW"), IsCloseTo(row.kendallsW, 1e-12));
    EXPECT_FALSE(friedmans.Has("KendallsW"));
  }
}

TEST(RankedRecordsTest, DocumentHoldsRanksOfEachFieldAndThenTheFigures) {
  NPARKendallsW test(RelatedSettings({1, 0}, 2));
  ASSERT_THAT(
      RunAllPasses(test,
                   {{1, 2, 3}, {5, 5, 1}, {4, 3, 1}, {QDMV::gMissingValue, 1, 1}, {2, 1, 0.4}}),
      IsOk());
  EXPECT_EQ(
      AlgorithmElement(test.WriteResults()).Xml(),
      R"(<Algorithm name="RKendallsCoefficient" type="hypothesis_test" classification="Related_Samples" decision="retain">
 <StructuredTable name="Condition">
  <Attribute name="ConditionKey" value="R_KendallsCoefficient_1" />
  <Attribute name="%0" value="1;0" />
 </StructuredTable>
 <StructuredTable name="VariableInformation0">
  <Attribute name="GroupIndex" value="1" />
  <Attribute name="MeanOfRank" value="1.7" />
  <SimpleTable name="Interval">
   <RowNames>count;value</RowNames>
   <ColumnNames />
   <Row>1;1;3</Row>
   <Row>1;1.5;2</Row>
  </SimpleTable>
 </StructuredTable>
 <StructuredTable name="VariableInformation1">
  <Attribute name="GroupIndex" value="0" />
  <Attribute name="MeanOfRank" value="1.3" />
  <SimpleTable name="Interval">
   <RowNames>count;value</RowNames>
   <ColumnNames />
   <Row>3;1;1</Row>
   <Row>1;1.5;2</Row>
  </SimpleTable>
 </StructuredTable>
 <StructuredTable name="StatisticsResult">
  <Attribute name="TotalN" value="5" />
  <Attribute name="KendallsW" value="0.2" />
  <Attribute name="TestStatistic" value="1" />
  <Attribute name="DegreeOfFreedom" value="1" />
  <Attribute name="AsymptoticSig2Tailed" value="0.317310507862914" />
 </StructuredTable>
</Algorithm>
)");
}

// Fields 1 and 3 hold ranks 1 and 2 in turn, fields 0 and 2 ranks 3 and 4 two to one.
Rows TwoPairsOfFields() {
  Rows rows;
  for (int i = 0; i < 10; ++i) {
    const double low = i % 2 == 0 ? 2 : 1;
    const double high = i % 3 == 0 ? 3 : 4;
    rows.push_back({high, low, 7 - high, 3 - low});
  }
  return rows;
}

// SciPy 1.11.4, norm.sf.
TEST(RankedRecordsTest, PairwiseComparesMeanRanksOfAllPairs) {
  NPARFriedman test(ComparisonSettings({0, 1, 2, 3}, "pairWise"));
  ASSERT_THAT(RunAllPasses(test, TwoPairsOfFields()), IsOk());
  const AlgorithmElement result(test.WriteResults());
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(24.12));
  EXPECT_THAT(result.Rows("PairwiseInfo"), ElementsAre("0;1;2;3", "3.6;1.5;3.4;1.5"));
  const std::vector<std::string> rows = result.Rows("PairwiseResult/Content");
  ASSERT_EQ(rows.size(), 6u);
  EXPECT_EQ(rows[4], "1;3;0;0.577350269189626;0;1;1");
  EXPECT_EQ(rows[3].substr(0, 38), "1;2;-1.9;0.577350269189626;-3.29089653");
  EXPECT_THAT(result.Messages(), IsEmpty());
}

// SciPy 1.11.4, chi2.sf of the uncorrected statistic of each range; (0, 2), (1, 3) and (1, 2) are
// told apart, adjusted 1 - (1 - p)^(4/2) for ranges of two.
TEST(RankedRecordsTest, StepwiseFindsTheHomogeneousSubsets) {
  for (const bool isKendall : {false, true}) {
    std::unique_ptr<NPARTest> test;
    QDSettings* settings = ComparisonSettings({0, 1, 2, 3}, "stepWise");
    if (isKendall) {
      test = std::make_unique<NPARKendallsW>(settings);
    } else {
      test = std::make_unique<NPARFriedman>(settings);
    }
    ASSERT_THAT(test->BeginPass(), IsOk());
    EXPECT_EQ(test->GetPassesLeft(), 4);
    ASSERT_THAT(RunAllPasses(*test, TwoPairsOfFields()), IsOk());
    EXPECT_EQ(test->GetPassesLeft(), 0);
    const AlgorithmElement result(test->WriteResults());
    EXPECT_THAT(result.Rows("StepwiseInfo"), ElementsAre("1;3;2;0", "1.5;1.5;3.4;3.6"));
    const std::vector<std::string> rows = result.Rows("StepwiseResult/Content");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], "0;1;0;;;1;1");
    EXPECT_EQ(rows[1].substr(0, 8), "2;3;0.4;");
    EXPECT_EQ(rows[1].substr(rows[1].rfind(';')).substr(0, 13), ";0.7763554290");
    EXPECT_THAT(result.ChildNames().back(), "StructuredTable StatisticsResult");
  }
}

TEST(RankedRecordsTest, AFieldThatStandsAloneIsTold) {
  Rows rows;
  for (int i = 0; i < 30; ++i) rows.push_back({1, 2, 3});
  NPARFriedman test(ComparisonSettings({0, 1, 2}, "stepWise"));
  ASSERT_THAT(RunAllPasses(test, rows), IsOk());
  const AlgorithmElement result(test.WriteResults());
  EXPECT_THAT(result.MessageCodes(), ElementsAre(220013, 220013, 220013));
  EXPECT_EQ(result.Text("WarningMessages/group"), "0;0");
  EXPECT_EQ(result.ChildNames().back(), "StructuredTable WarningMessages");
}

struct GateCase {
  const char* catches;
  std::string word;
  std::vector<std::string> names;
  double sigLevel;
  std::vector<std::int32_t> friedman;
  std::vector<std::int32_t> kendall;
};

const GateCase kGateCases[] = {
    {"pairwise, not significant", "pairWise", {"a", "b", "c"}, 1e-9, {221813}, {221913}},
    {"stepwise, not significant", "stepWise", {"a", "b", "c"}, 1e-9, {221814}, {221914}},
    {"pairwise of two", "pairWise", {"a", "b"}, 0.5, {221815}, {221915}},
    {"stepwise of two", "stepWise", {"a", "b"}, 0.5, {221816}, {221916}},
    {"an unknown word is none", "both", {"a", "b"}, 0.5, {}, {}},
};

TEST(RankedRecordsTest, AComparisonThatFallsAwayIsAWarning) {
  const QDVarList variables =
      VariableListBuilder().Continuous("a").Continuous("b").Continuous("c").Build();
  for (const GateCase& row : kGateCases) {
    for (const auto& [name, codes] : {std::pair("RFriedmansTwoWayByRanks", row.friedman),
                                      {"RKendallsCoefficient", row.kendall}}) {
      SCOPED_TRACE(row.catches);
      TestSettings entry;
      entry.Put("variableName", row.names).Put("typeOfMultipleComparison", row.word);
      TestSettings settings;
      settings.Put("sigLevel", row.sigLevel).Put(name, entry.Get());
      const auto elements =
          AlgorithmElement::AllOf(RunDocument(variables, TwoPairsOfFields(), settings.Get()));
      EXPECT_EQ(elements.at(0).MessageCodes(), codes);
    }
  }
}

TEST(RankedRecordsTest, NoWeightIsNoDataAndOneFieldIsTooFew) {
  NPARFriedman empty(RelatedSettings({0, 1}, 2));
  EXPECT_THAT(RunAllPasses(empty, {{1, 2, 0.9}}), HasCode(220003));
  NPARFriedman friedman(RelatedSettings({0}));
  NPARKendallsW kendall(RelatedSettings({}));
  EXPECT_THAT(RunAllPasses(friedman, {{1}}), HasCode(221809));
  EXPECT_THAT(RunAllPasses(kendall, {{1}}), HasCode(221909));
  const AlgorithmElement result(friedman.WriteResults());
  EXPECT_EQ(result.Decision(), "unknown");
  EXPECT_THAT(result.ChildNames(),
              ElementsAre("StructuredTable Condition", "StructuredTable WarningMessages"));
}

TEST(RankedRecordsTest, ConstructionTellsWhatIsWrongWithAnEntry) {
  for (const auto& [name, offset] :
       {std::pair("RFriedmansTwoWayByRanks", 0), {"RKendallsCoefficient", 100}}) {
    const auto error = [offset = offset](std::int32_t code, std::vector<std::string> params) {
      return std::vector<Message>{{code + offset, "error", std::move(params)}};
    };
    const std::vector<EntryCase> cases = {
        {"no list", std::nullopt, error(221811, {})},
        {"unknown name", {{"x", "nobody"}}, error(221803, {"nobody"})},
        {"one name", {{"x"}}, error(221809, {})},
        {"an unfit field", {{"x", "g"}}, error(221804, {"2"})}};
    ExpectMessages(name, cases, [](TestSettings&) {});
    ExpectMessages(name, {{"no comparison", {{"x", "y"}}, error(221801, {})}},
                   [](TestSettings&) {});
    ExpectMessages(name, {{"all well", {{"x", "y"}}, {}}}, [](TestSettings& entry) {
      entry.Put("typeOfMultipleComparison", std::string("none"));
    });
  }
}

}  // namespace
