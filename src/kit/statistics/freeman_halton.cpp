#include "kit/statistics/freeman_halton.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

#include "arithmetic/elementary.h"
#include "kit/statistics/exact_tails.h"

namespace {

constexpr double kMostTables = 1e6;

/// Wider than a double's range: the product of k improbable cells may still be a double.
using Weight = arithmetic::Extended;

/// Weights in proportion to C(size, l) odds^l for l from `first` to `last`, the largest near 1:
/// each follows from the one nearer to the middle by a ratio. With the odds of the rows, whose
/// powers are alike in all tables, the middle of each group is that of the tables. Weights that are
/// too small for a number stand at either end and count as 0.
class CellWeights {
 public:
  CellWeights(std::int64_t first, std::int64_t last, std::int64_t size, Weight odds)
      : origin(first), weights(static_cast<std::size_t>(last - first + 1)) {
    const auto ratio = [size, odds](std::int64_t l) {  // of l to l - 1
      return static_cast<Weight>(size - l + 1) * odds / static_cast<Weight>(l);
    };
    const auto middle = static_cast<std::int64_t>(static_cast<Weight>(size) * odds / (1 + odds));
    const std::int64_t start = std::clamp(middle, first, last);
    lowest = start;
    highest = start;
    Weight weight = At(start) = 1;
    while (highest < last && (weight *= ratio(highest + 1)) >= kSmallest) At(++highest) = weight;
    weight = 1;
    while (lowest > first && (weight /= ratio(lowest)) >= kSmallest) At(--lowest) = weight;
  }

  /// The ends of what is not 0.
  [[nodiscard]] std::int64_t First() const noexcept { return lowest; }
  [[nodiscard]] std::int64_t Last() const noexcept { return highest; }
  /// Of a possible count.
  [[nodiscard]] Weight Of(std::int64_t l) const noexcept {
    return weights[static_cast<std::size_t>(l - origin)];
  }

 private:
  static constexpr Weight kSmallest = std::numeric_limits<Weight>::min();

  [[nodiscard]] Weight& At(std::int64_t l) noexcept {
    return weights[static_cast<std::size_t>(l - origin)];
  }

  std::int64_t origin;
  std::int64_t lowest;
  std::int64_t highest;
  std::vector<Weight> weights;
};

/// All tables with the margins of one. Each is told by its counts in all groups but the last.
class TablesWithMargins {
 public:
  /// The last group is the largest.
  explicit TablesWithMargins(const std::vector<GroupInRows>& groups) : groups(groups) {
    std::int64_t total = 0;
    for (const GroupInRows& group : groups) {
      lowerSum += group.lower;
      total += group.size;
    }
    const Weight odds = static_cast<Weight>(lowerSum) / static_cast<Weight>(total - lowerSum);
    for (std::size_t j = 0; j + 1 < groups.size(); ++j) {
      cells.emplace_back(0, groups[j].size, groups[j].size, odds);
    }
    const std::int64_t size = groups.back().size;
    const std::int64_t others = total - size;
    cells.emplace_back(std::max<std::int64_t>(0, lowerSum - others), std::min(size, lowerSum), size,
                       odds);
  }

  [[nodiscard]] double SigOfObserved() {
    Weight observed = 1;
    for (std::size_t j = 0; j < groups.size(); ++j) observed *= cells[j].Of(groups[j].lower);
    bound = observed * (1 + Weight{kProbabilitySlack});
    // Counts of all groups but the last two, which SumInner goes through.
    std::vector<std::int64_t> counts(groups.size() - 2, 0);
    do {
      SumInner(counts);
    } while (Advance(counts));
    return CutToOne(static_cast<double>(improbable / all));
  }

 private:
  /// To the next counts; false behind the last ones.
  [[nodiscard]] bool Advance(std::vector<std::int64_t>& counts) const {
    for (std::size_t at = counts.size(); at > 0; --at) {
      if (++counts[at - 1] <= groups[at - 1].size) return true;
      counts[at - 1] = 0;
    }
    return false;
  }

  void SumInner(const std::vector<std::int64_t>& counts) {
    Weight outerWeight = 1;
    std::int64_t rest = lowerSum;
    for (std::size_t j = 0; j < counts.size(); ++j) {
      outerWeight *= cells[j].Of(counts[j]);
      rest -= counts[j];
    }
    const CellWeights& inner = cells[counts.size()];
    const CellWeights& last = cells.back();
    const std::int64_t most = std::min(inner.Last(), rest - last.First());
    for (std::int64_t l = std::max(inner.First(), rest - last.Last()); l <= most; ++l) {
      const Weight weight = outerWeight * inner.Of(l) * last.Of(rest - l);
      all += weight;
      if (weight <= bound) improbable += weight;
    }
  }

  const std::vector<GroupInRows>& groups;
  std::int64_t lowerSum = 0;
  std::vector<CellWeights> cells;
  Weight bound = 0;
  Weight all = 0;
  Weight improbable = 0;
};

}  // namespace

std::optional<double> FreemanHaltonSig(std::span<const GroupInRows> groups) {
  std::vector<GroupInRows> ascending(groups.begin(), groups.end());
  std::stable_sort(ascending.begin(), ascending.end(),
                   [](const GroupInRows& a, const GroupInRows& b) { return a.size < b.size; });
  double tables = 1.0;
  for (std::size_t j = 0; j + 1 < ascending.size(); ++j) {
    tables *= static_cast<double>(ascending[j].size) + 1.0;
  }
  if (!(tables <= kMostTables)) return std::nullopt;
  return TablesWithMargins(ascending).SigOfObserved();
}
