#include "kit/signed_ranks.h"

#include <bit>
#include <cmath>

#include "kit/rank.h"

namespace {

constexpr double kNegative = 0.0;
constexpr double kPositive = 1.0;

}  // namespace

void SignedRanks::Add(double difference, double weight) {
  if (weight != 1.0 && weights.IsEmpty()) weights.Assign(differences.Size(), 1.0);
  const auto size = std::bit_cast<std::uint64_t>(std::abs(difference));
  differences.Add({size << 1 | (difference < 0.0 ? 1U : 0U)});
  areAllFinite = areAllFinite && std::isfinite(difference);
  if (weight != 1.0 || !weights.IsEmpty()) weights.Add(weight);
}

void SignedRanks::Rank() {
  NPARRank ranks;
  const auto sizeOf = [](PlainKey difference) {
    return std::bit_cast<double>(difference.key >> 1);
  };
  const auto add = [&](PlainKey difference, double weight) {
    const bool isNegative = (difference.key & 1) != 0;
    static_cast<void>(
        ranks.AddValue(sizeOf(difference), weight, isNegative ? kNegative : kPositive));
  };
  if (weights.IsEmpty() && areAllFinite) {
    // Equal sizes share their rank in any order.
    SortKeys(differences.begin(), differences.Size());
    for (const PlainKey difference : differences) add(difference, 1.0);
  } else {
    const auto sizeAt = [&](std::size_t i) { return sizeOf(differences[i]); };
    for (const std::uint32_t i : AscendingOrder(differences.Size(), sizeAt)) {
      add(differences[i], weights.IsEmpty() ? 1.0 : weights[i]);
    }
  }
  ranks.CloseRun();
  differences = {};
  weights = {};
  positiveRankSum = ranks.GroupEntry(kPositive).rankSum;
  negativeRankSum = ranks.GroupEntry(kNegative).rankSum;
  tieSum = ranks.TieSum();
}
