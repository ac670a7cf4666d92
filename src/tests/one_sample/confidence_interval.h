#pragma once

#include <cstdint>
#include <optional>

#include "kit/contract/column_test.h"
#include "kit/groups/two_classes.h"
#include "kit/statistics/proportion_interval.h"

/// Confidence interval for the proportion of the first of two classes, by up to three methods that
/// the entry chooses: Clopper-Pearson, Jeffreys, profile likelihood (kit/proportion_interval.h).
/// Splits the records as the binomial test does and makes no decision. One pass.
class NPAREstimateCI final : public NPARRecordTest {
 public:
  using NPARRecordTest::NPARRecordTest;

  void SetSharedData(UnivariateResults* data) override;
  /// Errors 221306, 221309, 221310 of the classes.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record& record) override;
  bool NeedsAnotherPass() override { return false; }
  /// Error 220003: the weights sum to 0; 220007: the exponential of the profile limit failed.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  UnivariateResults* sharedData = nullptr;
  TwoClasses classes;
  double confidenceLevel = 0.95;
  double estimate = 0.0;
  std::optional<ProportionInterval> clopperPearson;
  std::optional<ProportionInterval> jeffreys;
  std::optional<ProportionInterval> profileLikelihood;
};
