#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/groups/group_tally.h"
#include "kit/groups/shared_tallies.h"

/// The samples of a k-sample test: one continuous variable in the categories of another, counted
/// over three passes by a tally that it may share with other tests.
class GroupSamples {
 public:
  using Units = GroupTally::Units;
  static constexpr std::size_t kNoPlace = GroupTally::kNoPlace;

  /// Reads "variableIndex", "groupVariableIndex", "weightVariableIndex", "caseIdVariableIndex".
  void Read(const QDSettings& settings);
  /// Before the first pass; `shared` may be null.
  void Start(std::int32_t categoryCount, SharedTallies* shared);
  /// The test variable, then the group variable.
  void AppendRequired(std::vector<std::int64_t>& positions) const;

  [[nodiscard]] std::int32_t TestVariable() const noexcept { return key.testVariable; }
  [[nodiscard]] std::int32_t GroupVariable() const noexcept { return key.groupVariable; }
  [[nodiscard]] bool HasCaseIds() const noexcept { return key.caseIdVariable >= 0; }
  [[nodiscard]] std::int32_t CategoryCount() const noexcept { return key.categoryCount; }
  /// Passes that have ended.
  [[nodiscard]] std::int32_t PassesDone() const noexcept { return passesDone; }

  // As of the tally, once started.

  const Units& Take(RecordBatch& batch) { return tally.Take(batch); }
  void EndPass() {
    tally.EndPass();
    ++passesDone;
  }
  [[nodiscard]] GroupTally* GetTally() const noexcept { return tally.Get(); }
  [[nodiscard]] std::int64_t CountOf(std::int32_t code) const noexcept {
    return tally->CountOf(code);
  }
  [[nodiscard]] const std::vector<std::int32_t>& Codes() const noexcept { return tally->Codes(); }
  [[nodiscard]] std::size_t PlaceOf(std::int32_t code) const noexcept {
    return tally->PlaceOf(code);
  }
  [[nodiscard]] double CountAt(std::size_t place) const noexcept {
    return static_cast<double>(CountOf(Codes()[place]));
  }
  [[nodiscard]] std::int64_t TotalWeight() const noexcept { return tally->TotalWeight(); }
  [[nodiscard]] const std::vector<GroupBoxPlot>& BoxPlots() const noexcept {
    return tally->BoxPlots();
  }

 private:
  GroupTally::Key key;
  std::int32_t passesDone = 0;
  TallyShare<GroupTally> tally;
};
