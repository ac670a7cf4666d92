#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/paired_differences.h"

/// Sign test: is the median of the paired differences d = second - first zero?
///
/// S and T are the sums of weights where d > 0 and d < 0, n = S + T, B is Binomial(n, 1/2):
///   exact       p = min(1, 2 min(P(B <= S), P(B >= S)))                      1 <= n <= 25
///   asymptotic  z = (S - n/2 -+ 1/2) / (sqrt(n) / 2), p = 2 (1 - Phi(|z|))   n >= 1
/// The 1/2 moves S toward n/2 and never past it. Where there is an exact p, it decides. Without a
/// difference (n = 0) the asymptotic p is 1.
/// Pass 0 yields every figure; pass 1 only the histogram of d, whose range pass 0 found.
///
/// Source: W. J. Dixon and A. M. Mood, The statistical sign test, JASA 41 (1946), 557-566.
class NPARSign final : public NPARTest {
 public:
  /// The largest n with an exact p.
  static constexpr std::int64_t kExactLimit = 25;

  using NPARTest::NPARTest;

  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
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
  double standardError = 0.0;
  double standardTestStatistic = 0.0;  // z
  double asymptoticSig = 0.0;
  std::optional<double> exactSig;
};
