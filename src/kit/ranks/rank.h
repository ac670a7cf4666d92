#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "foundation/names.h"
#include "kit/ranks/ties.h"

/// What the ranks of one group came to.
struct RankGroup {
  double rankSum = 0.0;  ///< sum of rank times weight

  void Take(double rank, double weight) noexcept { rankSum += rank * weight; }
};

/// Mid-ranks of values that arrive in ascending order: AddValue for each, CloseRun once, then the
/// readers. The values are not kept.
///
/// An entry of weight w stands for w records that share their rank: ranks depend on the weight
/// without its fraction, rank sums on the weight as it is.
///
/// Group keys that are small whole numbers are found by their value, others through a map.
class NPARRank {
 public:
  NPARRank() = default;
  NPARRank(const NPARRank&) = default;
  NPARRank(NPARRank&&) = default;
  NPARRank& operator=(const NPARRank&) = default;
  NPARRank& operator=(NPARRank&&) = default;
  virtual ~NPARRank() = default;

  /// Back to the start.
  void Reset();

  /// Takes a value that is not below the one before. Throws std::bad_alloc.
  QDStatus AddValue(double value, double weight, double groupKey) {
    if (runs.Begins(value)) {
      CloseRun();
      ranksBelow += runWeight;
      runWeight = 0;
      run.clear();
    }
    runWeight += TruncateToInt32(weight);
    run.push_back({weight, PlaceOf(groupKey)});
    return status;
  }

  /// AddValue for each of `count` values of weight 1. A run of one unit, the rule among measured
  /// values, takes a few instructions.
  template <typename Key>
  void AddUnits(const double* values, const Key* groupKeys, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      if (IsRunOfOneUnit()) {
        std::size_t place = run.front().group;
        for (; i < count && runs.Begins(values[i]); ++i) {
          ++ranksBelow;
          groups[place].Take(static_cast<double>(ranksBelow), 1.0);
          place = PlaceOf(groupKeys[i]);
        }
        run.front().group = place;
        if (i == count) return;
      }
      static_cast<void>(AddValue(values[i], 1.0, static_cast<double>(groupKeys[i])));
    }
  }

  /// Gives the last run its ranks; AddValue does so for all runs before it. Call it once.
  void CloseRun() {
    const double rank = MidRank(ranksBelow, runWeight);
    for (const RunEntry& entry : run) groups[entry.group].Take(rank, entry.weight);
    if (runWeight > 1) tieSum = tieSum + TieTerm(runWeight);
  }

  /// The group of that key; one that got no value is made and holds no ranks. Good until
  /// another is made.
  RankGroup& GroupEntry(double groupKey) { return groups[PlaceOf(groupKey)]; }
  /// Sum of t^3 - t over the runs of weight t, t at least 2.
  [[nodiscard]] DoubleDouble TieSum() const noexcept { return tieSum; }

 private:
  static constexpr std::int32_t kSmallKeys = 65536;
  static constexpr std::size_t kNoPlace = ~std::size_t{0};

  struct RunEntry {
    double weight;
    std::size_t group;
  };

  [[nodiscard]] bool IsRunOfOneUnit() const noexcept {
    return run.size() == 1 && runWeight == 1 && run.front().weight == 1.0;
  }
  template <typename Key>
  [[nodiscard]] std::size_t PlaceOf(Key groupKey) {
    if (groupKey >= 0 && groupKey < kSmallKeys) {
      const auto slot = static_cast<std::size_t>(groupKey);
      if (static_cast<Key>(slot) == groupKey && slot < placeOfSmallKey.size() &&
          placeOfSmallKey[slot] != kNoPlace) {
        return placeOfSmallKey[slot];
      }
    }
    return FindPlace(static_cast<double>(groupKey));
  }
  [[nodiscard]] std::size_t FindPlace(double groupKey);

  QDStatus status;
  std::vector<RankGroup> groups;  // in order of first use
  std::map<double, std::size_t> placeOfKey;
  std::vector<std::size_t> placeOfSmallKey;
  DoubleDouble tieSum;
  TieRuns runs;
  std::int64_t runWeight = 0;
  std::int64_t ranksBelow = 0;
  std::vector<RunEntry> run;
};
