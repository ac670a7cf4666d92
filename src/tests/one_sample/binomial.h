#pragma once

#include <cstdint>
#include <optional>

#include "kit/contract/column_test.h"
#include "kit/groups/two_classes.h"
#include "kit/statistics/normal.h"

/// Binomial test: does the share of the first of two classes agree with a probability p?
///
/// The count is the sum of weights in the first class, n that in both; figures as in
/// kit/statistics/binomial.h, the exact one, the smaller tail, for n <= 25. One-sided, but for p =
/// 1/2, where both are doubled and cut to 1. The asymptotic value decides.
/// One pass; the classes are told in kit/two_classes.h.
///
/// Source: S. Siegel, N. J. Castellan, Nonparametric Statistics for the Behavioral Sciences, 2nd
/// ed. (1988), 4.1.
class NPARBinomial final : public NPARRecordTest {
 public:
  using NPARRecordTest::NPARRecordTest;

  /// The largest n with an exact value.
  static constexpr std::int64_t kExactLimit = 25;

  void SetSharedData(UnivariateResults* data) override;
  /// Error 221317: "testProbability" is not strictly between 0 and 1; 221306, 221309, 221310 of the
  /// classes.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record& record) override;
  bool NeedsAnotherPass() override { return false; }
  /// Error 220003: the weights sum to 0; 220007: a distribution function failed. Help message
  /// 221311, with p: the observed share lies below p (and p is not 1/2).
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  /// Doubles a one-sided value where the test is two-sided.
  [[nodiscard]] double Sided(double tail) const;

  UnivariateResults* sharedData = nullptr;
  TwoClasses classes;
  double sigLevel = 0.05;
  double testProbability = 0.5;
  bool twoTailed = false;
  NormalFigures approximation;
  double asymptoticSig = 0.0;
  std::optional<double> exactSig;
};
