#pragma once

#include <optional>

#include "kit/statistics/proportion_interval.h"
#include "tests/one_sample/two_class_test.h"

/// Confidence interval for the proportion of the first of two classes, by up to three methods that
/// the entry chooses.
///
/// Formulas, limits, sources: docs/statistics/confidence_interval.md.
///
/// Splits the records as the binomial test does and makes no decision.
class NPAREstimateCI final : public TwoClassTest {
 public:
  using TwoClassTest::TwoClassTest;

  XMLElement* WriteResults() override;

 protected:
  /// Errors of the classes.
  void Prepare(const SettingsReader& settings) override;
  /// Error 220003: the weights sum to 0; 220007: the exponential of the profile limit failed.
  void Compute() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  bool wantsClopperPearson = false;
  bool wantsJeffreys = false;
  bool wantsProfileLikelihood = false;
  double estimate = 0.0;
  std::optional<ProportionInterval> clopperPearson;
  std::optional<ProportionInterval> jeffreys;
  std::optional<ProportionInterval> profileLikelihood;
};
