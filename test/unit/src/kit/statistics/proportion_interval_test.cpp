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

struct ProfileCase {
  const char* catches;
  std::int64_t successes, failures;
  double level;
  ProportionInterval profile;
};

// Newton's steps as docs/statistics/confidence_interval.md has them, in Python 3.11 with SciPy
// 1.17.1's beta.ppf and chi2.ppf.
const ProfileCase kProfileCases[] = {
    {"steps that leave (0, 1)", 1, 1, 0.999, {-0.00024145728957124406, 1.0002414572895713}},
    {"a step too far, halved", 2, 1, 0.999999, {0.0009717438546577811, 0.9999988209608078}},
    {"a step too far, above", 5, 2, 0.999999, {0.04019633283048871, 0.999688904407371}},
    {"out of (0, 1) above alone", 999, 1, 0.999, {0.9914712913923106, 1.000000445092832}},
    {"Jeffreys' lower limit above the share", 1, 3, 0.01, {0.2472929913994285, 0.2527201002026868}},
    {"Jeffreys' upper limit below it", 2, 1, 0.01, {0.6632494228807848, 0.6700719861087533}},
    {"narrow: two steps", 1, 1, 0.01, {0.4955687190231174, 0.5044312809768825}},
    {"rare: ended by the size of a step",
     1,
     999999,
     0.8,
     {1.94540619471943e-07, 2.87843286578549e-06}},
    {"rare: after the first step", 1, 999999, 0.95, {3.69910003816981e-08, 4.40301277658411e-06}},
    {"many steps", 1, 99, 0.95, {0.0005732948625919777, 0.04328760902929842}},
};

TEST(ProportionIntervalTest, ProfileLimitsAreWhereTheStepsEnd) {
  for (const ProfileCase& row : kProfileCases) {
    SCOPED_TRACE(row.catches);
    const auto found =
        ProportionEstimator(row.successes, row.failures, row.level).ProfileLikelihood();
    ASSERT_TRUE(found);
    EXPECT_THAT(found->lower, IsCloseTo(row.profile.lower, 1e-10));
    EXPECT_THAT(found->upper, IsCloseTo(row.profile.upper, 1e-10));
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
