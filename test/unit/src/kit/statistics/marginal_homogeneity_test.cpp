#include "kit/statistics/marginal_homogeneity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/matchers.h"

namespace {

// Python's fractions and mpmath 1.4.1: T = 66 for scores 1 to 3, E = 79.5, V = 13.25.
TEST(MarginalHomogeneityStatisticTest, FiguresAgreeWithTheFormulaWhereverTheScoresStart) {
  const std::vector<std::int64_t> table{20, 10, 5, 3, 30, 15, 0, 5, 40};
  for (const double start : {1.0, 1e9 + 1.0, 1e15 + 1.0}) {
    SCOPED_TRACE(start);
    const std::vector<double> scores{start, start + 1.0, start + 2.0};
    const MarginalHomogeneity result = TestMarginalHomogeneity(scores, table);
    EXPECT_THAT(result.statistic, IsCloseTo(66.0 + 38.0 * (start - 1.0)));
    EXPECT_THAT(result.figures.standardError, IsCloseTo(3.64005494464025914));
    EXPECT_THAT(result.figures.z, IsCloseTo(-3.70873522661460365));
    EXPECT_THAT(result.figures.sig, IsCloseTo(0.000208297099870014161, 1e-13));
  }
}

TEST(MarginalHomogeneityStatisticTest, AFilledDiagonalIsHomogeneous) {
  const std::vector<double> scores{1.0, 2.0};
  const std::vector<std::int64_t> table{3, 0, 0, 4};
  EXPECT_EQ(TestMarginalHomogeneity(scores, table).figures.z, 0.0);
  EXPECT_EQ(TestMarginalHomogeneity(scores, table).figures.sig, 1.0);
}

struct ExactHomogeneityCase {
  const char* catches;
  std::vector<double> scores;
  std::vector<std::int64_t> table;
  double less, greater;
};

const std::vector<std::int64_t> kTable{20, 10, 5, 3, 30, 15, 0, 5, 40};

// Whole numbers of Python 3.11: all orders of the changes, convolved one by one.
const ExactHomogeneityCase kExact[] = {
    {"whole", {1, 2, 3}, kTable, 0.99997400380379986, 9.816089368541725e-5},
    {"tenths", {0, 1.5, 2}, kTable, 0.99989662066582241, 0.0001944637879205402},
    {"thousandths", {0, 0.125, 2}, kTable, 0.99953827533317963, 0.00048527619219385087},
    {"listed", {0, 1, 1000}, {0, 1, 2, 3, 0, 1, 4, 0, 0}, 0.27294921875, 0.76611328125},
    {"nothing varies", {2, 2}, {0, 40, 1, 3}, 1.0, 1.0},
};

TEST(MarginalHomogeneityStatisticTest, ExactSignificancesAgreeWithCounting) {
  for (const ExactHomogeneityCase& row : kExact) {
    SCOPED_TRACE(row.catches);
    const auto tails = ExactMarginalHomogeneity(row.scores, row.table);
    ASSERT_TRUE(tails);
    EXPECT_THAT(tails->less, IsCloseTo(row.less));
    EXPECT_THAT(tails->greater, IsCloseTo(row.greater));
    EXPECT_EQ(tails->twoSided, std::min(1.0, 2.0 * std::min(tails->less, tails->greater)));
  }
}

TEST(MarginalHomogeneityStatisticTest, ExactSignificancesHaveTheirLimits) {
  const auto isExact = [](double first, double second, std::int64_t changes) {
    return ExactMarginalHomogeneity(std::vector{first, second},
                                    std::vector<std::int64_t>{7, changes, 0, 7})
        .has_value();
  };
  EXPECT_FALSE(isExact(1, 2, 0));
  EXPECT_TRUE(isExact(1, 2, 1000));
  EXPECT_FALSE(isExact(1, 2, 1001));
  EXPECT_TRUE(isExact(1, 201, 1000));  // 2e8
  EXPECT_FALSE(isExact(1, 202, 1000));
  EXPECT_TRUE(isExact(0.001, 2, 3));
  EXPECT_FALSE(isExact(0.0001, 2, 3));
  EXPECT_FALSE(isExact(1e300, 2, 3));
}

}  // namespace
