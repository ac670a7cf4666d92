#include "support/entry_run.h"

namespace {

const QDVarList kVariables =
    VariableListBuilder().Continuous("x").Continuous("y").Continuous("z").Build();

TestSettings Of(const Texts& names) { return Entry("variableName", names); }

/// Pairs (0, d) with d of either sign and zero.
Rows Pairs(int above, int below, int tied) {
  Rows rows;
  for (int i = 0; i < above; ++i) rows.push_back({0.0, 1.0 + i, 0.0});
  for (int i = 0; i < below; ++i) rows.push_back({2.0 + i, 1.0, 0.0});
  for (int i = 0; i < tied; ++i) rows.push_back({3.0 + i, 3.0 + i, 0.0});
  return rows;
}

// z by hand; asymptotic from R 4.2.2, 2 * pnorm(-abs(z)); exact by counting:
// C(25,18) + ... + C(25,25) = 726206 of 2^25 outcomes.
TEST(SignTest, FiguresAgreeWithCountingAndR) {
  const auto result = [](int above, int below) {
    return RunEntry(kVariables, Pairs(above, below, 3), "RSign", Of({"x", "y"}));
  };
  ExpectFigures(result(18, 7), {{"TestStatistic", 18},
                                {"StandardTestStatistic", 2.0},
                                {"AsymptoticSig2Tailed", 0.04550026389635842},
                                {"ExactSig2Tailed", 2 * 726206 / 33554432.0}});
  ExpectFigures(result(18, 8), {{"ExactSig2Tailed", std::nullopt}});
  // Ties alone: p is 1. One each: the doubled tail is above 1, the correction past n/2.
  ExpectFigures(result(0, 0), {{"AsymptoticSig2Tailed", 1.0}, {"ExactSig2Tailed", std::nullopt}});
  ExpectFigures(result(1, 1), {{"StandardTestStatistic", 0.0}, {"ExactSig2Tailed", 1.0}});
}

TEST(SignTest, TheExactValueDecidesAndALevelEqualToItRetains) {
  // n = 6, all above: exact 2 / 64, asymptotic 2 * (1 - Phi(2.5 / sqrt(1.5))) = 0.0412.
  for (const auto& [sigLevel, decision] :
       {std::pair(0.04, "reject"), {0.03125, "retain"}, {0.03126, "reject"}}) {
    const std::string document = RunDocument(
        kVariables, Pairs(6, 0, 0),
        Entry("missingTreatment", "analysis", "sigLevel", sigLevel, "RSign", Of({"x", "y"})));
    EXPECT_EQ(AlgorithmElement::AllOf(document).at(0).Decision(), decision) << sigLevel;
  }
}

TEST(SignTest, DocumentHoldsCountsHistogramAndFigures) {
  const AlgorithmElement result = RunEntry(
      kVariables, {{3, 1, 0}, {1, 1, 0}, {QDMV::gMissingValue, 4, 0}, {0, 1, 0}, {7, 7, 0}},
      "RSign", Of({"y", "x"}));
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) WarningMessages(Message(code type paramNum)) "
            "ContinuousDistribution(NegativeDifferences Ties PositiveDifferences Interval[]) "
            "StatisticsResult(TotalN TestStatistic StandardError StandardTestStatistic "
            "AsymptoticSig2Tailed ExactSig2Tailed)");
  ExpectTexts(result, {{"ConditionKey", "R_Sign_2"},
                       {"Condition/%0", "1"},
                       {"Condition/%1", "0"},
                       {"NegativeDifferences", "1"},
                       {"Ties", "2"},
                       {"PositiveDifferences", "1"},
                       {"TotalN", "4"},
                       {"StandardError", "0.707106781186548"}});
  EXPECT_EQ(result.Rows("Interval"), (Texts{"1;1;2", "-1;2;0"}));
}

TEST(SignTest, NoPairStillWritesItsElement) {
  const struct {
    Texts names;
    const char* shown;
  } cases[] = {{{"y", "y"}, "1"}, {{"x"}, "__MISSING__"}, {{"x", "y", "z"}, "__MISSING__"}};
  for (const auto& row : cases) {
    EXPECT_EQ(RunEntry(kVariables, {{1, 2, 3}}, "RSign", Of(row.names)).Text("%0"), row.shown);
  }
}

TEST(SignTest, EachFailureHasItsCode) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Continuous("y").Nominal("g", {"a"}).Other("z").Build();
  ExpectMessages(
      "RSign", variables, {{1, 2, 0, 0}, {3, 1, 0, 0}},
      {{"no list", Entry(), Error(220912)},
       {"unknown name ends the walk", Of({"x", "nobody", "g"}), Error(220903, {"nobody"})},
       {"also behind an unfit variable", Of({"g", "nobody", "x"}), Error(220903, {"2", "nobody"})},
       {"every unfit variable is told", Of({"g", "x", "z"}), Error(220915, {"2", "3"})},
       {"one variable", Of({"x"}), Error(220918)},
       {"three variables", Of({"x", "y", "x"}), Error(220917)},
       {"the same twice is found in the first pass", Of({"x", "x"}), Error(220918)},
       {"a pair", Of({"y", "x"}), {{220916, "helpMessage", {}}}}});
  ExpectMessages("RSign", VariableListBuilder().Continuous("x").Continuous("y").Weight("n").Build(),
                 {{1, 2, 0.9}}, {{"no weight at all", Of({"x", "y"}), Error(220003)}});
}

TEST(SignTest, SummariesOfTheFirstTwoVariablesAreShownWhicheverPairIsTested) {
  const QDVarList variables =
      VariableListBuilder().Continuous("a").Continuous("b").Continuous("c").Continuous("d").Build();
  const std::string document =
      RunEntryDocument(variables, {{1, 2, 3, 4}}, "RSign", Entry("variableName", Texts{"c", "d"}));
  EXPECT_NE(document.find("<FieldInfo varIndex=\"0\">"), std::string::npos);
  EXPECT_NE(document.find("<FieldInfo varIndex=\"1\">"), std::string::npos);
  EXPECT_EQ(document.find("<FieldInfo varIndex=\"2\">"), std::string::npos);
}

}  // namespace
