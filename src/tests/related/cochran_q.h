#pragma once

#include <cstdint>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/contract/test.h"
#include "kit/groups/success_categories.h"
#include "kit/order/wide_integer.h"

/// Cochran's Q test: do k related binary fields have the same proportion of successes?
///
/// Formulas, limits, sources: docs/statistics/cochran_q.md.
///
/// T_j is the weight of the successes of field j, R the number of successes of a record. Success is
/// what kit/groups/success_categories.h says. One pass, and one for each step.
class NPARCochransQ final : public NPARTest {
 public:
  /// Takes the settings over, not the variables.
  NPARCochransQ(QDSettings* settings, const QDVarList* variables);

  /// The steps of a step-down are no passes that the progress counts.
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

 private:
  /// Counts the successes of each record among the first 0, 1, ..., k fields of a list. A field's
  /// success is looked up at its place in that list.
  void CountSuccesses(RecordBatch& batch, const std::vector<std::int32_t>& fields);
  /// By record.
  [[nodiscard]] const std::int32_t* SuccessesBefore(std::size_t place, RecordBatch& batch) const {
    return successesBefore.data() + place * batch.Size();
  }
  [[nodiscard]] std::vector<ComparedSample> OrderedSamples() const;
  void ComparePairs();
  /// T of a field by its index in the data. The table is read at that index as long as it has one
  /// there.
  [[nodiscard]] std::int64_t CountOf(std::int32_t variable) const;

  std::vector<std::int32_t> tested;
  SuccessCategories categories;
  MultipleComparison comparison;
  std::vector<std::int32_t> successesBefore;  // of the records in hand, by place, then by record
  std::int64_t totalN = 0;
  std::vector<std::int64_t> successCounts;  // T by place
  WideInteger sumRSquared = 0;
  RangeFigures overall;
  std::vector<std::int32_t> ordered;          // the fields as the step-down has them
  std::vector<WideInteger> rangeSumRSquared;  // by place in the work list
};
