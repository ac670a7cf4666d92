#include "tests/independent/moses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "support/matchers.h"
#include "support/two_group_run.h"

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

AlgorithmElement Result(const Sample& first, const Sample& second, int outliers = -1) {
  TestSettings entry = GroupedEntry();
  if (outliers >= 0) entry.Put("userSpecifyNumberOfOutliers", "true");
  if (outliers >= 0) entry.Put("NumberOfOutliers", outliers);
  return RunEntry(GroupedVariables(), GroupedRows({first, second}), "IMoses", entry.Get());
}

const Sample kControl{-2, -1, 0, 0, 1, 3, 3.5, 4, 7};  // ranks 1 3 5 5 7.5 10.5 12 13 17
const Sample kExperimental{-1.5, 0, 1, 2, 3, 5, 6, 6, 8, 9};

// Ranks from SciPy 1.17.1, rankdata; p(h) in Python's fractions.
TEST(MosesTest, FiguresAgreeWithTheFormula) {
  const AlgorithmElement result = Result(kControl, kExperimental);
  EXPECT_EQ(result.Text("NumberOfOutliers"), "1");
  EXPECT_EQ(result.Text("ObservedControlSpan"), "17");
  EXPECT_THAT(result.Number("ExactSig1TailedObserved"), IsCloseTo(0.541795665634675));
  EXPECT_EQ(result.Text("TestStatistic"), "11");
  EXPECT_THAT(result.Number("ExactSig1Tailed"), IsCloseTo(0.24221134902249453));
  EXPECT_EQ(result.Decision(), "retain");
  const AlgorithmElement two = Result(kControl, kExperimental, 2);
  EXPECT_EQ(two.Text("NumberOfOutliers"), "2");
  EXPECT_EQ(two.Text("TestStatistic"), "8");  // ranks 5 to 12
  EXPECT_THAT(two.Number("ExactSig1Tailed"), IsCloseTo(0.4299833293641343));
  EXPECT_EQ(two.Text("ExactSig1TailedObserved"), result.Text("ExactSig1TailedObserved"));
  const AlgorithmElement none = Result(kControl, kExperimental, 0);
  EXPECT_EQ(none.Text("TestStatistic"), none.Text("ObservedControlSpan"));
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
  const Rows rows{{1, 0, 3}, {2, 1, 2}, {3, 0, 4}};
  TestSettings entry = GroupedEntry();
  entry.Put("userSpecifyNumberOfOutliers", "true").Put("NumberOfOutliers", 3);
  const AlgorithmElement result = RunEntry(GroupedVariables(), rows, "IMoses", entry.Get());
  EXPECT_EQ(result.Text("ObservedControlSpan"), "7");  // ranks 2 and 7.5, 6.5 rounded up
  EXPECT_EQ(result.Text("TestStatistic"), "1");        // the fourth unit alone
  EXPECT_EQ(result.Text("ExactSig1Tailed"), "1");
}

TEST(MosesTest, ANumberOfOutliersThatCannotBeIsRefused) {
  const auto codes = [](TestSettings entry) {
    return RunEntry(GroupedVariables(), GroupedRows({kControl, kExperimental}), "IMoses",
                    entry.Get())
        .Messages();
  };
  const auto refused = testing::ElementsAre(AlgorithmElement::Message{220516, "error", {}});
  TestSettings absent = GroupedEntry();
  EXPECT_THAT(codes(std::move(absent.Put("userSpecifyNumberOfOutliers", "true"))), refused);
  TestSettings negative = GroupedEntry();
  negative.Put("userSpecifyNumberOfOutliers", "true").Put("NumberOfOutliers", -1);
  EXPECT_THAT(codes(std::move(negative)), refused);
  EXPECT_THAT(Result(kControl, kExperimental, 4).Messages(), testing::IsEmpty());
  EXPECT_THAT(Result(kControl, kExperimental, 5).Messages(), refused);
  EXPECT_THAT(Result({1, 2}, {3}).Messages(), refused) << "none is left by default either";
  TestSettings unused = GroupedEntry();
  unused.Put("NumberOfOutliers", 100);
  EXPECT_THAT(codes(std::move(unused)), testing::IsEmpty()) << "without the flag it is not read";
}

TEST(MosesTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Name(), "IMoses");
  EXPECT_EQ(result.Type(), "hypothesis_test");
  EXPECT_EQ(result.Classification(), "Independent_Samples");
  EXPECT_THAT(result.ChildNames(),
              testing::ElementsAre("StructuredTable Condition", "StructuredTable Group0",
                                   "StructuredTable Group1", "StructuredTable StatisticsResult"));
  EXPECT_THAT(result.ChildNames("Group1"),
              testing::ElementsAre("Attribute GroupIndex", "Attribute N", "Attribute MeanOfRank",
                                   "SimpleTable Interval"));
  EXPECT_EQ(result.Text("Group0/MeanOfRank"), "4.625");
  EXPECT_THAT(
      result.ChildNames("StatisticsResult"),
      testing::ElementsAre("Attribute TotalN", "Attribute NumberOfOutliers",
                           "Attribute ObservedControlSpan", "Attribute ExactSig1TailedObserved",
                           "Attribute TestStatistic", "Attribute ExactSig1Tailed"));
}

}  // namespace
