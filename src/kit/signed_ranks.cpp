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

void SignedRanks::AddUnits(const double* units, std::size_t count) {
  if (!weights.IsEmpty()) {
    for (std::size_t i = 0; i < count; ++i) {
      if (units[i] > 0.0 || units[i] < 0.0) Add(units[i], 1.0);
    }
    return;
  }
  // Every one is written, and one of 0 written over: which sign comes next cannot be foretold.
  PlainKey* room = differences.MakeRoom(count);
  std::size_t written = 0;
  double largest = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    const double size = std::abs(units[i]);
    room[written].key = std::bit_cast<std::uint64_t>(size) << 1 | (units[i] < 0.0 ? 1U : 0U);
    written += size > 0.0 ? 1 : 0;
    largest = size > largest ? size : largest;
  }
  differences.TakeOver(written);
  areAllFinite = areAllFinite && std::isfinite(largest);
}

void SignedRanks::Rank() {
  if (weights.IsEmpty() && areAllFinite) {
    RankUnits();
  } else {
    RankWeighted();
  }
  differences = {};
  weights = {};
}

void SignedRanks::RankUnits() {
  // Equal sizes share their rank in any order.
  SortKeys(differences.begin(), differences.Size());
  // Sums of twice the ranks, of both signs and of the negative ones: whole numbers that fit, with
  // less than 2^32 differences.
  const std::uint64_t count = differences.Size();
  const std::uint64_t twiceAll = count * (count + 1);
  std::uint64_t twiceNegative = 0;
  std::uint64_t end = 0;
  for (std::uint64_t begin = 0; begin < count; begin = end) {
    const double first = SizeOf(differences[begin]);
    std::uint64_t negatives = 0;
    end = begin;
    do {
      negatives += differences[end].key & 1;
      ++end;
    } while (end < count && SizeOf(differences[end]) - first < NPARRank::kTieTolerance);
    twiceNegative += negatives * (begin + 1 + end);
    const auto tied = static_cast<double>(end - begin);
    if (end - begin > 1) tieSum += tied * tied * tied - tied;
  }
  negativeRankSum = static_cast<double>(twiceNegative) * 0.5;
  positiveRankSum = static_cast<double>(twiceAll - twiceNegative) * 0.5;
}

void SignedRanks::RankWeighted() {
  NPARRank ranks;
  const auto sizeAt = [this](std::size_t i) { return SizeOf(differences[i]); };
  for (const std::uint32_t i : AscendingOrder(differences.Size(), sizeAt)) {
    const bool isNegative = (differences[i].key & 1) != 0;
    static_cast<void>(ranks.AddValue(sizeAt(i), weights.IsEmpty() ? 1.0 : weights[i],
                                     isNegative ? kNegative : kPositive));
  }
  ranks.CloseRun();
  positiveRankSum = ranks.GroupEntry(kPositive).rankSum;
  negativeRankSum = ranks.GroupEntry(kNegative).rankSum;
  tieSum = ranks.TieSum();
}
