#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/paired_differences.h"
#include "kit/records/record_weight.h"
#include "kit/statistics/normal.h"

/// Sign test: is the median of the paired differences d = second - first zero?
///
/// n is the sum of weights where d is not 0, of which those with d > 0 are a binomial count of
/// probability 1/2; figures as in kit/statistics/binomial.h, two-sided, the exact one, which then
/// decides, for 1 <= n <= 25. Without a difference (n = 0) the asymptotic p is 1.
/// Pass 0 yields every figure; pass 1 only the histogram of d, whose range pass 0 found.
///
/// Source: W. J. Dixon and A. M. Mood, The statistical sign test, JASA 41 (1946), 557-566.
class NPARSign final : public NPARTest {
 public:
  /// The largest n with an exact p.
  static constexpr std::int64_t kExactLimit = 25;

  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 220918: "variableIndex" does not hold two different positions.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0. Help message 220916: the exact p is given.
  void Compute() override;
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;

 private:
  PairedDifferences differences;
  NormalFigures approximation;  // as it stands where no difference is above or below 0
  std::optional<double> exactSig;
};
