#include "tests/independent/moses.h"

#include <array>
#include <bit>

#include "support/group_run.h"

namespace {

/// Counts the arrangements of control and experimental units by the span of the trimmed controls.
std::vector<double> CountedTails(int control, int experimental, int trimmed) {
  const int n = control + experimental;
  std::vector<double> tails(static_cast<std::size_t>(n) + 1, 0.0);
  double all = 0.0;
  for (unsigned places = 0; places < 1U << n; ++places) {
    if (std::popcount(places) != control) continue;
    std::vector<int> ranks;
    for (int place = 0; place < n; ++place) {
      if ((places >> place & 1U) != 0) ranks.push_back(place);
    }
    const int first = ranks[static_cast<std::size_t>(trimmed)];
    const int last = ranks[static_cast<std::size_t>(control - 1 - trimmed)];
    ++tails[static_cast<std::size_t>(last - first + 1)];
    ++all;
  }
  double upTo = 0.0;
  for (double& tail : tails) {
    upTo += tail;
    tail = upTo / all;
  }
  return tails;
}

TEST(MosesTest, TheTailIsTheShareOfAllArrangements) {
  for (const auto& [control, experimental, trimmed] :
       std::vector<std::array<int, 3>>{{5, 6, 0}, {5, 6, 1}, {5, 6, 2}, {8, 4, 1}, {1, 5, 0}}) {
    const std::vector<double> tails = CountedTails(control, experimental, trimmed);
    for (int span = control - 2 * trimmed; span <= control + experimental; ++span) {
      EXPECT_NEAR(MosesSpanTail(control, experimental, trimmed, span),
                  tails[static_cast<std::size_t>(span)], 1e-15)
          << control << ' ' << experimental << ' ' << trimmed << ' ' << span;
    }
  }
}

struct TailCase {
  const char* catches;
  std::int64_t control, experimental, trimmed, span;
  double p;
};

// p(h) in Python's fractions.
const TailCase kTails[] = {
    {"ties may leave less than the least span", 9, 10, 0, 3, 1.0 / 92378.0 * 11.0},
    {"one control unit left", 3, 4, 1, 1, 1.0},
    {"no ranks between any more", 3, 4, 1, 4, 1.0},
    {"a large sample", 1000, 1500, 50, 2250, 0.5607728183416864},
    {"its tail", 1000, 1500, 50, 2100, 9.551317552247661e-12},
    {"its far tail", 1000, 1500, 50, 1800, 1.365319626924837e-65},
};

TEST(MosesTest, TailsAgreeWithFractions) {
  for (const TailCase& row : kTails) {
    const double p = MosesSpanTail(row.control, row.experimental, row.trimmed, row.span);
    EXPECT_NEAR(p / row.p, 1.0, 1e-12) << row.catches;
  }
}

// n = 3 and h = 0 with m = 10^12: p is that of the range of 3 uniform values, 3 s^2 - 2 s^3.
TEST(MosesTest, UnitsByTheBillionAreNotCounted) {
  EXPECT_NEAR(MosesSpanTail(3, 1000000000000, 0, 500000000000), 0.5, 1e-11);
  EXPECT_NEAR(MosesSpanTail(3, 1000000000000, 0, 100000000000), 0.028, 1e-11);
}

TEST(MosesTest, GroupsOfAMillionStayBetweenZeroAndOne) {
  EXPECT_EQ(MosesSpanTail(1000000, 1000000, 50000, 900000), 0.0);
  EXPECT_NEAR(MosesSpanTail(1000000, 1000000, 50000, 1800000), 0.5, 0.01);
  EXPECT_EQ(MosesSpanTail(1000000, 1000000, 50000, 1900000), 1.0);
}

TestSettings Trimming(int outliers) {
  return GroupedEntry().Put("userSpecifyNumberOfOutliers", "true", "NumberOfOutliers", outliers);
}

AlgorithmElement Result(const Sample& first, const Sample& second,
                        const TestSettings& entry = GroupedEntry()) {
  return RunOnSamples("IMoses", {first, second}, entry);
}

// The ranks of the controls are 1 3 5 5 7.5 10.5 12 13 17 (SciPy 1.17.1, rankdata); p(h) in
// Python's fractions.
TEST(MosesTest, FiguresAgreeWithTheFormula) {
  const AlgorithmElement result = Result(kTiedFirst, kTiedSecond);
  ExpectFigures(result, {{"NumberOfOutliers", 1},
                         {"ObservedControlSpan", 17},
                         {"ExactSig1TailedObserved", 0.541795665634675},
                         {"TestStatistic", 11},
                         {"ExactSig1Tailed", 0.24221134902249453}});
  EXPECT_EQ(result.Decision(), "retain");
  ExpectFigures(Result(kTiedFirst, kTiedSecond, Trimming(2)),
                {{"NumberOfOutliers", 2},
                 {"TestStatistic", 8},  // ranks 5 to 12
                 {"ExactSig1Tailed", 0.4299833293641343},
                 {"ExactSig1TailedObserved", 0.541795665634675}});
  EXPECT_EQ(Result(kTiedFirst, kTiedSecond, Trimming(0)).Text("TestStatistic"), "17");
}

TEST(MosesTest, HalfARankIsRoundedUp) {
  EXPECT_EQ(Result({1, 2, 3}, {3}).Text("ObservedControlSpan"), "4");  // ranks 1 to 3.5
}

TEST(MosesTest, AMixedGroupThatClustersRejects) {
  Sample control;
  Sample experimental;
  for (int i = 0; i < 10; ++i) {
    control.push_back(20.0 + i);
    experimental.push_back(i % 2 == 0 ? i : 50.0 + i);
  }
  EXPECT_EQ(Result(control, experimental).Decision(), "reject");
  EXPECT_EQ(Result(experimental, control).Decision(), "retain") << "group 1 is the control group";
}

TEST(MosesTest, AsManyAreTrimmedAsATwentiethOfTheControls) {
  const auto outliers = [](int controls) {
    return Result(Sample(static_cast<std::size_t>(controls), 1.0), {2}).Text("NumberOfOutliers");
  };
  EXPECT_EQ(outliers(3), "1");
  EXPECT_EQ(outliers(39), "1");
  EXPECT_EQ(outliers(40), "2");
}

TEST(MosesTest, TrimmingUnitsOfOneRecordTakesPartOfItsWeight) {
  const AlgorithmElement result =
      RunEntry(GroupedVariables(), {{1, 0, 3}, {2, 1, 2}, {3, 0, 4}}, "IMoses", Trimming(3));
  ExpectTexts(result, {{"ObservedControlSpan", "7"},  // ranks 2 and 7.5, 6.5 rounded up
                       {"TestStatistic", "1"},        // the fourth unit alone
                       {"ExactSig1Tailed", "1"}});
}

TEST(MosesTest, ANumberOfOutliersThatCannotBeIsRefused) {
  const TestSettings absent = GroupedEntry().Put("userSpecifyNumberOfOutliers", "true");
  ExpectMessages("IMoses", GroupedVariables(), GroupedRows({kTiedFirst, kTiedSecond}),
                 {{"absent", absent, Error(220516)},
                  {"negative", Trimming(-1), Error(220516)},
                  {"one control is left", Trimming(4), {}},
                  {"none is left", Trimming(5), Error(220516)},
                  {"not read without the flag", GroupedEntry().Put("NumberOfOutliers", 100), {}}});
  ExpectMessages("IMoses", GroupedVariables(), GroupedRows({{1, 2}, {3}}),
                 {{"none is left by default either", GroupedEntry(), Error(220516)}});
}

TEST(MosesTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) Group0(GroupIndex N MeanOfRank Interval[]) "
            "Group1(GroupIndex N MeanOfRank Interval[]) StatisticsResult(TotalN NumberOfOutliers "
            "ObservedControlSpan ExactSig1TailedObserved TestStatistic ExactSig1Tailed)");
  EXPECT_EQ(result.Text("Group0/MeanOfRank"), "4.625");
}

}  // namespace
