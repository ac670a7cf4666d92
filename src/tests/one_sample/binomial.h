#pragma once

#include <cstdint>
#include <optional>

#include "kit/statistics/normal.h"
#include "tests/one_sample/two_class_test.h"

/// Binomial test: does the proportion of the first of two classes agree with a probability p?
///
/// Formulas, limits, sources: docs/statistics/binomial.md.
///
/// kit/groups/two_classes.h forms the classes. The asymptotic value decides, also beside an exact
/// one.
class NPARBinomial final : public TwoClassTest {
 public:
  /// The largest n with an exact value.
  static constexpr std::int64_t kExactLimit = 25;

  using TwoClassTest::TwoClassTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 221317: "testProbability" is not strictly between 0 and 1; errors of the classes.
  void Prepare(const SettingsReader& settings) override;
  /// Error 220003: the weights sum to 0; 220007: a distribution function failed. Help message
  /// 221311, with p: the observed proportion lies below p (and p is not 1/2).
  void Compute() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  /// Doubles a one-sided value where the test is two-sided.
  [[nodiscard]] double Sided(double tail) const;

  double testProbability = 0.5;
  bool twoTailed = false;
  NormalFigures approximation;
  double asymptoticSig = 0.0;
  std::optional<double> exactSig;
};
