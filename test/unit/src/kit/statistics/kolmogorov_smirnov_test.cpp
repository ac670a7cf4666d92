#include "kit/statistics/kolmogorov_smirnov.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace {

struct BandCase {
  const char* catches;
  double z, sig;
};

// mpmath 1.4.1 at 30 digits: 2 * nsum(lambda k: (-1)**(k-1) * e**(-2*k*k*z**2), [1, 200])
const BandCase kCases[] = {
    {"nothing", 0.0, 1.0},
    {"last z of the flat band", 0.2699999999999999, 1.0},
    {"first z of the small series", 0.27, 0.99999958497128857908},
    {"middle of the small series", 0.5, 0.96394524366487509439},
    {"last z of the small series", 0.99, 0.28087383922554892176},
    {"first z of the large series", 1.0, 0.2699996716773545212},
    {"critical value at 0.05", 1.36, 0.04948587675537788364},
    {"far tail", 3.09, 1.0177842133723950869e-8},
    {"first z without a tail", 3.1, 0.0},
    {"not a number", std::nan(""), 0.0},
    {"negative", -0.5, 0.0},
};

TEST(KolmogorovSmirnovTest, BandsAgreeWithTheWholeSeries) {
  for (const BandCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    double sig = -1.0;
    ASSERT_TRUE(KolmogorovSmirnovSig(row.z, sig));
    EXPECT_NEAR(sig, row.sig, 1e-14);
  }
}

TEST(KolmogorovSmirnovTest, WithoutBandsTheTailKeepsItsDigits) {
  // As above, with [1, 199] at 40 digits.
  const std::pair<double, double> cases[] = {{0.0, 1.0},
                                             {1e-3, 1.0},
                                             {0.27, 0.999999584971288579},
                                             {0.5, 0.963945243664875094},
                                             {0.999, 0.271073164115063946},
                                             {1.0, 0.269999671677354521},
                                             {2.0, 0.000670925255779695347},
                                             {8.0, 5.14441874528482965e-56},
                                             {1e3, 0.0}};
  for (const auto& [z, sig] : cases) EXPECT_NEAR(LimitingKolmogorovSig(z), sig, 1e-13 * sig) << z;
  EXPECT_TRUE(std::isnan(LimitingKolmogorovSig(-std::numeric_limits<double>::infinity())));
}

}  // namespace
