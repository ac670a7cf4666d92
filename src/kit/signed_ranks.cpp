#include "kit/signed_ranks.h"

#include <cmath>

#include "kit/radix_sort.h"
#include "kit/rank.h"

void SignedRanks::Reserve(std::size_t count) { differences.reserve(count); }

void SignedRanks::Add(double difference, double weight) {
  if (weight != 1.0 && weights.empty()) weights.assign(differences.size(), 1.0);
  differences.push_back(difference);
  if (weight != 1.0 || !weights.empty()) weights.push_back(weight);
}

void SignedRanks::Rank() {
  constexpr double kNegative = 0.0;
  constexpr double kPositive = 1.0;
  NPARRank ranks;
  for (const std::uint32_t i : AscendingOrder(
           differences.size(), [this](std::size_t i) { return std::abs(differences[i]); })) {
    const double difference = differences[i];
    static_cast<void>(ranks.AddValue(std::abs(difference), weights.empty() ? 1.0 : weights[i],
                                     difference < 0.0 ? kNegative : kPositive));
  }
  ranks.CloseRun();
  positiveRankSum = ranks.GroupEntry(kPositive).rankSum;
  negativeRankSum = ranks.GroupEntry(kNegative).rankSum;
  tieSum = ranks.TieSum();
}
