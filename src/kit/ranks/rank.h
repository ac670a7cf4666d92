#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <vector>

#include "foundation/names.h"

/// What the ranks of one group came to.
struct RankGroup {
  double rankSum = 0.0;  ///< sum of rank times weight

  void Take(double rank, double weight) noexcept { rankSum += rank * weight; }
};

/// Mid-ranks of values that arrive in ascending order: AddValue for each, CloseRun once, then the
/// readers. The values are not kept.
///
/// Values within 1e-14 of the first value of a run (absolute, whatever the scale) tie; so drift
/// inside a run is measured against its start. An entry of weight w stands for w records that share
/// their rank: ranks depend on the weight without its fraction, rank sums on the weight as it is.
///
/// Group keys that are small whole numbers are found by their value, others through a map.
class NPARRank {
 public:
  /// Values nearer than this to the first of a run are in it.
  static constexpr double kTieTolerance = 1e-14;

  /// What all units of a run of that weight share, with so many units below it.
  [[nodiscard]] static double MidRank(std::int64_t below, std::int64_t weight) noexcept {
    return static_cast<double>(weight + 1) * 0.5 + static_cast<double>(below);
  }

  /// What is kept beyond the sums.
  struct Keep {
    bool tiedValues = false;  ///< GetTiedValues
  };

  NPARRank() = default;
  explicit NPARRank(Keep keep) : keep(keep) {}
  NPARRank(const NPARRank&) = default;
  NPARRank(NPARRank&&) = default;
  NPARRank& operator=(const NPARRank&) = default;
  NPARRank& operator=(NPARRank&&) = default;
  virtual ~NPARRank() = default;

  /// Back to the start, for another round of the same kind.
  void Reset();

  /// Takes a value that is not below the one before. Throws std::bad_alloc.
  QDStatus AddValue(double value, double weight, double groupKey) {
    const std::int64_t counted = TruncateToInt32(weight);
    if (isFirstValue) {
      isFirstValue = false;
      runValue = value;
      runWeight = counted;
    } else if (std::abs(value - runValue) < kTieTolerance) {
      runWeight += counted;
    } else {
      CloseRun();
      runValue = value;
      ranksBelow += runWeight;
      runWeight = counted;
      run.clear();
    }
    run.push_back({weight, PlaceOf(groupKey)});
    return status;
  }

  /// AddValue for each of `count` values of weight 1. A run of one unit, the rule among measured
  /// values, takes a few instructions.
  template <typename Key>
  void AddUnits(const double* values, const Key* groupKeys, std::size_t count) {
    if (AddApart(values, groupKeys, count)) return;
    for (std::size_t i = 0; i < count; ++i) {
      if (IsRunOfOneUnit()) {
        double alone = runValue;
        std::size_t place = run.front().group;
        for (; i < count && !(std::abs(values[i] - alone) < kTieTolerance); ++i) {
          ++ranksBelow;
          groups[place].Take(static_cast<double>(ranksBelow), 1.0);
          alone = values[i];
          place = PlaceOf(static_cast<double>(groupKeys[i]));
        }
        runValue = alone;
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
    if (runWeight >= 2) NoteTie();
  }

  /// The group of that key; one that got no value is made and holds no ranks. Good until Reset.
  RankGroup& GroupEntry(double groupKey) { return groups[PlaceOf(groupKey)]; }
  /// Sum of t^3 - t over the runs of weight t, t at least 2. A single entry of weight 2 or more
  /// counts as a tie.
  [[nodiscard]] double TieSum() const noexcept { return tieSum; }
  /// Those runs' first values and weights; only where they were asked for.
  [[nodiscard]] const std::map<double, std::int64_t>& GetTiedValues() const noexcept {
    return tiedValues;
  }

 private:
  static constexpr double kSmallKeys = 65536.0;
  static constexpr std::size_t kNoPlace = ~std::size_t{0};

  /// Keys below this number, and values up to this one, are summed at a time.
  static constexpr std::size_t kKeysAtOnce = 32;
  static constexpr std::size_t kValuesAtOnce = 65536;
  /// Halves up to this sum add up without rounding, in any order.
  static constexpr double kMostExactSum = 0x1p51;

  struct RunEntry {
    double weight;
    std::size_t group;
  };
  /// What the units of a group have of the places of some, counted from 0.
  struct PlaceSum {
    std::uint64_t count = 0;
    std::uint64_t sum = 0;
  };
  using PlaceSums = std::array<PlaceSum, kKeysAtOnce>;  // by key

  [[nodiscard]] bool IsRunOfOneUnit() const noexcept {
    return run.size() == 1 && runWeight == 1 && run.front().weight == 1.0;
  }
  /// AddUnits where no two of the values tie: their ranks are the whole numbers that follow, and a
  /// group sums its own as such. False, and nothing done, where that is not so, where they are few,
  /// or where the sums might round.
  template <typename Key>
  [[nodiscard]] bool AddApart(const double* values, const Key* groupKeys, std::size_t count) {
    if (count < kKeysAtOnce || count > kValuesAtOnce || !IsRunOfOneUnit()) {
      return false;
    }
    std::size_t unfit = std::abs(values[0] - runValue) < kTieTolerance ? 1 : 0;
    for (std::size_t i = 1; i < count; ++i) {
      unfit += std::abs(values[i] - values[i - 1]) < kTieTolerance ? 1 : 0;
    }
    for (std::size_t i = 0; i < count; ++i) {
      unfit += static_cast<std::uint32_t>(groupKeys[i]) >= kKeysAtOnce ? 1 : 0;
    }
    if (unfit > 0) return false;
    PlaceSums sums{};
    for (std::size_t i = 0; i + 1 < count; ++i) {  // the last one is a run that stays open
      PlaceSum& places = sums[static_cast<std::size_t>(groupKeys[i])];
      ++places.count;
      places.sum += i;
    }
    if (!TakeApart(sums)) return false;
    groups[run.front().group].Take(static_cast<double>(ranksBelow + 1), 1.0);
    ranksBelow += static_cast<std::int64_t>(count);
    runValue = values[count - 1];
    run.front().group = PlaceOf(static_cast<double>(groupKeys[count - 1]));
    return true;
  }

  [[nodiscard]] std::size_t PlaceOf(double groupKey) {
    if (groupKey >= 0.0 && groupKey < kSmallKeys) {
      const auto slot = static_cast<std::size_t>(groupKey);
      if (static_cast<double>(slot) == groupKey && slot < placeOfSmallKey.size() &&
          placeOfSmallKey[slot] != kNoPlace) {
        return placeOfSmallKey[slot];
      }
    }
    return FindPlace(groupKey);
  }
  [[nodiscard]] std::size_t FindPlace(double groupKey);
  /// Gives units their ranks, which follow that of the open run; false, and nothing done, where a
  /// sum might round.
  [[nodiscard]] bool TakeApart(const PlaceSums& sums);
  void NoteTie();

  Keep keep;
  QDStatus status;
  std::deque<RankGroup> groups;  // in order of first use; a deque, so that references stay good
  std::map<double, std::size_t> placeOfKey;
  std::vector<std::size_t> placeOfSmallKey;
  std::map<double, std::int64_t> tiedValues;
  double tieSum = 0.0;
  std::int64_t runWeight = 0;
  std::int64_t ranksBelow = 0;
  double runValue = 0.0;
  std::vector<RunEntry> run;
  bool isFirstValue = true;
};
