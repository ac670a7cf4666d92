#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/ranks/tied_run.h"
#include "kit/ranks/ties.h"

/// What the ranks within every range of neighbouring groups come to, from one walk over the values
/// of all groups in ascending order.
///
/// The rank of a value within a range is the number of values below it in the range's groups, equal
/// ones counted a half, and a half more. So one table of counts between pairs of groups gives the
/// rank sums within all ranges, in memory of the square of the number of groups; a value costs time
/// in proportion to that number. Values tie as they do among all groups.
class RangeCounts {
 public:
  explicit RangeCounts(std::size_t groupCount);

  void Add(double x, std::int64_t weight, std::size_t place) {
    if (run.IsEndedBy(x)) CloseRun();
    run.Add(weight, place);
  }
  /// Once, after the last value; then come the readers.
  void Finish();

  /// The sum of the ranks that the group at `place` has within the range.
  [[nodiscard]] double RankSum(const SampleRange& range, std::size_t place) const noexcept {
    return below[place] * 0.5 +
           (above[(range.last + 1) * groupCount + place] - above[range.first * groupCount + place]);
  }
  /// The weight of the group at `place`, and of all groups of the range.
  [[nodiscard]] double SizeOf(std::size_t place) const noexcept { return below[place]; }
  [[nodiscard]] double SizeOf(const SampleRange& range) const noexcept {
    return sizeBefore[range.last + 1] - sizeBefore[range.first];
  }
  // Ranges that end at the same place are best asked for one after the other.

  /// Pairs of values in the order of their groups, equal ones counted a half.
  [[nodiscard]] double OrderedPairs(const SampleRange& range);
  [[nodiscard]] TieSums Ties(const SampleRange& range);

 private:
  struct RunEntry {
    std::size_t place;
    double weight;
    bool isLastOfRun;
  };
  static constexpr std::size_t kNoPlace = static_cast<std::size_t>(-1);

  void CloseRun();
  /// Pairs of values of a place with lower ones of the groups from `first` up to it.
  [[nodiscard]] double OrderedAt(std::size_t place, std::size_t first) const noexcept {
    return orderedBefore[place] - above[first * groupCount + place];
  }

  std::size_t groupCount;
  TiedRun run;
  std::vector<double> below;          // weight of each group below the run; in the end, its size
  std::vector<double> above;          // row a, column b: pairs with the value of a above that of b;
                                      // in the end, row b, column a: those with a group before b
  std::vector<double> sizeBefore;     // by place: weight of all earlier groups
  std::vector<double> orderedBefore;  // by place: pairs with a value of an earlier group below
  std::size_t orderedEnd = 0;         // the last place of `orderedFrom`
  std::vector<double> orderedFrom;    // by the first place of the range
  std::vector<RunEntry> tiedRuns;     // by descending place within a run
  std::size_t tiesEnd = kNoPlace;     // the last place of `tiesFrom`
  std::vector<TieSums> tiesFrom;      // by the first place of the range
};
