#include "support/entry_run.h"

namespace {

const Texts kThree{"a", "b", "c"};

/// k fields "a", "b", ... with the categories "1" and "0", then a weight.
QDVarList Fields(int k) {
  VariableListBuilder builder;
  for (int i = 0; i < k; ++i)
    builder.Nominal(std::string(1, static_cast<char>('a' + i)), {"1", "0"});
  return builder.Weight("n").Build();
}

/// Records from texts of successes and failures, weight 1 each.
Rows Records(const Texts& texts) {
  Rows rows;
  for (const std::string& text : texts) {
    std::vector<double> row;
    for (const char success : text) row.push_back(success == '1' ? 0.0 : 1.0);
    row.push_back(1.0);
    rows.push_back(row);
  }
  return rows;
}

TestSettings On(const Texts& names, const char* comparison = "none") {
  return Entry("variableName", names, "typeOfMultipleComparison", comparison);
}

/// With given values as successes.
TestSettings Given(const Texts& names, const Texts& values) {
  return On(names).Put("classFormation", "givenCategoryList", "successCategoryList", values);
}

AlgorithmElement Result(const QDVarList& variables, const Rows& rows, const TestSettings& entry) {
  return RunEntry(variables, rows, "RCochransQ", entry);
}

// Twelve cases, three methods; statsmodels 0.15.0: cochrans_q(m).
const Texts kTwelve{"110", "110", "100", "111", "010", "110",
                    "101", "110", "110", "000", "110", "110"};

TEST(CochranQTest, TheStatisticAgreesWithStatsmodels) {
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), On(kThree));
  ExpectFigures(result, {{"TestStatistic", 11.4},
                         {"AsymptoticSig2Tailed", 0.0033459654574712716, 1e-13},
                         {"DegreeOfFreedom", 2}});
  EXPECT_EQ(result.Rows("TwoClassComparison/Content"), (Texts{"83;17", "75;25", "16;84"}));
  EXPECT_EQ(result.Messages(), Messages{});
}

TEST(CochranQTest, PairsAreComparedByTheirShares) {
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), On(kThree, "pairWise"));
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2", "10;9;2"}));
  // Python with SciPy 1.17.1's norm.sf: standard error 0.2151657414559676.
  const Texts rows = result.Rows("PairwiseResult/Content");
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].substr(0, 20), "0;1;0.08333333333333");
  EXPECT_EQ(rows[1],
            "0;2;0.666666666666667;0.215165741455968;3.09838667696593;0.00194577369373915;"
            "0.00583732108121745");
  EXPECT_EQ(rows[0].substr(rows[0].size() - 2), ";1") << "cut to 1";
}

TEST(CochranQTest, TheStepDownFindsTheHomogeneousFields) {
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), On(kThree, "stepWise"));
  EXPECT_EQ(result.Rows("StepwiseInfo").front(), "2;1;0") << "ascending by share";
  const Texts rows = result.Rows("StepwiseResult/Content");
  // Fields 1 and 0: Q = 1/3 with 1 df (discordant 2 and 1), SciPy chi2.sf(1/3, 1) =
  // 0.5637028616507731.
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0], "1;2;0.333333333333333;;;0.563702861650773;0.563702861650773");
  EXPECT_EQ(rows[1], "0;0;__MISSING__;;;__MISSING__;__MISSING__");
  ASSERT_EQ(result.MessageCodes(), std::vector<std::int32_t>{220013});
}

TEST(CochranQTest, SuccessOfAnOrderedFieldIsThatOfItsOrderedPosition) {
  // "1" is the success: T = 19, 16, 4. Ascending, c is judged by a's codes and a by c's. By hand:
  // c and b, sum w R^2 = 4 + 4 * 12 + 3 + 1 = 56 and Q = (16 - 4)^2 / (2 * 20 - 56) = -9; b and a,
  // 4 + 12 + 1 = 17 and (19 - 16)^2 / (2 * 35 - 17) = 9 / 53. Judged by their own, c and b differ.
  const auto variables = VariableListBuilder()
                             .Nominal("a", {"1", "0"})
                             .Nominal("b", {"1", "0"})
                             .Nominal("c", {"0", "1"})
                             .Weight("n")
                             .Build();
  const AlgorithmElement result = Result(
      variables, {{0, 0, 1, 4}, {0, 0, 0, 12}, {0, 1, 0, 3}, {1, 1, 0, 1}}, On(kThree, "stepWise"));
  EXPECT_EQ(result.Rows("StepwiseInfo").front(), "2;1;0");
  const Texts rows = result.Rows("StepwiseResult/Content");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0], "0;1;-9;;;1;1");
  EXPECT_EQ(rows[1].substr(0, 22), "1;2;0.169811320754717;");
}

TEST(CochranQTest, TheStepDownReadsTheCountsByTheIndexOfAField) {
  // T = 10, 9, 2 of b, c, d, which are 1, 2, 3 in the data: b is ordered by c's, c by d's, and d,
  // for which there is none, by its own.
  Texts texts = kTwelve;
  for (std::string& text : texts) text.insert(0, "0");
  const AlgorithmElement result =
      Result(Fields(4), Records(texts), On({"b", "c", "d"}, "stepWise"));
  EXPECT_EQ(result.Rows("StepwiseInfo"),
            (Texts{"2;3;1", "0.166666666666667;0.166666666666667;0.75"}));
}

TEST(CochranQTest, TwoDiscordantFieldsGiveTheSquaredDifference) {
  // (T1 - T2)^2 / N with every record discordant: (9 - 3)^2 / 12.
  const auto run = [](double first, const char* comparison) {
    return Result(Fields(2), {{0, 1, first}, {1, 0, 3}}, On({"a", "b"}, comparison));
  };
  EXPECT_EQ(run(9.7, "none").Text("TestStatistic"), "3") << "weights without their fraction";
  EXPECT_EQ(run(9, "pairWise").MessageCodes(), Codes{221220});
  EXPECT_EQ(run(4, "stepWise").MessageCodes(), Codes{221218});
  EXPECT_EQ(run(90, "pairWise").MessageCodes(), Codes{221219});
  EXPECT_EQ(run(90, "stepWise").MessageCodes(), Codes{221217});
}

TEST(CochranQTest, GivenValuesAreTheSuccesses) {
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), Given(kThree, {"0"}));
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "CategoryListsAreSpecified_R_CochransQ_1");
  EXPECT_EQ(result.Rows("TwoClassComparison/Content").front(), "16;84");
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(11.4)) << "successes and failures trade";
}

TEST(CochranQTest, FieldsMayLackACategoryThatOthersHave) {
  // The first record's "yes" is the success. T = 5, 9, 0 of N = 9.
  const auto variables = VariableListBuilder()
                             .Nominal("a", {"no", "yes"})
                             .Nominal("b", {"yes"})
                             .Nominal("c", {"no"})
                             .Weight("n")
                             .Build();
  const Rows rows = {{1, 0, 0, 5}, {0, 0, 0, 4}};
  const AlgorithmElement result = Result(variables, rows, On(kThree));
  EXPECT_EQ(result.Rows("TwoClassComparison/Content"), (Texts{"55;45", "100;0", "0;100"}));
  // (k - 1)(k (25 + 81) - 14^2) / (k 14 - (5 * 4 + 4)) with k = 3.
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(2.0 * 122 / 18));
  EXPECT_EQ(Result(variables, rows, On({"b", "a"})).Rows("TwoClassComparison/Content"),
            (Texts{"100;0", "55;45"}));
}

TEST(CochranQTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Nominal("a", {"1", "0"})
                             .Nominal("b", {"1", "0"})
                             .Nominal("other", {"x", "y"})
                             .Nominal("partly", {"x", "1"})
                             .Nominal("one", {"1"})
                             .Nominal("two", {"2"})
                             .Nominal("three", {"3"})
                             .NominalNumbers("grade", {0, 1})
                             .Continuous("x")
                             .Build();
  const TestSettings ab = On({"a", "b"});
  ExpectMessages("RCochransQ", variables, {{0, 1, 0, 0, 0, 0, 0, 0, 1.0}},
                 {{"no list", Entry(), Error(221215)},
                  {"unknown name", On({"a", "nobody"}), Error(221203, {"nobody"})},
                  {"unfit fields", On({"a", "x", "grade"}), Error(221216, {"8", "7"})},
                  {"one field", On({"a"}), Error(221214)},
                  {"other categories", On({"a", "other"}), Error(221209)},
                  {"one other category", On({"a", "partly"}), Error(221209)},
                  {"constant all", On({"one", "one"}), Error(221209)},
                  {"three constants", On({"one", "two", "three"}), Error(221213)},
                  {"no given value", TestSettings(ab).Put("classFormation", "givenCategoryList"),
                   Error(221210)},
                  {"an unknown one", Given({"a", "b"}, {"maybe"}), Error(221210)},
                  {"all values", Given({"grade", "grade"}, {"1", "0"}), Error(221210)}});
  ExpectMessages("RCochransQ", variables, {{-1, 0, 0, 0, 0, 0, 0, 0, 1}},
                 {{"no record", ab, Error(220003)}});
  ExpectMessages("RCochransQ", variables, {{0, 0, 0, 0, 0, 0, 0, 0, 1}},
                 {{"always a success", ab, Error(221210)}});
}

}  // namespace
