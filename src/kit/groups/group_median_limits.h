#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "kit/groups/group_tally.h"
#include "kit/statistics/order_statistic_limits.h"

/// Limits for the median of each group with data, by order statistics of its values: found in one
/// walk over the units ascending, once a tally knows the sizes of the groups.
class GroupMedianLimits {
 public:
  struct Limits {
    OrderStatisticLimits ranks;
    double lower = 0.0;
    double upper = 0.0;
  };

  GroupMedianLimits() = default;
  /// Throws std::bad_alloc.
  GroupMedianLimits(const GroupTally& tally, double confidenceLevel);
  void Take(const GroupTally::Units& units);
  /// Adds the ranks of the limits among the units of each group.
  void WantRanks(WantedPlaces& wanted) const;
  /// By the group's place; nothing where there are none. Good after the last units.
  [[nodiscard]] const std::optional<Limits>& Of(std::size_t place) const noexcept {
    return walks[place].limits;
  }

 private:
  struct Walk {
    std::optional<Limits> limits;
    std::int64_t units = 0;  // taken so far

    [[nodiscard]] bool HasEndAmong(std::int64_t more) const noexcept {
      return limits && ((limits->ranks.lower > units && limits->ranks.lower <= units + more) ||
                        (limits->ranks.upper > units && limits->ranks.upper <= units + more));
    }
    void Take(double x, std::int64_t weight) noexcept;
  };
  /// Takes units none of which is a limit; false, and nothing done, for others.
  bool PassOver(const GroupTally::Units& units);

  const GroupTally* tally = nullptr;
  std::vector<Walk> walks;  // by place
};
