#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "kit/contract/test.h"
#include "kit/records/record_batch.h"
#include "kit/statistics/reference_distribution.h"
#include "kit/summaries/univariate.h"
#include "report/algorithm_element.h"
#include "tests/one_sample/empirical_differences.h"

/// One-sample Kolmogorov-Smirnov test: does a continuous field follow a normal, uniform, Poisson or
/// exponential distribution, with parameters given or estimated from the sample?
///
/// Formulas, limits, sources: docs/statistics/ks_one_sample.md.
///
/// Two passes over the records ascending by the field: validation and estimation, then the
/// differences. Values that the distribution cannot take are warned of (220311, 220314, with their
/// weight), also by a test that fails later.
class NPARKSmirnowOneSample final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  void Prepare(const SettingsReader& settings) override;
  /// Error 220312 with value and weight: no count, in a Poisson test.
  void Take(RecordBatch& batch) override;
  /// Errors 220003, 220310, 220313: no valid value.
  void Compute() override;
  /// Errors 220312, 220313, 220315, 220316: the parameters make no distribution. Help message
  /// 220309: a large Poisson mean.
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  /// Error 220305: an exponential failed.
  void Finish() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  void AskForEstimates();
  /// Does the value take part?
  [[nodiscard]] bool IsValid(double x) const noexcept;
  /// Do all of these ascending values take part, as their ends tell?
  [[nodiscard]] bool AreValid(const double* values, std::size_t count) const noexcept;
  /// Estimates from the valid ones of records that are not all valid.
  void TakeValid(RecordBatch& batch);
  [[nodiscard]] Condition GetCondition() const;
  /// Is everything that the distribution needs given?
  [[nodiscard]] bool IsGiven() const noexcept;
  void AddExact(ExtendedFigures& figures) const;
  void AddLilliefors(ExtendedFigures& figures) const;

  std::int32_t variableIndex = -1;
  ReferenceDistribution distribution;
  bool estimateRange = false;
  bool estimateMean = false;
  bool estimateStdDev = false;
  std::optional<QDContUnivariateVariable> estimator;
  std::vector<std::uint8_t> isInvalid;  // by record in hand
  SelectedRecords validRecords;

  std::int64_t totalN = 0;
  std::int64_t excludedWeight = 0;
  std::optional<EmpiricalDifferences> differences;
  double testStatistic = 0.0;  // z
  double sig = 0.0;
};
