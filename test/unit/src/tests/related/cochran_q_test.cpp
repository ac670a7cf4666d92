#include "tests/related/cochran_q.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/algorithm_element.h"
#include "support/matchers.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

using Texts = std::vector<std::string>;
using Messages = std::vector<AlgorithmElement::Message>;

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

TestSettings Entry(const Texts& names, const char* comparison = "none") {
  TestSettings entry;
  entry.Put("variableName", names).Put("typeOfMultipleComparison", comparison);
  return entry;
}

AlgorithmElement Result(const QDVarList& variables, const Rows& rows, const TestSettings& entry) {
  return RunEntry(variables, rows, "RCochransQ", entry.Get());
}

// Twelve cases, three methods; statsmodels 0.15.0: cochrans_q(m).
const Texts kTwelve{"110", "110", "100", "111", "010", "110",
                    "101", "110", "110", "000", "110", "110"};

TEST(CochranQTest, TheStatisticAgreesWithStatsmodels) {
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), Entry(kThree));
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(11.4));
  EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(0.0033459654574712716, 1e-13));
  EXPECT_EQ(result.Text("DegreeOfFreedom"), "2");
  EXPECT_EQ(result.Rows("TwoClassComparison/Content"), (Texts{"83;17", "75;25", "16;84"}));
  EXPECT_EQ(result.Messages(), Messages{});
}

TEST(CochranQTest, PairsAreComparedByTheirShares) {
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), Entry(kThree, "pairWise"));
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
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), Entry(kThree, "stepWise"));
  EXPECT_EQ(result.Rows("StepwiseInfo").front(), "2;1;0") << "ascending by share";
  const Texts rows = result.Rows("StepwiseResult/Content");
  // Fields 1 and 0: Q = 1/3 with 1 df (discordant 2 and 1), SciPy chi2.sf(1/3, 1) =
  // 0.5637028616507731.
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0], "1;2;0.333333333333333;;;0.563702861650773;0.563702861650773");
  EXPECT_EQ(rows[1], "0;0;__MISSING__;;;__MISSING__;__MISSING__");
  ASSERT_EQ(result.MessageCodes(), std::vector<std::int32_t>{220013});
}

TEST(CochranQTest, TwoDiscordantFieldsGiveTheSquaredDifference) {
  // (T1 - T2)^2 / N with every record discordant: (9 - 3)^2 / 12.
  Rows rows = Records({"10", "01"});
  rows[0].back() = 9.7;
  rows[1].back() = 3;
  const AlgorithmElement result = Result(Fields(2), rows, Entry({"a", "b"}, "pairWise"));
  EXPECT_EQ(result.Text("TestStatistic"), "3") << "weights without their fraction";
  EXPECT_EQ(result.MessageCodes(), std::vector<std::int32_t>{221220});
  rows[0].back() = 90;
  EXPECT_EQ(Result(Fields(2), rows, Entry({"a", "b"}, "pairWise")).MessageCodes(),
            std::vector<std::int32_t>{221219});
  EXPECT_EQ(Result(Fields(2), rows, Entry({"a", "b"}, "stepWise")).MessageCodes(),
            std::vector<std::int32_t>{221217});
  rows[0].back() = 4;
  EXPECT_EQ(Result(Fields(2), rows, Entry({"a", "b"}, "stepWise")).MessageCodes(),
            std::vector<std::int32_t>{221218});
}

TEST(CochranQTest, EqualFieldsHaveNoVariance) {
  const AlgorithmElement result = Result(Fields(2), Records({"11", "00"}), Entry({"a", "b"}));
  EXPECT_EQ(result.Text("TestStatistic"), "0");
  EXPECT_EQ(result.Text("AsymptoticSig2Tailed"), "1");
}

TEST(CochranQTest, GivenValuesAreTheSuccesses) {
  TestSettings entry = Entry(kThree);
  entry.Put("classFormation", "givenCategoryList").Put("successCategoryList", Texts{"0"});
  const AlgorithmElement result = Result(Fields(3), Records(kTwelve), entry);
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "CategoryListsAreSpecified_R_CochransQ_1");
  EXPECT_EQ(result.Rows("TwoClassComparison/Content").front(), "16;84");
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(11.4)) << "successes and failures trade";
}

TEST(CochranQTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Nominal("a", {"1", "0"})
                             .Nominal("b", {"1", "0"})
                             .Nominal("other", {"x", "y"})
                             .Nominal("one", {"1"})
                             .Nominal("two", {"2"})
                             .Nominal("three", {"3"})
                             .NominalNumbers("grade", {0, 1})
                             .Continuous("x")
                             .Build();
  const auto given = [](const Texts& names, const Texts& values) {
    TestSettings entry = Entry(names);
    entry.Put("classFormation", "givenCategoryList");
    if (!values.empty()) entry.Put("successCategoryList", values);
    return entry;
  };
  std::vector<std::pair<TestSettings, AlgorithmElement::Message>> cases;
  const auto add = [&cases](TestSettings entry, std::int32_t code, Texts params = {}) {
    cases.emplace_back(std::move(entry), AlgorithmElement::Message{code, "error", params});
  };
  add(TestSettings(), 221215);
  add(Entry({"a", "nobody"}), 221203, {"nobody"});
  add(Entry({"a", "x", "grade"}), 221216, {"7", "6"});
  add(Entry({"a"}), 221214);
  add(Entry({"a", "other"}), 221209);
  add(Entry({"one", "one"}), 221209);
  add(Entry({"one", "two", "three"}), 221213);
  add(given({"a", "b"}, {}), 221210);
  add(given({"a", "b"}, {"maybe"}), 221210);
  add(given({"grade", "grade"}, {"1", "0"}), 221210);
  for (const auto& [entry, message] : cases) {
    const AlgorithmElement result = Result(variables, {{0, 1, 0, 0, 0, 0, 0, 1.0}}, entry);
    EXPECT_EQ(result.Messages(), Messages{message});
    EXPECT_EQ(result.Decision(), "unknown");
  }
  EXPECT_EQ(Result(variables, {{-1, 0, 0, 0, 0, 0, 0, 1}}, Entry({"a", "b"})).MessageCodes(),
            std::vector<std::int32_t>{220003});
  EXPECT_EQ(Result(variables, {{0, 0, 0, 0, 0, 0, 0, 1}}, Entry({"a", "b"})).MessageCodes(),
            std::vector<std::int32_t>{221210})
      << "always a success";
  NPARCochransQ test(RelatedSettings({0, 1}), &variables);
  EXPECT_THAT(test.BeginPass(), HasCode(221206)) << "no summaries";
}

}  // namespace
