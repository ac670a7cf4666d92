#include "kit/statistics/kolmogorov_exact.h"

#include <gtest/gtest.h>

namespace {

struct ExactCase {
  const char* catches;
  std::int64_t n;
  double d, oneSided, twoSided;
};

// Python 3.11 with mpmath 1.4.1 at 40 digits: the sum of Birnbaum and Tingey; Durbin's matrix in
// fractions, its power in integers of 200 to 400 bits.
const ExactCase kCases[] = {
    {"one unit", 1, 0.75, 0.25, 0.5},
    {"no step can be smaller", 10, 0.05, 0.922433589201074213, 1.0},
    {"just above the smallest", 10, 0.06, 0.89863126245983848, 0.999999999962841088},
    {"between", 10, 0.274, 0.186605069691483746, 0.371520384543495633},
    {"the sides cannot meet", 10, 0.5, 0.003888705, 0.00777741},
    {"beyond half", 10, 0.6, 0.000284083600000000187, 0.000568167200000000373},
    {"n D^2 below 4", 100, 0.19, 0.000616996319206222403, 0.00123399263827571018},
    {"the most units", 2000, 0.0447, 0.00032723212325174399, 0.00065446424648148436},
    {"n D^2 above 4", 100, 0.21, 0.00011973672607325666, 0.000239473452146383807},
};

TEST(KolmogorovExactTest, TailsAgreeWithFractions) {
  for (const ExactCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    EXPECT_NEAR(OneSidedKolmogorovSig(row.n, row.d), row.oneSided, 1e-12 * row.oneSided);
    EXPECT_NEAR(TwoSidedKolmogorovSig(row.n, row.d), row.twoSided, 5e-11 * row.twoSided);
  }
  EXPECT_EQ(OneSidedKolmogorovSig(10, 0.0), 1.0);
  EXPECT_EQ(OneSidedKolmogorovSig(10, 1.0), 0.0);
  EXPECT_EQ(TwoSidedKolmogorovSig(10, 0.0), 1.0);
}

}  // namespace
