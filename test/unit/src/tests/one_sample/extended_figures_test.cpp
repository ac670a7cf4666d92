#include "support/entry_run.h"

// The extended figures of the tests of one field.
namespace {

/// Units of the categories a, b, c in turn, as weights, and one more record of no weight.
AlgorithmElement OfCounts(const Codes& counts, const char* name, TestSettings entry) {
  const auto variables = VariableListBuilder().Nominal("g", {"a", "b", "c"}).Weight("n").Build();
  Rows rows{{0, 0}};
  for (std::size_t i = 0; i < counts.size(); ++i) {
    rows.push_back({static_cast<double>(i), static_cast<double>(counts[i])});
  }
  return RunExtended(variables, rows, name, entry.Put("variableName", "g"));
}

TestSettings FirstIsA() {
  return Entry("catVarClassFormation", "givenCategoryList", "givenCategoryList", Texts{"a"});
}

TEST(ExtendedOneField, ClassesHaveTheirExactTailsAndIntervals) {
  // SciPy 1.17.1: binomtest(7, 20, 0.3, alternative); statsmodels 0.15.0:
  // proportion_effectsize(0.35, 0.3), proportion_confint(7, 20, 0.05, "wilson" and
  // "agresti_coull").
  const std::vector<Figure> share = {{"ExtendedFigures/FirstClassN", 7},
                                     {"ExtendedFigures/SecondClassN", 13},
                                     {"ExtendedFigures/FirstClassShare", 0.35},
                                     {"ExtendedFigures/WilsonLower", 0.18119182410108203},
                                     {"ExtendedFigures/WilsonUpper", 0.5671457233147638},
                                     {"ExtendedFigures/AgrestiCoullLower", 0.179926361438228},
                                     {"ExtendedFigures/AgrestiCoullUpper", 0.5684111859776177}};
  const AlgorithmElement test =
      OfCounts({7, 10, 3}, "OBinomial", FirstIsA().Put("testProbability", 0.3));
  ExpectFigures(test, share);
  ExpectFigures(test, {{"ExtendedFigures/ExactSig1TailedLess", 0.7722717974181608},
                       {"ExtendedFigures/ExactSig1TailedGreater", 0.3919901877990756},
                       {"ExtendedFigures/ExactSig2Tailed", 0.6294979666766769},
                       {"ExtendedFigures/CohensH", 0.1068241920520907, 1e-13}});
  const AlgorithmElement interval =
      OfCounts({7, 10, 3}, "OEstimateConfidenceInterval", FirstIsA().Put("isDoJeffreys", "true"));
  ExpectFigures(interval, share);
  EXPECT_EQ(interval.ChildNames("ExtendedFigures").size(), share.size());
  EXPECT_EQ(interval.ChildNames().back(), "StructuredTable ExtendedFigures");
}

TEST(ExtendedOneField, ExactTailsOfAClassEndAtABillionUnits) {
  for (const std::int32_t second : {499999999, 500000000}) {
    const AlgorithmElement result = OfCounts({500000001, second}, "OBinomial", FirstIsA());
    EXPECT_EQ(result.Has("ExtendedFigures/ExactSig2Tailed"), second == 499999999);
    EXPECT_TRUE(result.Has("ExtendedFigures/WilsonLower"));
  }
}

TEST(ExtendedOneField, CategoriesHaveResidualsAndAnExactValue) {
  // SciPy 1.17.1: power_divergence([20, 5, 9], [17, 8.5, 8.5], lambda_="log-likelihood");
  // residuals by NumPy; the exact value in fractions, by Python.
  TestSettings expected = Entry("classFormation", "givenExpectedValue");
  std::vector<QDSettings> list;
  for (const auto& [category, value] : {std::pair{"a", 2.0}, {"b", 1.0}, {"c", 1.0}}) {
    list.push_back(Entry("categoryValue", category, "expectedValue", value));
  }
  const AlgorithmElement result = OfCounts({20, 5, 9}, "OChiSquare", expected.Put("custom", list));
  ExpectFigures(result, {{"ExtendedFigures/LikelihoodRatioStatistic", 2.223326118408369, 1e-13},
                         {"ExtendedFigures/LikelihoodRatioSig", 0.3290113405005859, 1e-13},
                         {"ExtendedFigures/CohensW", 0.24253562503633297},
                         {"ExtendedFigures/ExactMultinomialSig", 0.409599955593010989, 1e-13}});
  EXPECT_EQ(result.RowNames("ExtendedFigures/Categories"), "0;1;2");
  EXPECT_EQ(result.ColumnNames("ExtendedFigures/Categories"),
            "Observed;Expected;PearsonResidual;StandardizedResidual");
  EXPECT_EQ(result.Rows("ExtendedFigures/Categories"),
            (Texts{"20;17;0.727606875108999;1.02899151085505",
                   "5;8.5;-1.20049009599756;-1.38620656016734",
                   "9;8.5;0.171498585142509;0.198029508595335"}));
  // Two of three categories: n + 1 outcomes; a text that is no category keeps its row.
  for (const std::int32_t n : {999999, 1000000}) {
    list = {Entry("categoryValue", "a", "expectedValue", 1.0),
            Entry("categoryValue", "nobody", "expectedValue", 3.0)};
    const AlgorithmElement large = OfCounts(
        {n}, "OChiSquare", Entry("classFormation", "givenExpectedValue").Put("custom", list));
    EXPECT_EQ(large.Text("ExtendedFigures/ExactMultinomialSig"), n == 999999 ? "0" : "(absent)");
    EXPECT_EQ(large.RowNames("ExtendedFigures/Categories"), "0;-1");
  }
}

AlgorithmElement KsOf(const char* family, const std::vector<double>& values, TestSettings entry,
                      double weight = 1.0) {
  Rows rows;
  for (const double x : values) rows.push_back({x, weight});
  return RunExtended(VariableListBuilder().Continuous("x").Weight("n").Build(), rows,
                     std::string("OKolmogorovSmirnov") + family, entry.Put("variableName", "x"));
}

const std::vector<double> kSeven{-1.2, 0.4, 0.4, 0.9, 1.5, 2.3, 3.1};
const std::vector<double> kTimes{0.1, 0.3, 0.3, 0.8, 1.9, 2.5, 4.0};

struct ExactKsCase {
  const char* family;
  const std::vector<double>& values;
  TestSettings entry;
  double location, limiting, exact, less, greater;
};

// SciPy 1.17.1: ks_1samp(x, cdf, alternative, method="exact"), the alternatives "two-sided",
// "greater" and "less" in this order; kstwobign.sf(sqrt(7) * D).
const ExactKsCase kExactKs[] = {
    {"Normal", kSeven, Entry("mean", 0.5, "stdDev", 1.2), 0.4, 0.45466574291441286,
     0.37385974372416597, 0.9060172716242323, 0.18766100868202293},
    {"Uniform", kSeven, Entry("min", -2.0, "max", 4.0), 0.4, 0.7436715066070163, 0.6550685279772885,
     0.6608125962598359, 0.3383464130994982},
    {"Exponential", kTimes, Entry("mean", 2.0), 0.3, 0.6013785570402823, 0.5105178290418689,
     0.2584502162905545, 0.9351005755128964},
};

TEST(ExtendedOneField, AGivenDistributionHasExactTails) {
  for (const ExactKsCase& row : kExactKs) {
    SCOPED_TRACE(row.family);
    const AlgorithmElement result = KsOf(row.family, row.values, row.entry);
    ExpectFigures(result, {{"ExtendedFigures/ValidN", 7},
                           {"ExtendedFigures/AbsoluteDifferenceLocation", row.location},
                           {"ExtendedFigures/LimitingSig2Tailed", row.limiting, 1e-12},
                           {"ExtendedFigures/ExactSig2Tailed", row.exact, 1e-12},
                           {"ExtendedFigures/ExactSig1TailedLess", row.less, 1e-12},
                           {"ExtendedFigures/ExactSig1TailedGreater", row.greater, 1e-12}});
    EXPECT_EQ(result.ChildNames("ExtendedFigures").size(), 6U);
  }
  for (const std::size_t n : {2000U, 2001U}) {
    EXPECT_EQ(KsOf("Uniform", std::vector<double>(n, 0.5), Entry("min", 0.0, "max", 1.0))
                  .Has("ExtendedFigures/ExactSig2Tailed"),
              n == 2000);
  }
  // Below the range or above it nobody counts.
  EXPECT_EQ(KsOf("Uniform", kSeven, Entry("min", 0.0, "max", 3.0)).Text("ExtendedFigures/ValidN"),
            "5");
}

TEST(ExtendedOneField, TheLargestDifferenceIsFoundAtItsFirstValue) {
  // Between 1 and 3 of the uniform on 0 to 4 the differences are 1/4 at each end.
  EXPECT_EQ(KsOf("Uniform", {1, 3}, Entry("min", 0.0, "max", 4.0))
                .Text("ExtendedFigures/AbsoluteDifferenceLocation"),
            "1");
  // SciPy 1.17.1: poisson.cdf(3, 6) = 0.1512, of which the sample has nothing yet.
  EXPECT_EQ(KsOf("Poisson", {4, 5, 6, 7, 8}, Entry("mean", 6.0))
                .Text("ExtendedFigures/AbsoluteDifferenceLocation"),
            "8");
  EXPECT_EQ(KsOf("Poisson", {6, 6, 6}, Entry("mean", 6.0))
                .Text("ExtendedFigures/AbsoluteDifferenceLocation"),
            "5");
}

TEST(ExtendedOneField, LillieforsStandsWhereParametersComeFromTheData) {
  const auto figure = [](const char* family, const std::vector<double>& values,
                         const TestSettings& entry, double weight = 1.0) {
    const AlgorithmElement result = KsOf(family, values, entry, weight);
    EXPECT_TRUE(result.Has("ExtendedFigures/LimitingSig2Tailed"));
    std::string found;
    for (const std::string& name : result.ChildNames("ExtendedFigures")) {
      if (name.find("Lilliefors") != std::string::npos || name.find("Exact") != std::string::npos) {
        found += name.substr(name.find(' ') + 1) + ' ';
      }
    }
    return found;
  };
  const TestSettings none = Entry();
  const std::vector<double> skewed{1, 1, 1, 1, 1, 2, 9, 1, 1, 20};
  EXPECT_EQ(figure("Normal", kSeven, none), "LillieforsSigAtLeast ");
  EXPECT_EQ(figure("Normal", skewed, none), "LillieforsSig ");
  EXPECT_EQ(figure("Normal", {1, 2, 3, 4}, none), "");
  EXPECT_EQ(figure("Normal", {1, 2, 3, 4, 5}, none), "LillieforsSigAtLeast ");
  EXPECT_EQ(figure("Normal", kSeven, Entry("mean", 1.0)), "");
  EXPECT_EQ(figure("Exponential", kTimes, none), "LillieforsSigAtLeast ");
  EXPECT_EQ(figure("Exponential", {0.6, 0.8, 1, 1.2, 1.5}, none), "LillieforsSig ");
  EXPECT_EQ(figure("Exponential", {0.6, 0.8, 1, 1.2, 1.5}, none, 2.0), "LillieforsSigAtMost ");
  EXPECT_EQ(figure("Exponential", {1, 1.1, 1.2, 1.3}, none), "");
  EXPECT_EQ(figure("Uniform", kSeven, none), "");
  EXPECT_EQ(figure("Poisson", {1, 2, 2, 3, 4}, none), "");
}

AlgorithmElement RunsOf(const std::vector<double>& values, double weight = 1.0) {
  Rows rows;
  for (const double x : values) rows.push_back({x, weight});
  return RunExtended(
      VariableListBuilder().Continuous("x").Weight("n").Build(), rows, "ORuns",
      Entry("variableName", "x", "contVarClassFormation", "cutPointValue", "cutPointValue", 0.0));
}

TEST(ExtendedOneField, RunsHaveExactTailsAtAnySize) {
  // 3 runs of 5 and 8 units; in integers by Python, z by hand.
  const AlgorithmElement few = RunsOf({1, 1, 1, 1, -1, -1, -1, -1, -1, 1, 1, 1, 1});
  ExpectFigures(few,
                {{"ExtendedFigures/FirstGroupN", 5},
                 {"ExtendedFigures/SecondGroupN", 8},
                 {"ExtendedFigures/UncorrectedStandardTestStatistic", -2.5550652063998727},
                 {"ExtendedFigures/UncorrectedAsymptoticSig2Tailed", 0.010616790721250982, 1e-13},
                 {"ExtendedFigures/ExactSig1TailedLess", 0.010101010101010101},
                 {"ExtendedFigures/ExactSig1TailedGreater", 0.998445998445998446},
                 {"ExtendedFigures/ExactSig2Tailed", 0.010101010101010101}});
  // One unit of either kind has two runs in any order.
  const AlgorithmElement two = RunsOf({1, -1});
  EXPECT_EQ(two.Text("ExtendedFigures/ExactSig2Tailed"), "1");
  EXPECT_FALSE(two.Has("ExtendedFigures/UncorrectedStandardTestStatistic"));
  for (const double weight : {25000.0, 25001.0}) {
    EXPECT_EQ(RunsOf({1, -1, 1, -1}, weight).Has("ExtendedFigures/ExactSig2Tailed"),
              weight == 25000.0);
  }
}

}  // namespace
