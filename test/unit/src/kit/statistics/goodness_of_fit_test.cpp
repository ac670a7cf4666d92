#include "kit/statistics/goodness_of_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using Counts = std::vector<std::int64_t>;
using Numbers = std::vector<double>;

struct MultinomialCase {
  const char* catches;
  Counts observed;
  Numbers proportions;
  double sig;
};

// Python 3.11 in fractions: the probabilities of all outcomes, those up to 1 + 1e-7 times that of
// the observed one summed.
const MultinomialCase kMultinomial[] = {
    {"equal proportions", {3, 5, 2}, {1, 1, 1}, 0.626581313824112178},
    {"an empty category", {0, 7, 4, 1}, {1, 2, 3, 4}, 0.00695749856},
    {"one category", {12}, {1}, 1.0},
    {"two categories", {30, 10}, {1, 1}, 0.00222143377322936431},
    {"most categories empty", {1, 0, 0, 0, 0, 0, 2}, {1, 1, 1, 1, 1, 1, 1}, 0.387755102040816327},
    {"unequal proportions", {20, 5, 9}, {2, 1, 1}, 0.409599955593010989},
};

TEST(GoodnessOfFitTest, TheExactValueAgreesWithFractions) {
  for (const MultinomialCase& row : kMultinomial) {
    SCOPED_TRACE(row.catches);
    const auto sig = ExactMultinomialSig(row.observed, ExpectedOf(row.observed, row.proportions));
    ASSERT_TRUE(sig);
    EXPECT_NEAR(*sig, row.sig, 1e-12 * row.sig);
  }
}

TEST(GoodnessOfFitTest, AMillionOutcomesAreWalkedThrough) {
  const auto hasValue = [](const Counts& observed) {
    const Numbers equal(observed.size(), 1.0);
    return ExactMultinomialSig(observed, ExpectedOf(observed, equal)).has_value();
  };
  EXPECT_TRUE(hasValue({499999, 500000}));  // C(1000000, 1)
  EXPECT_FALSE(hasValue({500000, 500000}));
  EXPECT_TRUE(hasValue({500, 500, 412}));  // C(1414, 2) = 998991
  EXPECT_FALSE(hasValue({500, 500, 413}));
  EXPECT_FALSE(hasValue(Counts(20, 1)));
  EXPECT_FALSE(ExactMultinomialSig(Counts{1, 1}, Numbers{std::nan(""), 0.0}));
  Counts many(1412, 0);  // C(1413, 2) = 997578
  many[7] = 2;
  EXPECT_TRUE(hasValue(many));
}

TEST(GoodnessOfFitTest, TheLikelihoodRatioKeepsItsDigitsNearTheExpectedCounts) {
  // By its series, (O - E)^2 / E of each half.
  const ChiSquareFigures near =
      LikelihoodRatio(Counts{500000000001, 499999999999}, Numbers{5e11, 5e11});
  EXPECT_NEAR(near.statistic, 4e-12, 1e-22);
  EXPECT_NEAR(LikelihoodRatio(Counts{0, 4}, Numbers{2, 2}).statistic, 8 * 0.693147180559945, 1e-14);
}

}  // namespace
