#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/box_plot.h"
#include "kit/rank.h"
#include "kit/record_weight.h"

/// The samples of a k-sample test: one continuous variable in the categories of another. Over three
/// passes of the records ascending by the test variable it counts the groups, finds their hinges
/// and finds their outliers.
///
/// A group with data has its place among those, ascending by code.
class GroupSamples {
 public:
  /// Records of some group side by side, in the order in which they came.
  struct Units {
    std::size_t count = 0;
    const double* values = nullptr;
    const std::int32_t* codes = nullptr;
    const std::int32_t* weights = nullptr;  ///< truncated; null where every record weighs 1
    const double* plainWeights = nullptr;   ///< likewise
    const double* caseIds = nullptr;        ///< null where there are none

    [[nodiscard]] std::int64_t Weight(std::size_t i) const noexcept {
      return weights == nullptr ? 1 : weights[i];
    }

    /// Ranks them by code.
    void AddTo(NPARRank& ranks) const;
  };
  static constexpr std::size_t kNoPlace = static_cast<std::size_t>(-1);

  /// Reads "variableIndex", "groupVariableIndex", "weightVariableIndex", "caseIdVariableIndex".
  void Read(const QDSettings& settings);
  /// The categories of the group variable: codes from 0 below this number.
  void SetCategoryCount(std::int32_t count) { counts.assign(static_cast<std::size_t>(count), 0); }
  /// The test variable, then the group variable.
  void AppendRequired(std::vector<std::int64_t>& positions) const;

  /// Takes records in the running pass. Their units, without those of no category, are good until
  /// the next call.
  const Units& Take(RecordColumns& columns);
  void EndPass();
  /// Passes that have ended.
  [[nodiscard]] std::int32_t PassesDone() const noexcept { return passesDone; }

  [[nodiscard]] std::int32_t TestVariable() const noexcept { return testVariable; }
  [[nodiscard]] std::int32_t GroupVariable() const noexcept { return groupVariable; }
  [[nodiscard]] bool HasCaseIds() const noexcept { return caseIdVariable >= 0; }
  [[nodiscard]] std::int32_t CategoryCount() const noexcept {
    return static_cast<std::int32_t>(counts.size());
  }
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
  [[nodiscard]] double CountAt(std::size_t place) const noexcept {
    return static_cast<double>(CountOf(codes[place]));
  }
  [[nodiscard]] std::int64_t TotalWeight() const noexcept { return totalWeight; }
  /// By place; hinges are good once the second pass has ended, outliers after the third.
  [[nodiscard]] const std::vector<GroupBoxPlot>& BoxPlots() const noexcept { return boxPlots; }

 private:
  void Select(RecordColumns& columns);
  /// Leaves records of no category out of the units.
  void KeepCategories(RecordColumns& columns);
  void TrackHinges();
  void Classify();
  void EndCounting();

  std::int32_t testVariable = -1;
  std::int32_t groupVariable = -1;
  std::int32_t caseIdVariable = -1;
  RecordWeight recordWeight;
  Units units;
  std::vector<const double*> keptRows;
  RecordColumns keptColumns;
  std::int32_t passesDone = 0;
  std::vector<std::int64_t> counts;  // by code
  std::vector<std::size_t> places;   // by code
  std::vector<std::int32_t> codes;
  std::int64_t totalWeight = 0;
  std::vector<GroupBoxPlot> boxPlots;
};
