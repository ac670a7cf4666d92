#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "foundation/names.h"
#include "kit/groups/shared_tallies.h"
#include "kit/groups/two_groups.h"
#include "kit/ranks/rank.h"
#include "kit/records/record_batch.h"
#include "kit/summaries/univariate.h"

/// Records of either group side by side, in the order in which they came.
struct TwoGroupUnits {
  std::size_t count = 0;
  const double* values = nullptr;
  const TwoGroups::Group* groups = nullptr;
  const std::int32_t* weights = nullptr;      ///< truncated; null where every record weighs 1
  std::array<std::int64_t, 2> sums = {0, 0};  ///< of weights, by group

  [[nodiscard]] std::int64_t Weight(std::size_t i) const noexcept {
    return weights == nullptr ? 1 : weights[i];
  }
  /// Do the values ascend, all of them numbers of one sign and none of them 0?
  [[nodiscard]] bool AscendWithoutZero() const noexcept {
    return count > 0 && values[0] <= values[count - 1] &&
           (values[0] > 0.0 || values[count - 1] < 0.0);
  }
  /// Ranks them by group.
  void AddTo(NPARRank& ranks) const;
};

/// A histogram of the test variable for each of two groups; a first pass finds their ranges.
class TwoGroupHistograms {
 public:
  /// First pass.
  void TakeRange(TwoGroups::Group group, double x) noexcept {
    if (x > maxValues[group]) maxValues[group] = x;
    if (x < minValues[group]) minValues[group] = x;
  }
  /// Between the passes: makes the bins.
  void Start();
  /// Second pass.
  void Add(const TwoGroupUnits& units);
  /// After it: appends the zeros.
  void Finish();
  [[nodiscard]] const std::vector<HistogramBin>& Bins(TwoGroups::Group group) const {
    return histograms[group].GetBins();
  }

 private:
  std::array<double, 2> minValues{std::numeric_limits<double>::max(),
                                  std::numeric_limits<double>::max()};
  std::array<double, 2> maxValues{std::numeric_limits<double>::lowest(),
                                  std::numeric_limits<double>::lowest()};
  std::array<QDContUnivariateVariable, 2> histograms;
};

/// What two groups come to among the records ascending by the test variable: sizes and ranges in a
/// first pass, histograms in a second.
class TwoGroupTally final : public Tally {
 public:
  using Units = TwoGroupUnits;
  /// Variables of the record; the weight's is -1 for none.
  struct Key {
    std::int32_t testVariable = -1;
    std::int32_t groupVariable = -1;
    std::int32_t weightVariable = -1;
    std::vector<TwoGroups::Group> groupOfCode;
    bool operator==(const Key&) const = default;

    Key(const TwoGroups& groups, std::int32_t weightVariable)
        : testVariable(groups.TestVariable()),
          groupVariable(groups.GroupVariable()),
          weightVariable(weightVariable),
          groupOfCode(groups.GroupOfCode()) {}
  };
  /// Of one group, in the first pass.
  struct Sample {
    std::int64_t count = 0;              ///< sum of weights
    double first = QDMV::gMissingValue;  ///< value that came
    double last = QDMV::gMissingValue;
  };

  explicit TwoGroupTally(const Key& key) : key(key) {}
  [[nodiscard]] const Key& GetKey() const noexcept { return key; }

  void Take(RecordBatch& batch) override;
  void EndPass() override;
  /// The records in hand without those of neither group.
  [[nodiscard]] const Units& GetUnits() const noexcept { return units; }

  /// Good once the first pass has ended.
  [[nodiscard]] const std::array<Sample, 2>& Samples() const noexcept { return samples; }
  [[nodiscard]] bool HasNegativeWeight() const noexcept { return hasNegativeWeight; }
  /// Good once the second pass has ended.
  [[nodiscard]] const TwoGroupHistograms& Histograms() const noexcept { return histograms; }

 private:
  void FindGroups(RecordBatch& batch);
  /// Takes the units from the batch as they stand.
  void Select(RecordBatch& batch);
  /// Leaves records of neither group out of the units.
  void KeepGroups(RecordBatch& batch);
  void SumWeights();
  void TakeSizes();

  Key key;
  std::int32_t pass = 0;
  TwoGroupUnits units;
  std::vector<TwoGroups::Group> groups;
  std::vector<std::uint8_t> isLeftOut;  // by record in hand: it is of neither group
  SelectedRecords keptRecords;
  std::array<Sample, 2> samples;
  bool hasNegativeWeight = false;
  TwoGroupHistograms histograms;
};
