#include "kit/statistics/freeman_halton.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "kit/statistics/exact_tails.h"

namespace {

constexpr double kMostTables = 1e6;

/// Wider than a double's range: the product of k improbable cells may still be a double.
using Weight = long double;

constexpr Weight kProbabilityTolerance = 1e-7L;

/// Weights in proportion to C(size, l) odds^l for l from `first` on, the largest near 1: each
/// follows from the one nearer to the middle by a ratio. With the odds of the rows, whose powers
/// are alike in all tables, the middle of each group is that of the tables.
class CellWeights {
 public:
  CellWeights(std::int64_t first, std::int64_t last, std::int64_t size, Weight odds)
      : first(first), weights(static_cast<std::size_t>(last - first + 1)) {
    const auto ratio = [size, odds](std::int64_t l) {  // of l to l - 1
      return static_cast<Weight>(size - l + 1) * odds / static_cast<Weight>(l);
    };
    const auto middle = static_cast<std::int64_t>(static_cast<Weight>(size) * odds / (1 + odds));
    const std::int64_t start = std::clamp(middle, first, last);
    At(start) = 1;
    for (std::int64_t l = start + 1; l <= last; ++l) At(l) = At(l - 1) * ratio(l);
    for (std::int64_t l = start; l > first; --l) At(l - 1) = At(l) / ratio(l);
  }

  [[nodiscard]] std::int64_t First() const noexcept { return first; }
  [[nodiscard]] std::int64_t Last() const noexcept {
    return first + static_cast<std::int64_t>(weights.size()) - 1;
  }
  [[nodiscard]] Weight Of(std::int64_t l) const noexcept {
    return weights[static_cast<std::size_t>(l - first)];
  }

 private:
  [[nodiscard]] Weight& At(std::int64_t l) noexcept {
    return weights[static_cast<std::size_t>(l - first)];
  }

  std::int64_t first;
  std::vector<Weight> weights;
};

/// All tables with the margins of one. Each is told by its counts in all groups but the last.
class TablesWithMargins {
 public:
  /// The last group is the largest.
  explicit TablesWithMargins(const std::vector<GroupInRows>& groups) : groups(groups) {
    std::int64_t total = 0;
    std::int64_t others = 0;
    for (const GroupInRows& group : groups) {
      lowerSum += group.lower;
      others = total;
      total += group.size;
    }
    const Weight odds = static_cast<Weight>(lowerSum) / static_cast<Weight>(total - lowerSum);
    for (std::size_t j = 0; j + 1 < groups.size(); ++j) {
      cells.emplace_back(0, groups[j].size, groups[j].size, odds);
    }
    const std::int64_t size = groups.back().size;
    cells.emplace_back(std::max<std::int64_t>(0, lowerSum - others), std::min(size, lowerSum), size,
                       odds);
  }

  [[nodiscard]] double SigOfObserved() {
    Weight observed = 1;
    for (std::size_t j = 0; j < groups.size(); ++j) observed *= cells[j].Of(groups[j].lower);
    bound = observed * (1 + kProbabilityTolerance);
    // Counts of all groups but the last two, which SumInner goes through.
    const std::size_t outer = groups.size() - 2;
    std::vector<std::int64_t> counts(outer, 0);
    std::size_t next = outer;
    do {
      SumInner(counts);
      for (next = outer; next > 0; --next) {
        if (++counts[next - 1] <= groups[next - 1].size) break;
        counts[next - 1] = 0;
      }
    } while (next > 0);
    return CutToOne(static_cast<double>(improbable / all));
  }

 private:
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
