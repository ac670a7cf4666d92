#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/groups/shared_tallies.h"
#include "kit/ranks/rank.h"
#include "kit/records/record_batch.h"
#include "kit/summaries/box_plot.h"

/// Counts the categories of one variable among the records ascending by another, then finds the
/// hinges of each, then its outliers: a pass for each.
///
/// A group with data has its place among those, ascending by code.
class GroupTally final : public Tally {
 public:
  /// Variables of the record, -1 for none, and the categories: codes from 0 below their number.
  struct Key {
    std::int32_t testVariable = -1;
    std::int32_t groupVariable = -1;
    std::int32_t caseIdVariable = -1;
    std::int32_t weightVariable = -1;
    std::int32_t categoryCount = 0;
    bool operator==(const Key&) const = default;
  };
  /// What some units hold of one code.
  struct Share {
    std::uint32_t count;
    std::uint32_t last;  ///< the place of the last one
  };
  /// Records of some group side by side, in the order in which they came.
  struct Units {
    std::size_t count = 0;
    const double* values = nullptr;
    const std::int32_t* codes = nullptr;
    const std::int32_t* weights = nullptr;  ///< truncated; null where every record weighs 1
    const double* plainWeights = nullptr;   ///< likewise
    const double* caseIds = nullptr;        ///< null where there are none
    const Share* shares = nullptr;          ///< by code; null where they were not needed

    [[nodiscard]] std::int64_t Weight(std::size_t i) const noexcept {
      return weights == nullptr ? 1 : weights[i];
    }

    /// Ranks them by code.
    void AddTo(NPARRank& ranks) const;
  };
  static constexpr std::size_t kNoPlace = static_cast<std::size_t>(-1);

  explicit GroupTally(const Key& key);
  [[nodiscard]] const Key& GetKey() const noexcept { return key; }

  void Take(RecordBatch& batch) override;
  void EndPass() override;
  /// The records in hand without those of no category.
  [[nodiscard]] const Units& GetUnits() const noexcept { return units; }

  /// Sum of the weights of a category.
  [[nodiscard]] std::int64_t CountOf(std::int32_t code) const noexcept {
    return counts[static_cast<std::size_t>(code)];
  }

  // Good once the first pass has ended.

  /// Codes of the groups with data.
  [[nodiscard]] const std::vector<std::int32_t>& Codes() const noexcept { return codes; }
  /// Place of a category among the groups with data; kNoPlace without data.
  [[nodiscard]] std::size_t PlaceOf(std::int32_t code) const noexcept {
    return places[static_cast<std::size_t>(code)];
  }
  [[nodiscard]] std::int64_t TotalWeight() const noexcept { return totalWeight; }
  /// By place; hinges are good once the second pass has ended, outliers after the third.
  [[nodiscard]] const std::vector<GroupBoxPlot>& BoxPlots() const noexcept { return boxPlots; }

 private:
  void Select(RecordBatch& batch);
  /// Leaves records of no category out of the units.
  void KeepCategories(RecordBatch& batch);
  void Count();
  void TrackHinges();
  void Classify();
  /// Shows the units to the box plots: `takeMany(plot, share)` all those of a group, and one after
  /// the other `takeOne(plot, i)` those of a group that it answered false for.
  template <typename TakeMany, typename TakeOne>
  void ShowToPlots(TakeMany takeMany, TakeOne takeOne);
  /// False for units that are not worth it: few for the number of categories, or not ascending.
  bool FindShares();
  void EndCounting();

  Key key;
  std::int32_t pass = 0;
  Units units;
  std::vector<std::uint8_t> isLeftOut;  // by record in hand: it is of no category
  SelectedRecords keptRecords;
  std::vector<std::int64_t> counts;  // by code
  std::vector<std::size_t> places;   // by code
  std::vector<std::int32_t> codes;
  std::int64_t totalWeight = 0;
  std::vector<GroupBoxPlot> boxPlots;
  std::vector<Share> shares;          // by code
  std::vector<std::uint8_t> isByOne;  // by place: its units go one by one
};
