#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/settings_reader.h"
#include "kit/contract/shared_tallies.h"
#include "kit/ranks/rank.h"
#include "kit/records/order_excerpt.h"
#include "kit/records/record_batch.h"
#include "kit/summaries/box_plot.h"
#include "kit/summaries/hinges.h"
#include "kit/summaries/histogram.h"
#include "kit/summaries/quartiles.h"
#include "kit/summaries/stretch.h"

/// What the groups of a variable come to among the records ascending by it, over some passes. Tests
/// of the same groups share it.
///
/// A first pass sums the weights and finds the ranges. With histograms, a second one fills them;
/// with box plots, a second one finds the hinges and a third one the outliers.
class GroupTally final : public Tally {
 public:
  enum class Shown { BoxPlots, Histograms };
  /// Who the groups are: variables of the record, -1 for none, and the categories of one of them.
  struct Key {
    std::int32_t testVariable = -1;
    std::int32_t groupVariable = -1;
    std::int32_t caseIdVariable = -1;
    std::int32_t weightVariable = -1;
    std::int32_t groupCount = 0;
    /// The group of each category, groupCount for those of no group, as which a category beyond
    /// the list counts. Without it each category is a group, numbered by its code.
    std::optional<std::vector<std::int32_t>> groupOfCode;
    Shown shown = Shown::BoxPlots;
    /// Find the quartiles of each group in the second pass.
    bool wantsQuartiles = false;

    /// Reads "variableIndex", "groupVariableIndex", "caseIdVariableIndex", "weightVariableIndex",
    /// "extendedFigures".
    void ReadVariables(const SettingsReader& settings);
    bool operator==(const Key&) const = default;
  };
  /// What some units hold of one group.
  struct Share {
    std::int64_t weight;
    std::int32_t last;  ///< which is the last one; -1 if there is none
  };
  /// Records of some group side by side, in the order in which they came.
  struct Units {
    std::size_t count = 0;
    const double* values = nullptr;
    const std::int32_t* groups = nullptr;
    const std::int32_t* weights = nullptr;  ///< truncated; null where every record weighs 1
    const double* plainWeights = nullptr;   ///< null where no variable weighs them
    const std::int32_t* counts = nullptr;   ///< records of each; null where each is one
    const double* caseIds = nullptr;        ///< null where there are none, or none is shown
    /// By group. Null where it is not worth it, the units being few for the groups, and where the
    /// values do not ascend, one being no number.
    const Share* shares = nullptr;

    [[nodiscard]] std::int64_t Weight(std::size_t i) const noexcept {
      return weights == nullptr ? 1 : weights[i];
    }
    [[nodiscard]] double PlainWeight(std::size_t i) const noexcept {
      return plainWeights == nullptr ? static_cast<double>(Weight(i)) : plainWeights[i];
    }
    [[nodiscard]] std::size_t GroupOf(std::size_t i) const noexcept {
      return static_cast<std::size_t>(groups[i]);
    }
    /// Ranks them by group.
    void AddTo(NPARRank& ranks) const;
  };
  /// One group in the first pass.
  struct Sample {
    std::int64_t count = 0;              ///< sum of weights
    double first = QDMV::gMissingValue;  ///< value that came; known for histograms only
    double last = QDMV::gMissingValue;   ///< likewise
    ValueRange range;                    ///< likewise
  };
  static constexpr std::size_t kNoPlace = static_cast<std::size_t>(-1);

  explicit GroupTally(const Key& key);
  [[nodiscard]] const Key& GetKey() const noexcept { return key; }

  void Take(RecordBatch& batch) override;
  void EndPass() override;
  /// Not while it names the cases beyond the fences.
  [[nodiscard]] bool TakesCells() const override;
  /// With box plots: what the coming pass looks at in the order of the test variable.
  void WantPlaces(OrderExcerpt& wanted) const;
  /// The records in hand, without those of no group.
  [[nodiscard]] const Units& GetUnits() const noexcept { return units; }

  // Good once the first pass has ended.

  [[nodiscard]] const Sample& SampleOf(std::int32_t group) const noexcept {
    return samples[static_cast<std::size_t>(group)];
  }
  [[nodiscard]] std::int64_t CountOf(std::int32_t group) const noexcept {
    return SampleOf(group).count;
  }
  /// The groups with data, ascending. A group has its place among these.
  [[nodiscard]] const std::vector<std::int32_t>& Groups() const noexcept { return groupAt; }
  [[nodiscard]] double CountAt(std::size_t place) const noexcept {
    return static_cast<double>(CountOf(groupAt[place]));
  }
  /// kNoPlace without data.
  [[nodiscard]] std::size_t PlaceOf(std::int32_t group) const noexcept {
    return placeOf[static_cast<std::size_t>(group)];
  }
  /// Of the groups with data.
  [[nodiscard]] std::int64_t TotalWeight() const noexcept { return totalWeight; }
  [[nodiscard]] bool HasNegativeWeight() const noexcept { return hasNegativeWeight; }

  /// By group; good once the second pass has ended.
  [[nodiscard]] const std::vector<HistogramBin>& BinsOf(std::int32_t group) const {
    return histograms[static_cast<std::size_t>(group)].GetBins();
  }
  /// By group, of units; good once the second pass has ended, where the key wants them.
  [[nodiscard]] Quartiles QuartilesOf(std::int32_t group) const {
    const HingeWalk& walk = quartileWalks[static_cast<std::size_t>(group)];
    return {walk.FirstQuartile(), walk.Median(), walk.ThirdQuartile()};
  }
  /// By place; hinges are good once the second pass has ended, outliers after the third.
  [[nodiscard]] const std::vector<GroupBoxPlot>& BoxPlots() const noexcept { return boxPlots; }

 private:
  /// The group of each record, or the number of none.
  const std::int32_t* GroupsOf(RecordBatch& batch);
  /// Finds the units of some records and what they hold of each group.
  void Find(RecordBatch& batch);
  /// Takes the units from the batch as they stand; these are their groups.
  void Select(RecordBatch& batch, const std::int32_t* groupsOfRecords);
  void FindShares();

  void Count();
  void TakeRanges();
  void TrackHinges();
  void Classify();
  void FillHistograms();
  /// Finds the bins that take the units from `first` to before `end`, one of each group.
  bool FindOneBinOfEach(std::size_t first, std::size_t end);
  void AddToHistogram(std::size_t i);
  /// Of the units of a group that has some in hand.
  [[nodiscard]] Stretch StretchOf(const Share& share) const noexcept;
  void WalkToQuartiles();
  void EndCounting();
  /// Shows the units to the box plots: `passOver(plot, stretch)` all those of a group and, where it
  /// answers false, one after the other `take(plot, i)`.
  template <typename PassOver, typename TakeOne>
  void ShowToPlots(PassOver passOver, TakeOne takeOne);

  Key key;
  std::int32_t pass = 0;
  Units units;
  std::vector<std::int32_t> groups;     // of the units, where they are not the codes
  std::vector<std::uint8_t> isLeftOut;  // by record in hand: it is of no group
  SelectedRecords keptRecords;
  std::vector<Share> shares;  // by group

  std::vector<Sample> samples;        // by group
  std::vector<std::int32_t> groupAt;  // by place
  std::vector<std::size_t> placeOf;   // by group
  std::int64_t totalWeight = 0;
  bool hasNegativeWeight = false;
  std::vector<Histogram> histograms;  // by group
  std::vector<HistogramBin*> binsOfPiece;
  std::vector<HingeWalk> quartileWalks;  // by group
  std::vector<GroupBoxPlot> boxPlots;
  std::vector<std::uint8_t> isByOne;  // by place: its units go one by one
};
