#pragma once

#include <cstdint>
#include <optional>

#include "kit/statistics/normal.h"
#include "tests/related/paired_test.h"

/// Sign test: is the median of the paired differences d = second - first zero?
///
/// Formulas, limits, sources: docs/statistics/sign.md.
///
/// The exact value decides where there is one. Pass 0 yields every figure; pass 1 only the
/// histogram of d, whose range pass 0 found.
class NPARSign final : public NPARPairedTest {
 public:
  /// The largest n with an exact p.
  static constexpr std::int64_t kExactLimit = 25;

  using NPARPairedTest::NPARPairedTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 220918: "variableIndex" does not hold two different positions.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220003: the weights sum to 0. Help message 220916: the exact p is given.
  void Compute() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  void AddMedian(ExtendedFigures& figures);

  NormalFigures approximation;  // as it stands where no difference is above or below 0
  std::optional<double> exactSig;
};
