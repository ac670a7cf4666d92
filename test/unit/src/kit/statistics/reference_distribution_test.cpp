#include "kit/statistics/reference_distribution.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/matchers.h"

namespace {

struct ReferenceCase {
  const char* family;
  double minimum, maximum, mean, stdDev;
  std::vector<double> values, cdf;
};

// SciPy 1.17.1: uniform.cdf(x, -2, 5), poisson.cdf(x, 3.5), norm.cdf(x, 1, 0.5), expon.cdf(x,
// scale=2.5)
const ReferenceCase kCases[] = {
    {"uniform", -2, 3, 0, 0, {-2, 0, 3}, {0, 0.4, 1}},
    {"poisson",
     0,
     0,
     3.5,
     0,
     {-1, 0, 2.5, 5, 30, 2.9999999999999996, 3},
     {0, 0.0301973834223185, 0.32084719886213414, 0.8576135530957782, 1, 0.32084719886213414,
      0.536632667900785}},
    {"normal", 0, 0, 1, 0.5, {1, 1.25}, {0.5, 0.6914624612740131}},
    {"exponential", 0, 0, 2.5, 0, {0, 1, 10}, {0, 0.3296799539643607, 0.9816843611112658}},
};

TEST(ReferenceDistributionTest, FunctionsAgreeWithSciPy) {
  for (const ReferenceCase& row : kCases) {
    SCOPED_TRACE(row.family);
    ReferenceDistribution distribution;
    distribution.SetFamily(row.family);
    distribution.minimum = row.minimum;
    distribution.maximum = row.maximum;
    distribution.mean = row.mean;
    distribution.stdDev = row.stdDev;
    for (std::size_t i = 0; i < row.values.size(); ++i) {
      EXPECT_THAT(distribution.Cdf(row.values[i]), IsCloseTo(row.cdf[i], 1e-13));
      if (!distribution.IsPoisson()) {
        EXPECT_NEAR(distribution.RoughCdf(row.values[i]), row.cdf[i], 1e-13);
      }
    }
  }
}

TEST(ReferenceDistributionTest, ALargePoissonMeanHasItsNormal) {
  ReferenceDistribution distribution;
  distribution.SetFamily("poisson");
  distribution.mean = 250000.0;
  distribution.UseNormalForPoisson();
  EXPECT_THAT(distribution.Cdf(250500.0), IsCloseTo(0.841344746068542949, 1e-13));  // Phi(1)
  EXPECT_THAT(distribution.Cdf(249500.0), IsCloseTo(0.158655253931457051, 1e-13));  // in any order
}

}  // namespace
