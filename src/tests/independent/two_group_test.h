#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "kit/record_weight.h"
#include "kit/test.h"
#include "kit/two_groups.h"
#include "kit/univariate.h"

/// What the tests of two groups share: their settings, groups, sums of weights and passes. Records
/// arrive ascending by the test variable. Pass 0 yields every figure; where the test shows
/// histograms, pass 1 fills them, since their bins need the range of each group.
///
/// Codes, from the test's base such as 220700: +6 no summaries, +9 default groups and not two
/// categories, +10 a category in both lists, +11 an empty list or a group without data; 220003 no
/// weight at all.
class NPARTwoGroupTest : public NPARTest {
 public:
  void SetSharedData(UnivariateResults* data) override;
  QDStatus BeginPass() override;
  bool NeedsAnotherPass() override;
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;

 protected:
  enum class Passes : std::int32_t { FiguresOnly = 1, WithHistograms = 2 };
  NPARTwoGroupTest(QDSettings* settings, std::int32_t codeBase, Passes passes);

  /// Takes a record of either group: in pass 0 gives group, value and weight to `take`, in pass 1
  /// fills the histogram.
  template <typename Take>
  QDStatus TakeRecord(const Record& record, Take&& take) {
    const TwoGroups::Group group = groups.Of(record);
    if (group == TwoGroups::Neither) return status;
    const double x = record[groups.TestVariable()];
    const std::int64_t w = weight.Truncated(record);
    if (passIndex == 0) {
      counts[group] += w;
      histograms.TakeRange(group, x);
      take(group, x, w);
    } else {
      histograms.Add(group, x, w);
    }
    return status;
  }
  /// The figures, from both groups having weight; may report errors.
  virtual void Compute() = 0;

  [[nodiscard]] std::int64_t TotalCount() const noexcept { return counts[0] + counts[1]; }

  double sigLevel = 0.05;
  UnivariateResults* sharedData = nullptr;
  RecordWeight weight;
  TwoGroups groups;
  TwoGroupHistograms histograms;
  std::array<std::int64_t, 2> counts{0, 0};  // sums of weights

 private:
  TwoGroupCodes codes;
  std::int32_t passCount;
  std::int32_t passIndex = 0;
};
