#include "support/entry_run.h"

namespace {

TestSettings Cut(const char* word) {
  return Entry("variableName", "x", "contVarClassFormation", word);
}

TestSettings CutAt(double value) { return Cut("cutPointValue").Put("cutPointValue", value); }

/// A second column is the weight.
AlgorithmElement RunContinuous(const Rows& rows, const TestSettings& entry) {
  VariableListBuilder variables;
  variables.Continuous("x");
  if (rows.front().size() > 1) variables.Weight("n");
  return RunEntry(variables.Build(), rows, "ORuns", entry);
}

// The formulas of J. V. Bradley (1968) in Python with SciPy 1.17.1's norm.cdf.
TEST(RunsTest, FiguresAgreeWithTheFormulas) {
  ExpectFigures(RunContinuous({{1}, {-1}, {1}, {-1}, {-1}, {1}, {1}}, CutAt(0.0)),
                {{"TestStatistic", 5},
                 {"RunsParameters/Mean", 4.428571428571429},
                 {"RunsParameters/StdDev", 1.178030178747903},
                 {"StandardError", 1.178030178747903},
                 {"StandardTestStatistic", 0.06063390625908303, 1e-13},
                 {"AsymptoticSig2Tailed", 0.9516507699020017, 1e-13}});
}

TEST(RunsTest, AValueAtTheCutPointIsAbove) {
  ExpectTexts(RunContinuous({{2.0}, {3.0}, {1.0}, {2.0}}, CutAt(2.0)),
              {{"TestStatistic", "3"},
               {"ConditionKey", "ACutPointIsSpecified_O_Runs_2"},
               {"Condition/%1", "2"}});
}

TEST(RunsTest, MedianAndMeanComeFromTheSample) {
  const Rows rows{{1.0}, {9.0}, {2.0}, {3.0}, {QDMV::gMissingValue}};
  EXPECT_EQ(RunContinuous(rows, Cut("cutPointMedian")).Text("Condition/%1"), "2.5");
  const AlgorithmElement result = RunContinuous(rows, Cut("cutPointMean"));
  EXPECT_EQ(result.Text("Condition/%1"), "3.75");
  EXPECT_EQ(result.Text("TestStatistic"), "3") << "the missing value is no step";
}

TEST(RunsTest, AFieldWithoutValuesHasNoCutPoint) {
  for (const char* cut : {"cutPointMedian", "cutPointMean"}) {
    ExpectTexts(
        RunContinuous({{QDMV::gMissingValue}, {QDMV::gMissingValue}}, Cut(cut)),
        {{"ConditionKey", "ACutPointIsSpecified_O_Runs_2"}, {"Condition/%1", "__MISSING__"}});
  }
}

TEST(RunsTest, AWeightCountsInItsGroupAndIsOneStep) {
  ExpectTexts(RunContinuous({{1, 5.9}, {-1, 2}, {-2, 1}, {3, 4}}, CutAt(0.0)),
              {{"TotalN", "12"}, {"TestStatistic", "3"}});
}

TEST(RunsTest, CategoriesAreSplitByTheDataOrByAList) {
  // The first record's category comes first; codes lose their fractions.
  ExpectTexts(RunEntry(VariableListBuilder().Nominal("answer", {"yes", "no"}).Build(),
                       {{1.5}, {0.5}, {-0.5}, {1}}, "ORuns",
                       Entry("variableName", "answer", "catVarClassFormation", "getFromData")),
              {{"TestStatistic", "3"}, {"Condition/%1", "1"}, {"Condition/%2", "0"}});
  ExpectTexts(
      RunEntry(VariableListBuilder().Nominal("answer", {"yes", "no"}).Build(), {{1}, {1}}, "ORuns",
               Entry("variableName", "answer", "catVarClassFormation", "getFromData")),
      {{"Condition/%1", "1"}, {"Condition/%2", ""}});
  ExpectTexts(RunEntry(VariableListBuilder().Nominal("letter", {"a", "b", "c"}).Build(),
                       {{0}, {2}, {1}, {1}, {0}}, "ORuns",
                       Entry("variableName", "letter", "catVarClassFormation", "givenCategoryList",
                             "givenCategoryList", Texts{"c", "z", "a"})),
              {{"TestStatistic", "3"},
               {"ConditionKey", "CategoryListsAreSpecified_O_Runs_3"},
               {"Condition/%1", "2;0;-1"},
               {"Condition/%2", "1"},
               {"ValsNotInTheCategoreis/0", "z"}});
}

TEST(RunsTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Continuous("x")
                             .Nominal("answer", {"yes", "no"})
                             .Nominal("letter", {"a", "b", "c"})
                             .Other("odd")
                             .Build();
  const auto split = [](const char* name, const char* word) {
    return Entry("variableName", name, "catVarClassFormation", word);
  };
  const TestSettings listed = split("answer", "givenCategoryList");
  const auto list = [&listed](const Texts& texts) {
    return TestSettings(listed).Put("givenCategoryList", texts);
  };
  ExpectMessages("ORuns", variables, {{1, 0, 0, 1}},
                 {{"no field", Entry(), Error(220101)},
                  {"an unknown one", Entry("variableName", "nobody"), Error(220103, {"nobody"})},
                  {"no formation", Entry("variableName", "x"), Error(220101, {"x"})},
                  {"an unknown cut", Cut("cutPointMode"), Error(220101, {"x"})},
                  {"a kind that fits no test",
                   Entry("variableName", "odd", "contVarClassFormation", "cutPointMean"),
                   Error(220101, {"odd"})},
                  {"no cut point", Cut("cutPointValue"), Error(220110, {"x"})},
                  {"an unknown split", split("answer", "byChance"), Error(220101, {"answer"})},
                  {"three categories", split("letter", "getFromData"), Error(220111, {"letter"})},
                  {"no list", listed, Error(220109, {"answer"})},
                  {"no category in the list", list({"maybe"}), Error(220109, {"answer"})},
                  {"all of them", list({"no", "yes"}), Error(220109, {"answer"})},
                  {"all values above", CutAt(0.0), Error(220112)},
                  {"all values below", CutAt(2.0), Error(220112)}});
}

}  // namespace
