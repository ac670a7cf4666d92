#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "kit/contract/column_test.h"
#include "kit/records/record_batch.h"
#include "kit/records/record_weight.h"
#include "kit/statistics/reference_distribution.h"
#include "kit/summaries/univariate.h"

/// One-sample Kolmogorov-Smirnov test: does a continuous field follow a normal, uniform, Poisson or
/// exponential distribution F, with parameters given or estimated from the sample?
///
/// F_n is the empirical distribution function of the weighted values, N the sum of weights. At each
/// distinct value x the differences just before and at the step are taken,
///   a = F_n(x-) - F(x),  b = F_n(x) - F(x);   Poisson: a = F_n(x - 1) - F(x - 1)
/// D is the largest |a| or |b|, z = sqrt(N) D; sig by Smirnov's limiting distribution
/// (kit/statistics/kolmogorov_smirnov.h). Estimated parameters are used as if they were given. A
/// Poisson mean of 100000 or more is tested against the normal with the same mean and variance.
///
/// Two passes over the records ascending by the field: validation and estimation, then the
/// differences. Values outside a given uniform range, or below 0 for the exponential, are left out
/// and warned of; a value that is no count fails a Poisson test.
///
/// Source: A. N. Kolmogorov, Giornale dell'Istituto Italiano degli Attuari 4 (1933); N. V. Smirnov,
/// Ann. Math. Stat. 19 (1948).
class NPARKSmirnowOneSample final : public NPARColumnTest {
 public:
  using NPARColumnTest::NPARColumnTest;

  void SetSharedData(UnivariateResults*) override {}
  /// Second pass: errors 220312, 220313, 220315, 220316 (parameters that make no distribution),
  /// help message 220309 (a large Poisson mean).
  QDStatus BeginPass() override;
  /// Error 220312 with value and weight: no count, in a Poisson test.
  QDStatus ProcessBatch(RecordBatch& batch) override;
  bool NeedsAnotherPass() override { return pass++ == 0; }
  /// First pass: errors 220003, 220310, 220313, no valid value. Second: 220305, an exponential
  /// failed.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  void ReadSettings();
  void AskForEstimates();
  void CheckParameters();
  /// Does each of these ascending values take part, as their ends tell?
  [[nodiscard]] bool AreValid(const double* values, std::size_t count) const noexcept;
  /// False for a value that takes no part.
  bool ValidateValue(double x, std::int64_t weight);
  /// First pass: counts the valid values and gives them to the estimator.
  void Estimate(RecordBatch& batch);
  /// Second pass: takes values of weight 1 none of which can be an extreme; false, and none taken,
  /// for others.
  bool TakeInside(const double* values, std::size_t count);
  void TakeValue(double x, std::int64_t weight);
  [[nodiscard]] double EmpiricalAt(double x, std::int64_t weightUpTo) const;
  /// Takes the differences at the last distinct value.
  void StepDifferences();
  /// Takes the differences of the steps that wait, but for those that cannot be an extreme.
  void TakeSteps();
  void TakeSteps(std::size_t begin, std::size_t end);
  /// Are all differences between these inside the extremes so far?
  [[nodiscard]] bool CannotBeExtreme(double lowest, double highest) const noexcept;
  void TakeDifference(double difference);
  [[nodiscard]] bool IsGivenUniform() const noexcept;

  ReferenceDistribution distribution;
  RecordWeight weight;
  std::int32_t variableIndex = -1;
  double sigLevel = 0.05;
  double minimum = QDMV::gMissingValue;  // of the values; given for the uniform
  double maximum = QDMV::gMissingValue;
  bool estimateRange = false;
  bool estimateMean = false;
  bool estimateStdDev = false;
  std::optional<QDContUnivariateVariable> estimator;
  std::vector<std::uint8_t> isInvalid;  // by record in hand
  SelectedRecords validRecords;
  std::uint64_t pass = 0;

  std::int64_t totalN = 0;
  std::int64_t excludedWeight = 0;
  // At their starts until a value has touched them.
  double absoluteDiff = std::numeric_limits<double>::lowest();
  double positiveDiff = std::numeric_limits<double>::lowest();
  double negativeDiff = std::numeric_limits<double>::max();

  std::int64_t cumulative = 0;  // weight up to and including previousValue
  std::int64_t tieWeight = 0;   // weight of previousValue alone
  double previousValue = QDMV::gMissingValue;
  double previousEmpirical = 0.0;  // before the steps that wait
  double boundedValue = QDMV::gMissingValue;
  double boundedCdf = 0.0;  // rough, at boundedValue
  /// A distinct value and the weight up to and including it.
  struct Step {
    double x;
    std::int64_t weightUpTo;
  };
  std::vector<Step> steps;  // that wait for their differences; a Poisson test takes them at once
  bool hasNegativeWeight = false;

  double testStatistic = 0.0;
  double sig = 0.0;
};
