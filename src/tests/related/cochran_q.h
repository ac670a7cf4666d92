#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_successes.h"
#include "kit/contract/test.h"
#include "kit/groups/success_categories.h"
#include "kit/order/wide_integer.h"

/// Cochran's Q test: do k related binary fields have the same proportion of successes?
///
/// Formulas, limits, sources: docs/statistics/cochran_q.md.
///
/// T_j is the weight of the successes of field j, R the number of successes of a record. Success is
/// what kit/groups/success_categories.h says. One pass, and one more for what a step-down needs.
class NPARCochransQ final : public NPARTest {
 public:
  /// Takes the settings over, not the variables.
  NPARCochransQ(QDSettings* settings, const QDVarList* variables);

  XMLElement* WriteResults() override;

 protected:
  /// Errors 221206, 221209, 221210, 221213, 221214: no split, or too few fields.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Errors 220003: no success at all; 221210: all fields always, or never, a success.
  void Compute() override;
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  /// Of all fields.
  [[nodiscard]] double WithinRecords() const;
  [[nodiscard]] std::vector<ComparedSample> OrderedSamples() const;
  [[nodiscard]] std::optional<RangeFigures> ComputeRange(const SampleRange& range) const;
  void ComparePairs();
  /// T of a field by its index in the data. The table is read at that index as long as it has one
  /// there.
  [[nodiscard]] std::int64_t CountOf(std::int32_t variable) const;

  std::vector<std::int32_t> tested;
  SuccessCategories categories;
  MultipleComparison comparison;
  std::vector<std::int32_t> successesOf;  // the records in hand
  std::int64_t totalN = 0;
  std::vector<std::int64_t> successCounts;  // T by place
  WideInteger sumRSquared = 0;
  RangeFigures overall;
  // The fields as the step-down has them.
  std::vector<ComparedSample> ordered;
  std::vector<std::int64_t> orderedCounts;   // T
  std::vector<WideInteger> successesBefore;  // T of all earlier ones
  RangeSuccesses ranges;
};
