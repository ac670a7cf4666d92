#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "kit/contract/column_test.h"
#include "kit/groups/two_group_tally.h"
#include "kit/groups/two_groups.h"
#include "kit/summaries/univariate.h"

/// What the tests of two groups share: their settings, groups, sums of weights and passes. Records
/// arrive ascending by the test variable. Pass 0 yields the figures; where the test shows
/// histograms, pass 1 fills them, since their bins need the range of each group.
///
/// Codes, from the test's base such as 220700: +6 no summaries, +9 default groups and not two
/// categories, +10 a category in both lists, +11 an empty list or a group without data; 220003 no
/// weight at all.
class NPARTwoGroupTest : public NPARColumnTest {
 public:
  void SetSharedData(UnivariateResults* data) override;
  QDStatus BeginPass() override;
  QDStatus ProcessBatch(RecordBatch& batch) final;
  bool NeedsAnotherPass() override;
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) final;
  Tally* GetTally() const noexcept final { return tally.Get(); }

 protected:
  enum class Passes : std::int32_t { FiguresOnly = 1, WithHistograms = 2 };
  NPARTwoGroupTest(QDSettings* settings, std::int32_t codeBase, Passes passes);

  /// Pass 0: records of either group.
  virtual void Take(const TwoGroupUnits& records) = 0;
  /// The figures, from both groups having weight; may report errors.
  virtual void Compute() = 0;
  /// Pass 1: the same records again, for figures that need the sums of weights first.
  virtual void TakeAgain(const TwoGroupUnits& /*records*/) {}
  virtual void ComputeAgain() {}

  [[nodiscard]] std::int64_t TotalCount() const noexcept { return counts[0] + counts[1]; }

  double sigLevel = 0.05;
  UnivariateResults* sharedData = nullptr;
  TwoGroups groups;
  TallyShare<TwoGroupTally> tally;
  std::array<std::int64_t, 2> counts{0, 0};  // sums of weights

 private:
  TwoGroupCodes codes;
  std::int32_t passCount;
  std::int32_t passIndex = 0;
};
