#include "arithmetic/elementary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace arithmetic {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Row {
  const char* function;
  double computed;
  double expected;
};

// Source: mpmath 1.3.0 at 60 digits, as float(mp.exp(mpf(1.0))) and so on.
TEST(ElementaryTest, TheNearestDoubleIsGiven) {
  const Row kRows[] = {
      {"Exp", Exp(1.0), 2.718281828459045},
      {"Exp", Exp(-0.1), 0.9048374180359595},
      {"Exp", Exp(1e-10), 1.0000000001},
      {"Exp", Exp(700.25), 1.3022997366991783e+304},
      {"Exp", Exp(-740.5), 2.5e-322},
      {"Exp", Exp(0.34657359), 1.4142135619771539},
      {"Expm1", Expm1(1e-12), 1.0000000000005e-12},
      {"Expm1", Expm1(-0.02), -0.0198013266932447},
      {"Expm1", Expm1(0.5), 0.6487212707001282},
      {"Expm1", Expm1(-30.0), -0.9999999999999064},
      {"Expm1", Expm1(40.0), 2.3538526683702e+17},
      {"Log", Log(10.0), 2.302585092994046},
      {"Log", Log(1.0000001), 9.999999505838704e-08},
      {"Log", Log(0.9921875), -0.007843177461025893},
      {"Log", Log(5e-324), -744.4400719213812},
      {"Log", Log(1.7e+308), 709.7268368932282},
      {"Log1p", Log1p(1e-15), 9.999999999999995e-16},
      {"Log1p", Log1p(-0.3), -0.35667494393873234},
      {"Log1p", Log1p(0.0078), 0.007769737264360664},
      {"Log1p", Log1p(10000000000.0), 23.025850930040455},
      {"Pow", Pow(0.95, 0.3333333333333333), 0.9830475724915585},
      {"Pow", Pow(2.0, 0.5), 1.4142135623730951},
      {"Pow", Pow(1.0001, 7000000.0), 9.793502502952126e+303},
      {"Pow", Pow(0.1, 300.0), 1.0000000000000166e-300},
      {"Pow", Pow(-2.0, 3.0), -8.0},
      {"Log10", Log10(1000.0), 3.0},
      {"Log10", Log10(1e-07), -7.0},
      {"Log10", Log10(3.0), 0.47712125471966244},
      {"Cbrt", Cbrt(27.0), 3.0},
      {"Cbrt", Cbrt(2.0), 1.2599210498948732},
      {"Cbrt", Cbrt(1e+300), 1e+100},
      {"Asin", Asin(1.0), 1.5707963267948966},
      {"Asin", Asin(-0.5), -0.5235987755982989},
      {"Asin", Asin(1e-09), 1e-09},
      {"Asin", Asin(0.9999), 1.5566540733173846},
      {"Erfc", Erfc(-3.0), 1.9999779095030015},
      {"Erfc", Erfc(1e-05), 0.9999887162083294},
      {"Erfc", Erfc(0.7), 0.32219880616258156},
      {"Erfc", Erfc(5.5), 7.357847917974398e-15},
      {"Erfc", Erfc(26.5), 2.2109076642637343e-307},
      {"LogGamma", LogGamma(0.001), 6.907178885383853},
      {"LogGamma", LogGamma(1.5), -0.12078223763524522},
      {"LogGamma", LogGamma(2.0000001), 4.227843666532498e-08},
      {"LogGamma", LogGamma(171.5), 709.1431630309282},
      {"LogGamma", LogGamma(1000000000000000.0), 3.3538776394910668e+16},
  };
  for (const Row& row : kRows) EXPECT_EQ(row.computed, row.expected) << row.function;
}

TEST(ElementaryTest, EndsOfTheDomainAreThoseOfTheStandardFunctions) {
  const Row kRows[] = {
      {"Exp", Exp(-kInfinity), 0.0},      {"Exp", Exp(710.0), kInfinity},
      {"Exp", Exp(-746.0), 0.0},          {"Expm1", Expm1(-kInfinity), -1.0},
      {"Log", Log(0.0), -kInfinity},      {"Log", Log(kInfinity), kInfinity},
      {"Log1p", Log1p(-1.0), -kInfinity}, {"Pow", Pow(0.0, 0.0), 1.0},
      {"Pow", Pow(0.0, -1.0), kInfinity}, {"Pow", Pow(kInfinity, 0.5), kInfinity},
      {"Pow", Pow(0.5, 2000.0), 0.0},     {"Erfc", Erfc(-kInfinity), 2.0},
      {"Erfc", Erfc(kInfinity), 0.0},
  };
  for (const Row& row : kRows) EXPECT_EQ(row.computed, row.expected) << row.function;
  for (const double x : {Exp(kNaN), Expm1(kNaN), Log(-1.0), Log1p(-2.0), Pow(-2.0, 0.5),
                         Pow(kNaN, 2.0), Asin(1.5), Erfc(kNaN)}) {
    EXPECT_TRUE(std::isnan(x));
  }
}

}  // namespace
}  // namespace arithmetic
