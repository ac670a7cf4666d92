#include "kit/statistics/proportion_interval.h"

#include <gtest/gtest.h>

#include "support/matchers.h"

namespace {

struct IntervalCase {
  std::int64_t successes, failures;
  ProportionInterval clopperPearson, jeffreys, profile;
  double profileTolerance;
};

// statsmodels 0.15.0: proportion_confint(count, nobs, 0.05, "beta" and "jeffreys"); profile limits
// by mpmath.findroot on the log-likelihood ratio, met to the solver's 1e-7; at the edges by hand:
// exp(-chi2.ppf(0.95, 1) / (2 n)).
const IntervalCase kCases[] = {
    {7,
     13,
     {0.15390920478454118, 0.5921885345328282},
     {0.172276213631912, 0.5677660938414961},
     {0.168302823226138, 0.567940289594670},
     1e-7},
    {0,
     10,
     {0.0, 0.30849710781876083},
     {0.0, 0.2171962675092106},
     {0.0, 0.1747533280498298},
     1e-12},
    {10, 0, {0.6915028921812392, 1.0}, {0.7828037324907894, 1.0}, {0.8252466719501702, 1.0}, 1e-12},
};

TEST(ProportionIntervalTest, LimitsAgreeWithPublishedMethods) {
  for (const IntervalCase& row : kCases) {
    SCOPED_TRACE(row.successes);
    const ProportionEstimator estimator(row.successes, row.failures, 0.95);
    const auto expect = [](const ProportionInterval& found, const ProportionInterval& wanted,
                           double tolerance) {
      EXPECT_NEAR(found.lower, wanted.lower, tolerance);
      EXPECT_NEAR(found.upper, wanted.upper, tolerance);
    };
    expect(estimator.ClopperPearson(), row.clopperPearson, 1e-11);
    expect(estimator.Jeffreys(), row.jeffreys, 1e-11);
    ASSERT_TRUE(estimator.ProfileLikelihood());
    expect(*estimator.ProfileLikelihood(), row.profile, row.profileTolerance);
  }
}

struct ScoreCase {
  std::int64_t x, n;
  ProportionInterval wilson, agrestiCoull;
};

// statsmodels 0.15.0: proportion_confint(x, n, 0.05, "wilson" and "agresti_coull")
const ScoreCase kScoreCases[] = {
    {7, 20, {0.18119182410108203, 0.5671457233147638}, {0.179926361438228, 0.5684111859776177}},
    {0, 10, {0.0, 0.27753279986288926}, {0.0, 0.3208873057505458}},
    {10, 10, {0.7224672001371106, 1.0}, {0.6791126942494543, 1.0}},
};

TEST(ProportionIntervalTest, ScoreLimitsAgreeAndEndWithTheProportion) {
  for (const ScoreCase& row : kScoreCases) {
    SCOPED_TRACE(row.x);
    const ProportionInterval wilson = WilsonInterval(row.x, row.n, 0.95);
    const ProportionInterval agrestiCoull = AgrestiCoullInterval(row.x, row.n, 0.95);
    EXPECT_THAT(wilson.lower, IsCloseTo(row.wilson.lower, 1e-12));
    EXPECT_THAT(wilson.upper, IsCloseTo(row.wilson.upper, 1e-12));
    EXPECT_THAT(agrestiCoull.lower, IsCloseTo(row.agrestiCoull.lower, 1e-12));
    EXPECT_THAT(agrestiCoull.upper, IsCloseTo(row.agrestiCoull.upper, 1e-12));
  }
}

}  // namespace
