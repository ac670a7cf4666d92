#include "kit/signed_ranks.h"

#include <bit>
#include <cmath>

#include "kit/radix_sort.h"
#include "kit/rank.h"

namespace {

constexpr double kNegative = 0.0;
constexpr double kPositive = 1.0;

}  // namespace

void SignedRanks::Reserve(std::size_t count) { differences.reserve(count); }

void SignedRanks::Add(double difference, double weight) {
  if (weight != 1.0 && weights.empty()) weights.assign(differences.size(), 1.0);
  differences.push_back(difference);
  areAllFinite = areAllFinite && std::isfinite(difference);
  if (weight != 1.0 || !weights.empty()) weights.push_back(weight);
}

void SignedRanks::Rank() {
  NPARRank ranks;
  const auto add = [&ranks](double size, double weight, bool isNegative) {
    static_cast<void>(ranks.AddValue(size, weight, isNegative ? kNegative : kPositive));
  };
  if (weights.empty() && areAllFinite) {
    // Equal sizes share their rank in any order, so a size and its sign are all that is sorted: the
    // sign takes the bit that the size does not need.
    const auto keys = SortedEntries<PlainKey>(differences.size(), [this](std::size_t i) {
      const auto size = std::bit_cast<std::uint64_t>(std::abs(differences[i]));
      return PlainKey{size << 1 | (differences[i] < 0.0 ? 1U : 0U)};
    });
    for (std::size_t i = 0; i < differences.size(); ++i) {
      add(std::bit_cast<double>(keys[i].key >> 1), 1.0, (keys[i].key & 1) != 0);
    }
  } else {
    const auto sizeAt = [this](std::size_t i) { return std::abs(differences[i]); };
    for (const std::uint32_t i : AscendingOrder(differences.size(), sizeAt)) {
      add(sizeAt(i), weights.empty() ? 1.0 : weights[i], differences[i] < 0.0);
    }
  }
  ranks.CloseRun();
  positiveRankSum = ranks.GroupEntry(kPositive).rankSum;
  negativeRankSum = ranks.GroupEntry(kNegative).rankSum;
  tieSum = ranks.TieSum();
}
