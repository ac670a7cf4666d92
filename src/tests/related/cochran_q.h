#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/contract/column_test.h"
#include "kit/groups/success_categories.h"
#include "kit/order/wide_integer.h"
#include "kit/records/record_weight.h"

/// Cochran's Q test: do k related binary fields have the same share of successes?
///
/// T_j is the weight of the successes of field j, N the sum of weights; figures as in
/// kit/statistics/cochran_q.h. No continuity correction, no exact value. Pairwise, two fields
/// differ by (T_i - T_j) / N; stepwise, Q is taken over the fields of a range. Success is what
/// kit/success_categories.h says. One pass, and one for each step.
///
/// Source: W. G. Cochran, Biometrika 37 (1950); L. A. Marascuilo, M. McSweeney, Psychological
/// Bulletin 67 (1967), for the pairs.
class NPARCochransQ final : public NPARRecordTest {
 public:
  /// Takes the settings over, not the variables.
  NPARCochransQ(QDSettings* settings, const QDVarList* variables);

  void SetSharedData(UnivariateResults* data) override { sharedData = data; }
  /// Errors 221206, 221209, 221210, 221213, 221214: no split, or too few fields.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record& record) override;
  bool NeedsAnotherPass() override;
  /// Errors 220003: no success at all; 221210: all fields always, or never, a success.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  enum class Stage { Overall, StepDownAhead, StepDown, Done };
  void ReadSettings();
  void StartStepDown();
  void EndOverall();
  void ComparePairs();
  /// Q and its significance over samples with successes T, where sum w R^2 counts these samples
  /// only.
  [[nodiscard]] static RangeFigures ComputeQ(const std::vector<std::int64_t>& counts,
                                             WideInteger sumRSquared);
  /// T of a field by its index in the data. The table is read at that index as long as it has one
  /// there.
  [[nodiscard]] std::int64_t CountOf(std::int32_t variable) const;

  UnivariateResults* sharedData = nullptr;
  RecordWeight weight;
  double sigLevel = 0.05;
  std::vector<std::int32_t> tested;
  bool userSpecifyGroupList = false;
  std::vector<double> successNumbers;
  std::vector<std::string> successTexts;
  SuccessCategories categories;
  MultipleComparison comparison;
  Stage stage = Stage::Overall;
  std::int64_t totalN = 0;
  std::vector<std::int64_t> successCounts;  // T by place
  std::int64_t sumR = 0;
  WideInteger sumRSquared = 0;
  RangeFigures overall;
  std::vector<WideInteger> rangeSumRSquared;  // by place in the work list
};
