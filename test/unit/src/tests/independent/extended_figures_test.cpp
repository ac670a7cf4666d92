#include "support/group_run.h"

// The extended figures of the tests of independent groups.
namespace {

AlgorithmElement Extended(const char* name, const Samples& samples,
                          const TestSettings& entry = GroupedEntry()) {
  return RunExtended(GroupedVariables(samples.size()), GroupedRows(samples), name, entry);
}

/// Of two groups that hold these units, told by weights, most of them at -1 and
/// the others at 1.
AlgorithmElement OfUnits(const char* name, std::int32_t first, std::int32_t second) {
  const double above = first / 3;  // whole
  const double below = second / 3;
  const Rows rows{{-1, 0, first - above}, {1, 0, above}, {-1, 1, second - below}, {1, 1, below}};
  return RunExtended(GroupedVariables(), rows, name, ComparedEntry());
}

void ExpectExtended(const AlgorithmElement& result, const std::vector<Figure>& figures,
                    const Texts& tables) {
  Texts names;
  for (const Figure& figure : figures) {
    const std::string path = std::string("ExtendedFigures/") + figure.path;
    EXPECT_THAT(result.Number(path), IsCloseTo(figure.value, figure.tolerance)) << path;
    names.push_back(std::string("Attribute ") + figure.path);
  }
  for (const std::string& table : tables) names.push_back("SimpleTable " + table);
  EXPECT_EQ(result.ChildNames("ExtendedFigures"), names);
  EXPECT_EQ(result.ChildNames().back(), "StructuredTable ExtendedFigures");
}

constexpr double kFar = 1e-12;  // 15 digits of both numbers, and tails

// Normal figures: mpmath 1.4.1 from the formulas. Exact ones: Python 3.11 in whole numbers, all
// divisions of the units. Theta and its limits: mpmath; the test is also SciPy 1.17.1's
// brunnermunzel(first, second). Quartiles: R's fivenum, by its definition.
TEST(ExtendedIndependent, MannWhitney) {
  const AlgorithmElement result = Extended("IMannWhitneyU", {kTiedFirst, kTiedSecond});
  ExpectExtended(result,
                 {{"AsymptoticSig1TailedLess", 0.9049737730729305, kFar},
                  {"AsymptoticSig1TailedGreater", 0.095026226927069505, kFar},
                  {"CorrectedStandardTestStatistic", 1.2694732073516098, kFar},
                  {"CorrectedAsymptoticSig2Tailed", 0.204272340511722, kFar},
                  {"CorrectedAsymptoticSig1TailedLess", 0.9117122837288731, kFar},
                  {"CorrectedAsymptoticSig1TailedGreater", 0.102136170255861, kFar},
                  {"ConditionalExactSig2Tailed", 0.20205027170971443, kFar},
                  {"ConditionalExactSig1TailedLess", 0.90600575894693542, kFar},
                  {"ConditionalExactSig1TailedGreater", 0.10101972331074498, kFar},
                  {"ConditionalExactPointProbability", 0.0070254822576804001, kFar},
                  {"ProbabilityOfSuperiority", 61.0 / 90},
                  {"ProbabilityOfSuperiorityLower", 0.41559857984993276, kFar},
                  {"ProbabilityOfSuperiorityUpper", 0.85555789232361588, kFar},
                  {"RankBiserial", 32.0 / 90},
                  {"RankBiserialLower", -0.16880284030013448, kFar},
                  {"RankBiserialUpper", 0.71111578464723176, kFar},
                  {"BrunnerMunzelStatistic", 1.3821178556169564, kFar},
                  {"BrunnerMunzelDegreeOfFreedom", 16.941212916438179, kFar},
                  {"BrunnerMunzelSig2Tailed", 0.18488860348966793, kFar},
                  {"BrunnerMunzelSig1TailedLess", 0.90755569825516604, kFar},
                  {"BrunnerMunzelSig1TailedGreater", 0.092444301744833963, kFar},
                  {"BrunnerMunzelLower", 0.4063266169787579, kFar},
                  {"BrunnerMunzelUpper", 0.94922893857679766, kFar}},
                 {"Groups"});
  EXPECT_EQ(result.RowNames("ExtendedFigures/Groups"), "Group0;Group1");
  EXPECT_EQ(result.ColumnNames("ExtendedFigures/Groups"),
            "N;Median;LowerQuartile;UpperQuartile;MeanRank");
  EXPECT_EQ(result.Rows("ExtendedFigures/Groups"),
            (Texts{"9;1;0;3.5;8.22222222222222", "10;4;1;6;11.6"}));
}

TEST(ExtendedIndependent, AllTiedOrApartLeaveOutWhatIsNot) {
  const AlgorithmElement tied = Extended("IMannWhitneyU", {{1, 1, 1}, {1, 1}});
  EXPECT_FALSE(tied.Has("ExtendedFigures/AsymptoticSig1TailedLess"));
  EXPECT_FALSE(tied.Has("ExtendedFigures/CorrectedStandardTestStatistic"));
  EXPECT_FALSE(tied.Has("ExtendedFigures/BrunnerMunzelStatistic"));
  ExpectTexts(tied, {{"ExtendedFigures/ConditionalExactSig2Tailed", "1"},
                     {"ExtendedFigures/ConditionalExactPointProbability", "1"},
                     {"ExtendedFigures/ProbabilityOfSuperiority", "0.5"}});
  const AlgorithmElement apart = Extended("IMannWhitneyU", {{1, 2, 3}, {4, 5}});
  EXPECT_FALSE(apart.Has("ExtendedFigures/BrunnerMunzelStatistic"));
  ExpectTexts(apart, {{"ExtendedFigures/ConditionalExactSig2Tailed", "0.2"},
                      {"ExtendedFigures/ConditionalExactSig1TailedGreater", "0.1"},
                      {"ExtendedFigures/RankBiserialUpper", "1"}});
  EXPECT_FALSE(
      Extended("IMannWhitneyU", {{2}, {1, 2, 3}}).Has("ExtendedFigures/BrunnerMunzelStatistic"));
  EXPECT_TRUE(
      Extended("IMannWhitneyU", {{2, 2}, {1, 3}}).Has("ExtendedFigures/BrunnerMunzelStatistic"));

  const AlgorithmElement ranks = Extended("IKruskalWallis", {{1, 1}, {1, 1}, {1}}, ComparedEntry());
  ExpectExtended(ranks, {{"TotalN", 5}}, {"Groups"});
  ExpectExtended(Extended("IJonckheereTerpstra", {{1, 1}, {1, 1}}), {{"TotalN", 4}, {"SomersD", 0}},
                 {"Groups"});
  const AlgorithmElement distributions = Extended("IKolmogorovSmirnov", {{1, 1}, {1, 1}});
  EXPECT_FALSE(distributions.Has("ExtendedFigures/AbsoluteDifferenceLocation"));
  ExpectTexts(distributions, {{"ExtendedFigures/ConditionalExactSig2Tailed", "1"},
                              {"ExtendedFigures/LimitingSig2Tailed", "1"}});
}

// As above; D is F1 - F2 at 4, 8 / 9 - 5 / 10.
TEST(ExtendedIndependent, KolmogorovSmirnovAndMoses) {
  ExpectExtended(Extended("IKolmogorovSmirnov", {kTiedFirst, kTiedSecond}),
                 {{"TotalN", 19},
                  {"ConditionalExactSig2Tailed", 0.28500292277382061, kFar},
                  {"ConditionalExactSig1TailedLess", 1},
                  {"ConditionalExactSig1TailedGreater", 0.13863690489077486, kFar},
                  {"LimitingSig2Tailed", 0.47082147208902684, kFar},
                  {"AbsoluteDifferenceLocation", 4}},
                 {"Groups"});
  ExpectExtended(Extended("IMoses", {kTiedFirst, kTiedSecond}), {}, {"Groups"});
  EXPECT_EQ(Extended("IMoses", {kTiedFirst, kTiedSecond}).Rows("ExtendedFigures/Groups"),
            (Texts{"9;1;0;3.5;8.22222222222222", "10;4;1;6;11.6"}));
}

// Runs: Python 3.11 in whole numbers. Limits: the order statistics 22 and 69 of the document and 21
// and 70 of the exact distribution among the 90 differences, listed by Python.
TEST(ExtendedIndependent, WaldWolfowitzAndHodgesLehmann) {
  const AlgorithmElement runs = Extended("IWaldWolfowitzRuns", {kTiedFirst, kTiedSecond});
  ExpectTexts(runs, {{"MinimumRuns/TestStatistic", "10"}, {"MaximumRuns/TestStatistic", "14"}});
  ExpectExtended(runs,
                 {{"MinimumRunsExactSig1Tailed", 0.50954772781398168, kFar},
                  {"MinimumRunsExactSig2Tailed", 1},
                  {"MaximumRunsExactSig1Tailed", 0.9742038147610903, kFar},
                  {"MaximumRunsExactSig2Tailed", 0.1061508151291433, kFar}},
                 {"Groups"});
  const AlgorithmElement shift =
      Extended("IHodgesLehmannEstimateGroups", {kTiedFirst, kTiedSecond});
  ExpectFigures(shift, {{"Asymptotic/Lower", -1}, {"Asymptotic/Upper", 5.5}});
  ExpectExtended(shift,
                 {{"TotalN", 19},
                  {"AttainedLevel", 0.94652406417112299, kFar},
                  {"LevelIsAttainable", 1},
                  {"ExactLower", -1},
                  {"ExactUpper", 6},
                  {"ExactAttainedLevel", 0.95652644569053238, kFar}},
                 {"Groups"});
  EXPECT_EQ(shift.Rows("ExtendedFigures/Groups"), (Texts{"9;1;0;3.5", "10;4;1;6"}));
  // Of two differences the level cannot be had: 1 - 2 / C(3, 1).
  ExpectFigures(Extended("IHodgesLehmannEstimateGroups", {{1}, {2, 4}}),
                {{"ExtendedFigures/LevelIsAttainable", 0},
                 {"ExtendedFigures/ExactLower", 1},
                 {"ExtendedFigures/ExactUpper", 3},
                 {"ExtendedFigures/ExactAttainedLevel", 1.0 / 3}});
}

// Fisher-Freeman-Halton: Python 3.11 in whole numbers. F and its tail: SciPy 1.17.1's f_oneway of
// the ranks, H kruskal's; tau-b and D its kendalltau and somersd of groups and values. Limits of
// medians: 2^-n sums of binomial coefficients.
TEST(ExtendedIndependent, SeveralGroups) {
  const Texts groups{"5;2;2;3", "6;6;5;8", "4;10.5;8.5;11.5"};
  const AlgorithmElement medians = Extended("IMedian", kRising, ComparedEntry());
  ExpectExtended(medians, {{"FisherFreemanHaltonSig", 0.0071928071928071928, kFar}}, {"Groups"});
  EXPECT_EQ(medians.ColumnNames("ExtendedFigures/Groups"),
            "N;Median;LowerQuartile;UpperQuartile;MedianLower;MedianUpper;MedianAttainedLevel");
  EXPECT_EQ(medians.RowNames("ExtendedFigures/Groups"), "0;1;2");
  EXPECT_EQ(
      medians.Rows("ExtendedFigures/Groups"),
      (Texts{groups[0] + ";1;5;0.9375", groups[1] + ";4;9;0.96875", groups[2] + ";7;12;0.875"}));
  EXPECT_EQ(Extended("IMedian", {{1}, {2, 3}}, ComparedEntry()).Rows("ExtendedFigures/Groups"),
            (Texts{"1;1;1;1;;;", "2;2.5;2;3;2;3;0.5"}));

  const AlgorithmElement ranks = Extended("IKruskalWallis", kRising, ComparedEntry("pairWise"));
  ExpectExtended(ranks,
                 {{"TotalN", 15},
                  {"EpsilonSquared", 0.7629862357869543, kFar},
                  {"EtaSquaredH", 0.7234839417514468, kFar},
                  {"ConoverF", 19.31498548163111, kFar},
                  {"ConoverFDegreeOfFreedom1", 2},
                  {"ConoverFDegreeOfFreedom2", 12},
                  {"ConoverFSig", 0.00017727251509410264, kFar}},
                 {"Groups", "Pairs"});
  EXPECT_EQ(ranks.Rows("ExtendedFigures/Groups"),
            (Texts{groups[0] + ";3.3", groups[1] + ";8.58333333333333", groups[2] + ";13"}));
  EXPECT_EQ(ranks.RowNames("ExtendedFigures/Pairs"), "");
  EXPECT_EQ(ranks.ColumnNames("ExtendedFigures/Pairs"), "Sample1;Sample2;EffectR");
  // z of the mean ranks 3.3, 51.5 / 6, 13 with the variance 20 - 18 / 168, over the root of n.
  EXPECT_THAT(ranks.Rows("ExtendedFigures/Pairs"),
              testing::ElementsAre(testing::StartsWith("0;1;-0.58983069836295"),
                                   testing::StartsWith("0;2;-1.0806763337365"),
                                   testing::StartsWith("1;2;-0.48512277345652")));

  const AlgorithmElement ordered = Extended("IJonckheereTerpstra", kRising);
  const double z = *ordered.Number("StandardTestStatistic");
  ExpectExtended(ordered,
                 {{"TotalN", 15},
                  {"AsymptoticSig1TailedLess", QDDistFun::CdfStdNorm(z), kFar},
                  {"AsymptoticSig1TailedGreater", QDDistFun::SfStdNorm(z), kFar},
                  {"KendallsTauB", 0.7711855029895192, kFar},
                  {"SomersD", 0.9054054054054054, kFar}},
                 {"Groups"});
  EXPECT_EQ(ordered.Rows("ExtendedFigures/Groups"), ranks.Rows("ExtendedFigures/Groups"));
  ExpectFigures(Extended("IJonckheereTerpstra", {{1, 3, 2}, {4, 6}, {5, 8, 9, 7}}),
                {{"ExtendedFigures/ExactSig2Tailed", 0.0047619047619047619, kFar},
                 {"ExtendedFigures/ExactSig1TailedLess", 0.99920634920634921, kFar},
                 {"ExtendedFigures/ExactSig1TailedGreater", 0.0023809523809523812, kFar},
                 {"ExtendedFigures/KendallsTauB", 0.7844645405527362, kFar}});
}

struct LimitCase {
  const char* name;
  const char* figure;
  std::int32_t first, second;
  bool has;
};

const LimitCase kLimits[] = {
    {"IMannWhitneyU", "ConditionalExactSig2Tailed", 100, 100, true},
    {"IMannWhitneyU", "ConditionalExactSig2Tailed", 101, 100, false},
    {"IMannWhitneyU", "ConditionalExactSig2Tailed", 3, 3333, true},
    {"IMannWhitneyU", "ConditionalExactSig2Tailed", 3, 3334, false},
    {"IKolmogorovSmirnov", "ConditionalExactSig2Tailed", 2000, 2000, true},
    {"IKolmogorovSmirnov", "ConditionalExactSig2Tailed", 2000, 2001, false},
    {"IWaldWolfowitzRuns", "MinimumRunsExactSig1Tailed", 40000, 60000, true},
    {"IWaldWolfowitzRuns", "MinimumRunsExactSig1Tailed", 40001, 60000, false},
    {"IHodgesLehmannEstimateGroups", "ExactLower", 1, 1, false},
    {"IHodgesLehmannEstimateGroups", "AttainedLevel", 2, 1, true},
    {"IHodgesLehmannEstimateGroups", "ExactLower", 100, 100, true},
    {"IHodgesLehmannEstimateGroups", "AttainedLevel", 100, 101, false},
    {"IMedian", "FisherFreemanHaltonSig", 999999, 1000000, true},
    {"IMedian", "FisherFreemanHaltonSig", 1000000, 1000000, false},
};

TEST(ExtendedIndependent, ExactFiguresEndAtTheirLimitsInUnits) {
  for (const LimitCase& row : kLimits) {
    EXPECT_EQ(
        OfUnits(row.name, row.first, row.second).Has(std::string("ExtendedFigures/") + row.figure),
        row.has)
        << row.name << ' ' << row.first << ' ' << row.second;
  }
}

TEST(ExtendedIndependent, JonckheeresExactValueWantsDifferentUnitsInFewPairs) {
  const auto has = [](const Samples& samples) {
    return Extended("IJonckheereTerpstra", samples).Has("ExtendedFigures/ExactSig2Tailed");
  };
  EXPECT_TRUE(has({Ascending(1, 100), Ascending(50.5, 100)}));
  EXPECT_FALSE(has({Ascending(1, 100), Ascending(50.5, 101)}));
  EXPECT_FALSE(has({Ascending(1, 10), Ascending(10, 10)}));
}

// Steps over batches that hold no limit of a group's median, and by weights.
TEST(ExtendedIndependent, LimitsOfMediansAreThoseOfTheListedUnits) {
  Rows listed;
  Rows weighted;
  for (int i = 0; i < 3000; ++i) {
    const double x = i / 3;
    const double group = i % 7 < 4 ? 0 : 1;
    listed.push_back({x, group, 1});
    if (i % 3 > 0) continue;
    for (const int of : {0, 1}) {
      int units = 0;
      for (int k = i; k < i + 3; ++k) units += (k % 7 < 4 ? 0 : 1) == of ? 1 : 0;
      weighted.push_back({x, of * 1.0, units * 1.0});
    }
  }
  const auto groups = [](const Rows& rows) {
    return RunExtended(GroupedVariables(), rows, "IMedian", ComparedEntry())
        .Rows("ExtendedFigures/Groups");
  };
  // Of 1716 and 1284 units, ranks 817 and 900, 607 and 678 (SciPy 1.17.1, binom.cdf(k, n, 0.5)).
  const Texts rows = groups(listed);
  EXPECT_THAT(rows, testing::ElementsAre(testing::HasSubstr(";476;523;0.9549226974597"),
                                         testing::HasSubstr(";472;527;0.9524976288041")));
  EXPECT_EQ(groups(weighted), rows);
}

}  // namespace
