#include "kit/ranks/merged_runs.h"

#include <algorithm>
#include <limits>

namespace {

// Stand for "no order ends with this group"; far from the ends, so that counts can be added.
constexpr std::int64_t kNoFewest = std::numeric_limits<std::int64_t>::max() / 2;
constexpr std::int64_t kNoMost = std::numeric_limits<std::int64_t>::min() / 2;

}  // namespace

void MergedRuns::CloseBlock() noexcept {
  if (block[0] > 0 && block[1] > 0) {
    CloseBlockOfBoth();
  } else if (block[0] > 0 || block[1] > 0) {
    CloseBlockOfOne(block[0] > 0 ? 0 : 1);
  }
  block = {0, 0};
}

void MergedRuns::CloseBlockOfOne(std::size_t group) noexcept {
  const std::size_t other = 1 - group;
  fewest[group] = hasUnits ? std::min(fewest[group], fewest[other] + 1) : 1;
  most[group] = hasUnits ? std::max(most[group], most[other] + 1) : 1;
  fewest[other] = kNoFewest;
  most[other] = kNoMost;
  hasUnits = true;
}

void MergedRuns::CloseBlockOfBoth() noexcept {
  ++interGroupTies;
  const PerGroup fewestBefore = fewest;
  const PerGroup mostBefore = most;
  for (const std::size_t end : {0U, 1U}) {
    const std::size_t other = 1 - end;
    // Fewest: two stretches, the first of which continues a run of the other group.
    fewest[end] = hasUnits ? std::min(fewestBefore[other] + 1, fewestBefore[end] + 2) : 2;
    // Most: units alternate as long as both groups have some. The group that has more can stand at
    // both ends; the other group ends the block best when it does not start it.
    const bool startsToo = block[end] > block[other];
    const std::size_t start = startsToo ? end : other;
    const std::int64_t stretches = 2 * std::min(block[0], block[1]) + (startsToo ? 1 : 0);
    most[end] =
        hasUnits ? std::max(mostBefore[start] - 1, mostBefore[1 - start]) + stretches : stretches;
  }
  hasUnits = true;
}

std::int64_t MergedRuns::Minimum() const noexcept {
  return hasUnits ? std::min(fewest[0], fewest[1]) : 0;
}

std::int64_t MergedRuns::Maximum() const noexcept {
  return hasUnits ? std::max(most[0], most[1]) : 0;
}
