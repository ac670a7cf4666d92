#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include "support/entry_run.h"

// What the tests of related fields, and Wilcoxon's of one sample, hand to the functions of
// kit/statistics for their extended figures.
namespace {

QDVarList Variables() {
  VariableListBuilder builder;
  builder.Continuous("x").Continuous("y").Continuous("z");
  builder.Nominal("p", {"yes", "no"}).Nominal("q", {"yes", "no"});
  return builder.Weight("w").Build();
}

/// Differences y - x, ties and zeros among them: 2 0 1 -1 0 4 5 4 0 4 -1 5.
const Rows kValues{{5, 7, 6, 0, 0, 1},   {3, 3, 4, 0, 0, 1}, {8, 9, 8, 0, 0, 1},
                   {6, 5, 6, 0, 0, 1},   {7, 7, 7, 0, 0, 1}, {2, 6, 5, 0, 0, 1},
                   {9, 14, 10, 0, 0, 1}, {4, 8, 5, 0, 0, 1}, {6, 6, 6, 0, 0, 1},
                   {5, 9, 8, 0, 0, 1},   {7, 6, 9, 0, 0, 1}, {3, 8, 6, 0, 0, 1}};
const Rows kFour{{1, 2, 0, 0, 0, 1}, {1, 3, 0, 0, 0, 1}, {1, 4, 0, 0, 0, 1}, {1, 5, 0, 0, 0, 1}};

/// Four successes of both p and q, nine of neither.
Rows Changes(double onlyFirst, double onlySecond) {
  return {{0, 0, 0, 0, 0, 4},
          {0, 0, 0, 0, 1, onlyFirst},
          {0, 0, 0, 1, 0, onlySecond},
          {0, 0, 0, 1, 1, 9}};
}

const TestSettings kX = Entry("variableName", "x", "userSpecifyTestValue", "true", "testValue", 6);
const TestSettings kXY = Entry("variableName", Texts{"x", "y"});
const TestSettings kXYZ =
    Entry("variableName", Texts{"x", "y", "z"}, "typeOfMultipleComparison", "none");
const TestSettings kPQ =
    Entry("variableName", Texts{"p", "q"}, "classFormation", "givenCategoryList", "categoriesList",
          Texts{"yes"}, "successCategoryList", Texts{"yes"});

const Texts kFieldsXYZ{"12;5.5;3.5;7", "12;7;6;8.5", "12;6;5.5;8"};
const Texts kFieldsXY(kFieldsXYZ.begin(), kFieldsXYZ.end() - 1);
const Texts kFieldsPQ{"24;0.631578947368421;0.47283959557009;0.76615780752844",
                      "9;0.236842105263158;0.129937070170541;0.392068123632398"};

struct ExtendedCase {
  std::string entryName;
  TestSettings entry;
  Rows rows;
  std::string figures;  // names and values
  Texts fields = {};    // rows of the table
};

// Python 3.11 and mpmath 1.4.1 at 30 digits: distributions as whole numbers, Walsh averages listed.
// SciPy 1.17.1: wilcoxon(d, zero_method="pratt", correction=False, method="approx"), wilcoxon(d[d
// != 0], method=PermutationMethod()) for the conditional value. McNemar: binomtest(b, n, 0.5), its
// proportion_ci("exact"), and binom.cdf less half of binom.pmf. Shares: statsmodels 0.15.0,
// proportion_confint(method="wilson").
const ExtendedCase kCases[] = {
    {"OWilcoxonSignedRanks", kX, kValues,
     "PositiveN 4 NegativeN 6 ZeroN 2 AsymptoticSig1TailedLess 0.17711049461750025 "
     "ConditionalExactSig1TailedLess 0.21484375 PrattStandardTestStatistic -0.87132983781947339 "
     "RankBiserial -0.32727272727272727 PseudoMedian 5.5 PseudoMedianLower 4.0 "
     "PseudoMedianUpper 7.0 PseudoMedianAttainedLevel 0.95751953125"},
    {"RWilcoxonSignedRanks", kXY, kValues,
     "AsymptoticSig1TailedLess 0.98641967894641099 "
     "AsymptoticSig1TailedGreater 0.013580321053589009 "
     "CorrectedStandardTestStatistic 2.1494931624955157 "
     "CorrectedAsymptoticSig2Tailed 0.031595327520695908 "
     "CorrectedAsymptoticSig1TailedLess 0.98836308350821428 "
     "CorrectedAsymptoticSig1TailedGreater 0.015797663760347954 "
     "ConditionalExactSig2Tailed 0.03125 ConditionalExactSig1TailedLess 0.9921875 "
     "ConditionalExactSig1TailedGreater 0.015625 ConditionalExactPointProbability 0.0078125 "
     "PrattTestStatistic 62.0 PrattStandardTestStatistic 2.0692676402302812 "
     "PrattAsymptoticSig2Tailed 0.038520978488609355 RankBiserial 0.82222222222222222 "
     "PseudoMedian 2.0 PseudoMedianLower 0.0 PseudoMedianUpper 4.0 "
     "PseudoMedianAttainedLevel 0.95751953125",
     kFieldsXY},
    {"RSign", kXY, kValues,
     "ExactSig2Tailed 0.1796875 ExactSig1TailedLess 0.98046875 ExactSig1TailedGreater 0.08984375 "
     "UncorrectedStandardTestStatistic 1.6666666666666667 "
     "UncorrectedAsymptoticSig2Tailed 0.095580704545629416 PositiveShare 0.77777777777777778 "
     "PositiveShareLower 0.45258896910698894 PositiveShareUpper 0.93677489288215327 "
     "MedianDifference 1.5 MedianDifferenceLower 0.0 MedianDifferenceUpper 4.0 "
     "MedianDifferenceAttainedLevel 0.96142578125",
     kFieldsXY},
    {"RHodgesLehmannEstimatePairs", kXY, kValues,
     "AttainedLevel 0.94775390625 LevelIsAttainable 1 ExactLower 0.0 ExactUpper 4.0 "
     "ExactAttainedLevel 0.95751953125",
     kFieldsXY},
    // Four differences cannot have 95 %.
    {"RHodgesLehmannEstimatePairs",
     kXY,
     kFour,
     "AttainedLevel 0.875 LevelIsAttainable 0 ExactLower 1.0 ExactUpper 4.0 "
     "ExactAttainedLevel 0.875",
     {"4;1;1;1", "4;3.5;2.5;4.5"}},
    {"RMcNemar", kPQ, Changes(20, 5),
     "UncorrectedTestStatistic 9.0 UncorrectedAsymptoticSig2Tailed 0.0026997960632601891 "
     "ExactSig2Tailed 0.0040773153305053711 ExactSig1TailedLess 0.0020386576652526855 "
     "ExactSig1TailedGreater 0.99954473972320557 MidPSig2Tailed 0.0024939179420471191 "
     "OddsRatio 0.25 OddsRatioLower 0.073320064993693729 OddsRatioUpper 0.68644709537546107",
     kFieldsPQ},
    {"RCochransQ", kPQ, Changes(20, 5), "EtaSquaredQ 0.236842105263157895", kFieldsPQ},
    {"RFriedmansTwoWayByRanks", kXYZ, kValues,
     "ImanDavenportF 4.7041800643086817 ImanDavenportFDegreeOfFreedom1 2 "
     "ImanDavenportFDegreeOfFreedom2 22 ImanDavenportFSig 0.019913683852492434 "
     "MeanSpearman 0.23587223587223587",
     kFieldsXYZ},
};

void ExpectExtended(const AlgorithmElement& result, const std::string& figures,
                    const Texts& fields = {}) {
  std::istringstream words(figures);
  double value = 0.0;
  for (std::string name; words >> name >> value;) {
    EXPECT_THAT(result.Number("ExtendedFigures/" + name), IsCloseTo(value, 1e-12)) << name;
  }
  const Texts rows = fields.empty() ? Texts() : result.Rows("ExtendedFigures/Fields");
  ASSERT_EQ(rows.size(), fields.size());
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_THAT(rows[i], IsRow(fields[i]));
  if (fields.empty()) return;
  const bool areBinary = fields == kFieldsPQ;
  EXPECT_EQ(result.ColumnNames("ExtendedFigures/Fields"),
            areBinary ? "SuccessN;SuccessShare;WilsonLower;WilsonUpper"
                      : "N;Median;LowerQuartile;UpperQuartile");
}

TEST(RelatedExtendedFigures, AgreeWithCountingAndSciPy) {
  for (const ExtendedCase& row : kCases) {
    SCOPED_TRACE(row.entryName);
    ExpectExtended(RunExtended(Variables(), row.rows, row.entryName, row.entry), row.figures,
                   row.fields);
  }
}

/// A table of two ordinal fields with the scores 1, 2, ..., all changes between the first two.
AlgorithmElement Homogeneity(int categories, const Rows& rows) {
  std::vector<double> scores;
  for (int i = 1; i <= categories; ++i) scores.push_back(i);
  VariableListBuilder builder;
  builder.OrdinalNumbers("first", scores).OrdinalNumbers("second", scores).Weight("w");
  return RunExtended(builder.Build(), rows, "RMarginalHomogeneity",
                     Entry("variableName", Texts{"first", "second"}));
}

// As above; Stuart-Maxwell and Bowker: statsmodels 0.15.0, SquareTable(t,
// shift_zeros=False).homogeneity("stuart_maxwell") and .symmetry().
TEST(RelatedExtendedFigures, OfMarginalHomogeneityAgreeWithCountingAndStatsmodels) {
  const Rows rows{{0, 0, 20}, {0, 1, 10}, {0, 2, 5}, {1, 0, 3},
                  {1, 1, 30}, {1, 2, 15}, {2, 1, 5}, {2, 2, 40}};
  ExpectExtended(Homogeneity(3, rows),
                 "AsymptoticSig1TailedLess 0.99989585145006499 "
                 "AsymptoticSig1TailedGreater 0.00010414854993500708 "
                 "ConditionalExactSig2Tailed 0.0001963217873708345 "
                 "ConditionalExactSig1TailedLess 0.99997400380379986 "
                 "ConditionalExactSig1TailedGreater 9.816089368541725e-5 "
                 "StuartMaxwellStatistic 13.764705882352941 StuartMaxwellDegreeOfFreedom 2 "
                 "StuartMaxwellSig 0.0010257277265580745 BowkerStatistic 13.769230769230769 "
                 "BowkerDegreeOfFreedom 3 BowkerSig 0.0032367065032354492");
  EXPECT_FALSE(Homogeneity(3, {{0, 0, 20}, {2, 2, 40}}).Has("ExtendedFigures")) << "no change";
  EXPECT_TRUE(Homogeneity(200, {{0, 1, 3}}).Has("ExtendedFigures/StuartMaxwellSig"));
  const AlgorithmElement many = Homogeneity(201, {{0, 1, 3}});
  EXPECT_FALSE(many.Has("ExtendedFigures/StuartMaxwellSig"));
  EXPECT_TRUE(many.Has("ExtendedFigures/BowkerSig"));
}

struct LimitCase {
  std::string entryName;
  TestSettings entry;
  Rows rows;
  std::string given, absent;  // names
};

/// One record of that weight, y - x = 1.
Rows Ones(double weight) { return {{7, 8, 9, 0, 0, weight}}; }
Rows Zeros(double weight) { return {{6, 6, 6, 0, 0, weight}}; }

const char* const kOne = "OWilcoxonSignedRanks";
const char* const kPairs = "RWilcoxonSignedRanks";
const char* const kLocation = "RHodgesLehmannEstimatePairs";
const char* const kFriedman = "RFriedmansTwoWayByRanks";

const LimitCase kLimits[] = {
    {kOne, kX, Zeros(3), "ZeroN PseudoMedian",
     "ConditionalExactSig2Tailed CorrectedAsymptoticSig2Tailed PrattTestStatistic RankBiserial"},
    {kOne, kX, Ones(1), "ConditionalExactSig2Tailed PseudoMedian", "PseudoMedianLower"},
    {kOne, kX, Ones(2), "PseudoMedianLower", ""},
    {kOne, kX, Ones(500), "ConditionalExactPointProbability PseudoMedianUpper", ""},
    {kOne, kX, Ones(501), "CorrectedAsymptoticSig2Tailed PseudoMedian",
     "ConditionalExactSig2Tailed PseudoMedianUpper"},
    {kOne, kX, Ones(100000), "PseudoMedian", ""},
    {kOne, kX, Ones(100001), "RankBiserial", "PseudoMedian"},
    {kPairs, kXY, Ones(100000), "PseudoMedian Fields", ""},
    {kPairs, kXY, Ones(100001), "RankBiserial", "PseudoMedian Fields"},
    {"RSign", kXY, Zeros(9), "MedianDifferenceLower", "ExactSig2Tailed PositiveShare"},
    {"RSign", kXY, Ones(1), "ExactSig2Tailed MedianDifference", "MedianDifferenceLower"},
    {"RSign", kXY, Ones(2), "MedianDifferenceLower", ""},
    {"RSign", kXY, Ones(100000), "MedianDifferenceLower", ""},
    {"RSign", kXY, Ones(100001), "ExactSig2Tailed", "MedianDifference MedianDifferenceLower"},
    {"RSign", kXY, Ones(1e9), "ExactSig1TailedLess", ""},
    {"RSign", kXY, Ones(1e9 + 1), "PositiveShareLower", "ExactSig1TailedLess"},
    {"RMcNemar", kPQ, Changes(0, 0), "Fields", "UncorrectedTestStatistic OddsRatioLower"},
    {"RMcNemar", kPQ, Changes(0, 1), "UncorrectedTestStatistic OddsRatioLower", ""},
    {"RMcNemar", kPQ, Changes(5e8, 5e8), "ExactSig2Tailed MidPSig2Tailed", ""},
    {"RMcNemar", kPQ, Changes(5e8, 5e8 + 1), "OddsRatio", "ExactSig2Tailed MidPSig2Tailed"},
    {"RMcNemar", kPQ, Changes(0, 5), "OddsRatioLower", "OddsRatio OddsRatioUpper"},
    {kLocation, kXY, Ones(1), "Fields", "LevelIsAttainable ExactLower"},
    {kLocation, kXY, Ones(2), "LevelIsAttainable ExactLower", ""},
    {kLocation, kXY, Ones(500), "AttainedLevel ExactLower", ""},
    {kLocation, kXY, Ones(501), "Fields", "AttainedLevel ExactLower"},
    {kFriedman, kXYZ, Ones(1), "Fields", "MeanSpearman ImanDavenportF"},
    {kFriedman, kXYZ, Ones(2), "MeanSpearman", "ImanDavenportF"},  // full agreement
    {kFriedman, kXYZ, Zeros(2), "Fields", "MeanSpearman"},
    {"RKendallsCoefficient", kXYZ, kValues, "MeanSpearman ImanDavenportF Fields", ""},
    {kFriedman, kXYZ, Ones(100001), "MeanSpearman", "Fields"},
};

void ExpectNames(const AlgorithmElement& result, const std::string& names, bool areGiven) {
  std::istringstream words(names);
  for (std::string name; words >> name;) {
    EXPECT_EQ(result.Has("ExtendedFigures/" + name), areGiven) << name;
  }
}

TEST(RelatedExtendedFigures, AreGivenUpToTheirLimits) {
  for (const LimitCase& row : kLimits) {
    SCOPED_TRACE(row.entryName + ", weight " + std::to_string(row.rows[0].back()));
    const AlgorithmElement result = RunExtended(Variables(), row.rows, row.entryName, row.entry);
    ExpectNames(result, row.given, true);
    ExpectNames(result, row.absent, false);
  }
}

}  // namespace
