#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "catalogue/shared_codes.h"
#include "kit/contract/test.h"
#include "kit/groups/group_tally.h"
#include "kit/groups/two_groups.h"

/// What the tests of two groups share: their settings, groups, sums of weights and passes. Records
/// arrive ascending by the test variable. Pass 0 yields the figures; where the test shows
/// histograms, pass 1 fills them, since their bins need the range of each group.
class NPARTwoGroupTest : public NPARTest {
 public:
 protected:
  enum class Passes : std::int32_t { FiguresOnly = 1, WithHistograms = 2 };
  NPARTwoGroupTest(QDSettings* settings, const catalogue::TwoGroupCodes& codes, Passes passes);

  /// Pass 0: records of either group.
  virtual void TakeUnits(const GroupTally::Units& units) = 0;
  /// The figures, from both groups having weight; may report errors.
  virtual void ComputeFigures() = 0;
  /// Pass 1: the same records again, for figures that need the sums of weights first.
  virtual void TakeUnitsAgain(const GroupTally::Units& /*units*/) {}

  /// Errors: those of the groups, as the codes say; 220003 no weight at all.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch&) final { TakeUnits(tally->GetUnits()); }
  void Compute() final;
  void TakeAgain(RecordBatch&) final { TakeUnitsAgain(tally->GetUnits()); }

  [[nodiscard]] std::int64_t TotalCount() const noexcept { return counts[0] + counts[1]; }

  TwoGroups groups;
  GroupTally* tally = nullptr;
  std::array<std::int64_t, 2> counts{0, 0};  // sums of weights

 private:
  const catalogue::TwoGroupCodes& codes;
  std::int32_t passCount;
};
