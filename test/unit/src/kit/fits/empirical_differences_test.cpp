#include "kit/fits/empirical_differences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace {

ReferenceDistribution Normal(double mean, double stdDev) {
  ReferenceDistribution normal;
  normal.mean = mean;
  normal.stdDev = stdDev;
  return normal;
}

ReferenceDistribution Uniform(double minimum, double maximum) {
  ReferenceDistribution uniform;
  uniform.SetFamily("uniform");
  uniform.minimum = minimum;
  uniform.maximum = maximum;
  return uniform;
}

ReferenceDistribution Exponential(double mean) {
  ReferenceDistribution exponential;
  exponential.SetFamily("exponential");
  exponential.mean = mean;
  return exponential;
}

// Against values on [0, 4): the largest difference is above, below, at either end or amid them.
const std::vector<ReferenceDistribution> kDistributions = {
    Normal(2.0, 1.2),  Normal(1.0, 1.2),  Normal(3.0, 1.2), Normal(2.0, 0.4),
    Uniform(0.0, 4.0), Uniform(1.0, 3.0), Exponential(2.0), Exponential(0.5)};

/// The extreme differences by their definition, of all steps.
struct Extremes {
  double positive = 0.0;
  double negative = 0.0;

  Extremes(ReferenceDistribution distribution, const std::vector<double>& values) {
    const auto empirical = [&](double x, std::size_t upTo) {
      if (x < distribution.minimum) return 0.0;
      if (x >= distribution.maximum) return 1.0;
      return static_cast<double>(upTo) / static_cast<double>(values.size());
    };
    double before = 0.0;
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (i + 1 < values.size() && values[i + 1] == values[i]) continue;
      const double cdf = distribution.Cdf(values[i]);
      for (const double f : {before, empirical(values[i], i + 1)}) {
        positive = std::max(positive, f - cdf);
        negative = std::min(negative, f - cdf);
      }
      before = empirical(values[i], i + 1);
    }
  }
};

// Blocks of values that are passed over, steps that are bounded, and both beside plain values.
TEST(EmpiricalDifferencesTest, PassesOverNothingThatCouldBeAnExtreme) {
  std::mt19937 random(20);
  std::uniform_real_distribution<double> even(0.0, 4.0);
  std::size_t passed = 0;
  for (const double grid : {0.0, 0.125}) {
    std::vector<double> values(3000);
    for (double& x : values)
      x = grid == 0.0 ? even(random) : std::floor(even(random) / grid) * grid;
    std::sort(values.begin(), values.end());
    for (std::size_t number = 0; number < kDistributions.size(); ++number) {
      const Extremes expected(kDistributions[number], values);
      for (const std::size_t block : {1U, 2U, 7U, 64U, 700U}) {
        SCOPED_TRACE(std::to_string(number) + ", blocks of " + std::to_string(block));
        EmpiricalDifferences differences(kDistributions[number],
                                         static_cast<std::int64_t>(values.size()));
        for (std::size_t i = 0; i < values.size(); i += block) {
          const std::size_t count = std::min(block, values.size() - i);
          if (differences.PassOver(&values[i], count)) {
            ++passed;
            continue;
          }
          for (std::size_t k = i; k < i + count; ++k) differences.Add(values[k], 1);
        }
        differences.Finish();
        EXPECT_EQ(differences.Extremes().Positive(), expected.positive);
        EXPECT_EQ(differences.Extremes().Negative(), expected.negative);
        EXPECT_EQ(differences.Extremes().Absolute(),
                  std::max(expected.positive, -expected.negative));
      }
    }
  }
  EXPECT_GT(passed, 5000U) << "of 40 thousand, most of one value";
}

}  // namespace
