#include "kit/statistics/jonckheere.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "support/matchers.h"

namespace {

struct JonckheereCase {
  const char* catches;
  double statistic;
  DoubleDouble tiedPairs, tiedTriples;
  std::vector<double> sizes;
  double standardError, z;
};

// Python's fractions and mpmath 1.4.1, from the formula. Knowledge of performance: Hollander and
// Wolfe, table 6.6, J = 79.
const JonckheereCase kCases[] = {
    {"knowledge of performance", 79, 22, 74, {6, 6, 6}, 12.2591502440374044, 2.03929305884471721},
    {"the same without ties", 79, 0, 0, {6, 6, 6}, 12.3693168768529816, 2.02113020863610811},
    {"three values", 2, 0, 0, {2, 1}, 0.816496580927726033, 1.22474487139158905},
    {"two values", 1, 0, 0, {1, 1}, 0.5, 1.0},
    {"two tied values", 0.5, 2, 4, {1, 1}, 0.0, 0.0},
    {"all of many tied", 0.5 * 7 * 9, 16 * 15, 16 * 16 * 15, {7, 9}, 0.0, 0.0},
    // (N^2 - sum n^2) / 4 is off by 1/4, and its variance by 2e-9 of itself.
    {"one beside a hundred million",
     50000001,
     0,
     0,
     {1, 1e8},
     28867513.7481564214,
     3.46410158049673896e-8},
    // n1 n2 / 4, as Mann and Whitney have it
    {"all but one of two millions tied",
     500000500000,
     DoubleDouble::Product(1999999.0, 1999998.0),
     DoubleDouble::Product(1999999.0 * 1999998.0, 1999999.0),
     {1e6, 1e6},
     5e5,
     1.0},
    {"and with ties", 3e7, 90, 900, {1e8, 1}, 28867513.7481564214, -0.692820316099347791},
};

TEST(JonckheereTest, FiguresAgreeWithTheFormula) {
  for (const JonckheereCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const NormalFigures figures =
        JonckheereTerpstra(row.statistic, row.tiedPairs, row.tiedTriples, row.sizes);
    EXPECT_THAT(figures.standardError, IsCloseTo(row.standardError));
    EXPECT_THAT(figures.z, IsCloseTo(row.z));
  }
}

struct ExactCase {
  const char* catches;
  std::int64_t statistic;
  std::vector<std::int64_t> sizes;
  std::array<double, 3> sigs;  // two-sided, less, greater
};

// Hollander and Wolfe, table A.13: of 2, 2, 2 units P(J >= 12) = .0111, P(J >= 11) = .0333, P(J >=
// 10) = .0889. All rows: Python 3.11, whole numbers, the coefficients of the product of Gaussian
// binomials; of 141 units that of the 1 + ... + q^i.
const ExactCase kExact[] = {
    {"the largest statistic", 12, {2, 2, 2}, {2.0 / 90, 1.0, 1.0 / 90}},
    {"the next", 11, {2, 2, 2}, {6.0 / 90, 89.0 / 90, 3.0 / 90}},
    {"and the next", 10, {2, 2, 2}, {16.0 / 90, 87.0 / 90, 8.0 / 90}},
    {"at the mean", 6, {2, 2, 2}, {1.0, 52.0 / 90, 52.0 / 90}},
    {"unequal groups",
     30,
     {4, 2, 5},
     {0.073593073593073593, 0.97604617604617605, 0.036796536796536797}},
    {"and the other tail",
     8,
     {4, 2, 5},
     {0.073593073593073593, 0.036796536796536797, 0.97604617604617605}},
    {"groups of one unit at the limit",
     9870 / 5,
     std::vector<std::int64_t>(141, 1),
     {1.4332825836628624e-30, 7.166412918314312e-31, 1.0}},
};

TEST(JonckheereTest, ExactTailsAreThoseOfAllOrders) {
  for (const ExactCase& row : kExact) {
    SCOPED_TRACE(row.catches);
    const ExactTails sigs = JonckheereExact(row.statistic, row.sizes);
    EXPECT_NEAR(sigs.twoSided / row.sigs[0], 1.0, 1e-12);
    EXPECT_NEAR(sigs.less / row.sigs[1], 1.0, 1e-12);
    EXPECT_NEAR(sigs.greater / row.sigs[2], 1.0, 1e-12);
  }
}

// SciPy 1.17.1: somersd(groups, values) and kendalltau(groups, values) of 1, 4, 2 | 3, 3, 6, 5 | 5,
// 7, 8; J = 29.5 of 33 pairs, two runs of 2.
TEST(JonckheereTest, AssociationIsThatOfValuesAndGroups) {
  const OrderedAssociation association = AssociationOf(29.5, 33, 10, 4);
  EXPECT_THAT(association.somersD, IsCloseTo(0.7878787878787878));
  EXPECT_THAT(association.kendallsTauB, IsCloseTo(0.6902114351624685));
  EXPECT_EQ(AssociationOf(6, 12, 7, 42).somersD, 0.0);
  EXPECT_FALSE(AssociationOf(6, 12, 7, 42).kendallsTauB);
}

}  // namespace
