#include <cmath>
#include <numeric>

#include "support/entry_run.h"

namespace {

TestSettings On(const Texts& names) { return Entry("variableName", names); }

AlgorithmElement Result(VariableListBuilder& pair, const Rows& rows) {
  return RunEntry(pair.Weight("n").Build(), rows, "RMarginalHomogeneity", On({"first", "second"}));
}

TEST(MarginalHomogeneityTest, FiguresAgreeWithTheFormula) {
  // Python: T = 66, E = 79.5, V = 13.25; SciPy 1.17.1 2 * norm.sf(abs((T - E) / sqrt(V)))
  VariableListBuilder pair;
  pair.OrdinalNumbers("first", {1, 2, 3}).OrdinalNumbers("second", {1, 2, 3});
  const AlgorithmElement result = Result(pair, {{0, 0, 20},
                                                {0, 1, 10},
                                                {0, 2, 5},
                                                {1, 0, 3},
                                                {1, 1, 30},
                                                {1, 2, 15},
                                                {2, 1, 5},
                                                {2, 2, 40}});
  ExpectFigures(result, {{"TotalN", 128},
                         {"TestStatistic", 66},
                         {"StandardError", 3.640054944640259},
                         {"StandardTestStatistic", -3.708735226614604},
                         {"AsymptoticSig2Tailed", 0.00020829709987001355, 1e-13}});
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Rows("Content"), (Texts{"20;10;5", "3;30;15", "0;5;40"}));
  // One record is enough: T = 1, E = 1.5, V = 1 / 4.
  VariableListBuilder lone;
  lone.OrdinalNumbers("first", {1, 2}).OrdinalNumbers("second", {1, 2});
  ExpectFigures(Result(lone, {{0, 1, 1}}), {{"TotalN", 1}, {"StandardTestStatistic", -1}});
}

TEST(MarginalHomogeneityTest, CategoriesUniteInTheFirstFieldsOrder) {
  VariableListBuilder pair;
  pair.Ordinal("first", {"low", "mid;dle"}).Ordinal("second", {"high", "low"});
  // low-high 4 (places 0 and 2), middle-low 2 (1 and 0): T = 2, E = (4 * 2 + 2 * 1) / 2 = 5,
  // V = 4 * 1 + 2 / 4 = 4.5
  const AlgorithmElement result = Result(pair, {{0, 0, 4}, {1, 1, 2}, {0, 1, 7}});
  EXPECT_EQ(result.RowNames("Content"), "low;mid\\;dle;high");
  EXPECT_EQ(result.Rows("Content"), (Texts{"7;0;4", "2;0;0", "0;0;0"}));
  ExpectFigures(result, {{"TestStatistic", 2}, {"StandardTestStatistic", -3.0 / std::sqrt(4.5)}});
}

TEST(MarginalHomogeneityTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Ordinal("first", {"a", "b"})
                             .Ordinal("second", {"a", "b"})
                             .OrdinalNumbers("grade", {1, 2})
                             .Ordinal("empty", {})
                             .Continuous("x")
                             .Build();
  ExpectMessages("RMarginalHomogeneity", variables, {{0, 1, 0, -1, 2.0}},
                 {{"no list", Entry(), Error(221703)},
                  {"one field", On({"first"}), Error(221711)},
                  {"three fields", On({"first", "second", "grade"}), Error(221711)},
                  {"unknown name", On({"nobody", "second"}), Error(221710, {"nobody"})},
                  {"a continuous field", On({"first", "x"}), Error(221710)},
                  {"kinds that differ", On({"first", "grade"}), Error(221709)},
                  {"no category at all", On({"empty", "empty"}), Error(221710)}});
  ExpectMessages("RMarginalHomogeneity", variables, {{-1, -1, 0, 0, 0}},
                 {{"no record", On({"first", "second"}), Error(220003)}});
}

TEST(MarginalHomogeneityTest, ATableThatDoesNotFitFailsTheTestAlone) {
  std::vector<double> categories(11586);
  std::iota(categories.begin(), categories.end(), 0.0);
  const QDVarList variables = VariableListBuilder().NominalNumbers("a", categories).Build();
  EXPECT_EQ(RunEntry(variables, {{0}}, "RMarginalHomogeneity", On({"a", "a"})).Messages(),
            Error(220002));
}

}  // namespace
