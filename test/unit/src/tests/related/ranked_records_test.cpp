#include "tests/related/ranked_records.h"

#include "support/entry_run.h"
namespace {

constexpr const char* kFriedman = "RFriedmansTwoWayByRanks";
constexpr const char* kKendall = "RKendallsCoefficient";

/// Fields "a", "b", ...; another one is their weight.
AlgorithmElement Result(const char* entryName, int fields, const Rows& rows,
                        const char* comparison = "none", double sigLevel = 0.05) {
  VariableListBuilder variables;
  Texts names;
  for (int i = 0; i < fields; ++i) {
    names.emplace_back(1, static_cast<char>('a' + i));
    variables.Continuous(names.back());
  }
  if (rows.front().size() > names.size()) variables.Weight("n");
  const TestSettings settings =
      Entry("missingTreatment", "analysis", "sigLevel", sigLevel, entryName,
            Entry("variableName", names, "typeOfMultipleComparison", comparison));
  return AlgorithmElement::AllOf(RunDocument(variables.Build(), rows, settings)).at(0);
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
};

TEST(RankedRecordsTest, FiguresAgreeWithSciPy) {
  for (const RankedCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    for (const char* name : {kFriedman, kKendall}) {
      const AlgorithmElement result = Result(name, 3, row.rows);
      ExpectFigures(result, {{"TestStatistic", row.chiSquare, 1e-12},
                             {"AsymptoticSig2Tailed", row.sig, 1e-12},
                             {"DegreeOfFreedom", 2}});
      EXPECT_EQ(result.Decision(), row.sig < 0.05 ? "reject" : "retain");
      EXPECT_THAT(result.Number("KendallsW"),
                  IsCloseTo(name == kKendall ? std::optional(row.kendallsW) : std::nullopt, 1e-12));
    }
  }
}

TEST(RankedRecordsTest, DocumentHoldsRanksOfEachFieldAndThenTheFigures) {
  const Rows rows{{1, 2, 3}, {5, 5, 1}, {4, 3, 1}, {QDMV::gMissingValue, 1, 1}, {2, 1, 0.4}};
  const AlgorithmElement result = RunEntry(
      VariableListBuilder().Continuous("a").Continuous("b").Weight("n").Build(), rows, kKendall,
      Entry("variableName", Texts{"b", "a"}, "typeOfMultipleComparison", "none"));
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0) VariableInformation0(GroupIndex MeanOfRank Interval[]) "
            "VariableInformation1(GroupIndex MeanOfRank Interval[]) StatisticsResult(TotalN "
            "KendallsW TestStatistic DegreeOfFreedom AsymptoticSig2Tailed)");
  ExpectTexts(result, {{"ConditionKey", "R_KendallsCoefficient_1"},
                       {"Condition/%0", "1;0"},
                       {"VariableInformation0/GroupIndex", "1"},
                       {"VariableInformation0/MeanOfRank", "1.7"},
                       {"VariableInformation1/GroupIndex", "0"},
                       {"VariableInformation1/MeanOfRank", "1.3"},
                       {"TotalN", "5"},
                       {"KendallsW", "0.2"},
                       {"TestStatistic", "1"},
                       {"DegreeOfFreedom", "1"}});
  EXPECT_EQ(result.Rows("VariableInformation0/Interval"), (Texts{"1;1;3", "1;1.5;2"}));
  EXPECT_EQ(result.Rows("VariableInformation1/Interval"), (Texts{"3;1;1", "1;1.5;2"}));
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
  const AlgorithmElement result = Result(kFriedman, 4, TwoPairsOfFields(), "pairWise");
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(24.12));
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2;3", "3.6;1.5;3.4;1.5"}));
  const Texts rows = result.Rows("PairwiseResult/Content");
  ASSERT_EQ(rows.size(), 6u);
  EXPECT_EQ(rows[4], "1;3;0;0.577350269189626;0;1;1");
  EXPECT_EQ(rows[3].substr(0, 38), "1;2;-1.9;0.577350269189626;-3.29089653");
  EXPECT_EQ(result.Messages(), Messages{});
}

// SciPy 1.11.4, chi2.sf of the uncorrected statistic of each range; (0, 2), (1, 3) and (1, 2) are
// told apart, adjusted 1 - (1 - p)^(4/2) for ranges of two.
TEST(RankedRecordsTest, StepwiseFindsTheHomogeneousSubsets) {
  for (const char* name : {kFriedman, kKendall}) {
    const AlgorithmElement result = Result(name, 4, TwoPairsOfFields(), "stepWise");
    EXPECT_EQ(result.Rows("StepwiseInfo"), (Texts{"1;3;2;0", "1.5;1.5;3.4;3.6"}));
    const Texts rows = result.Rows("StepwiseResult/Content");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], "0;1;0;;;1;1");
    EXPECT_EQ(rows[1].substr(0, 8), "2;3;0.4;");
    EXPECT_EQ(rows[1].substr(rows[1].rfind(';')).substr(0, 13), ";0.7763554290");
    EXPECT_EQ(result.ChildNames().back(), "StructuredTable StatisticsResult");
  }
}

// The first two fields tie in every record; the next one ties with the second alone, but not with
// the first of their run.
TEST(RankedRecordsTest, RangesHaveTheTiesOfTheWholeRecords) {
  const Texts rows = Result(kFriedman, 4, Rows(30, {0, 6e-15, 1.2e-14, 9}), "stepWise")
                         .Rows("StepwiseResult/Content");
  EXPECT_THAT(rows, testing::Contains(testing::StartsWith("0;1;")));
  EXPECT_THAT(rows, testing::Not(testing::Contains(testing::StartsWith("1;2;"))));
}

TEST(RankedRecordsTest, AComparisonThatFallsAwayIsAWarning) {
  const struct {
    const char* catches;
    const char* word;
    int fields;
    double sigLevel;
    Codes friedman, kendall;
  } cases[] = {
      {"pairwise, not significant", "pairWise", 3, 1e-9, {221813}, {221913}},
      {"stepwise, not significant", "stepWise", 3, 1e-9, {221814}, {221914}},
      {"pairwise of two", "pairWise", 2, 0.5, {221815}, {221915}},
      {"stepwise of two", "stepWise", 2, 0.5, {221816}, {221916}},
      {"an unknown word is none", "both", 2, 0.5, {}, {}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.catches);
    const auto codes = [&row](const char* name) {
      Rows rows = TwoPairsOfFields();
      for (auto& record : rows) record.resize(static_cast<std::size_t>(row.fields));
      return Result(name, row.fields, rows, row.word, row.sigLevel).MessageCodes();
    };
    EXPECT_EQ(codes(kFriedman), row.friedman);
    EXPECT_EQ(codes(kKendall), row.kendall);
  }
}

TEST(RankedRecordsTest, AnEntryHasToSayWhetherToCompare) {
  const auto variables = VariableListBuilder().Continuous("x").Continuous("y").Build();
  const TestSettings entry = Entry("variableName", Texts{"x", "y"});
  for (const auto& [name, code] : {std::pair(kFriedman, 221801), {kKendall, 221901}}) {
    ExpectMessages(name, variables, {{1, 2}}, {{"no comparison", entry, Error(code)}});
  }
}

}  // namespace
