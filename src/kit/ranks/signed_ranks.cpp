#include "kit/ranks/signed_ranks.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "foundation/names.h"
#include "kit/order/interruption.h"
#include "kit/ranks/ties.h"

void SignedRanks::Add(double difference, double weight) {
  if (weight != 1.0 && weights.IsEmpty()) weights.Assign(differences.Size(), 1.0);
  const auto size = std::bit_cast<std::uint64_t>(std::abs(difference));
  differences.Add({size << 1 | (difference < 0.0 ? 1U : 0U)});
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
  for (std::size_t i = 0; i < count; ++i) {
    const double size = std::abs(units[i]);
    room[written].key = std::bit_cast<std::uint64_t>(size) << 1 | (units[i] < 0.0 ? 1U : 0U);
    written += size > 0.0 ? 1 : 0;
  }
  differences.TakeOver(written);
}

void SignedRanks::Rank() {
  // Up to here sums of ranks add up without rounding, in any order.
  constexpr std::size_t kMostExact = 94906265;  // n (n + 1) < 2^53
  if (weights.IsEmpty() && differences.Size() <= kMostExact) {
    RankUnits();
  } else {
    RankWeighted();
  }
  units.tieSum = tieSum;
  differences = {};
  weights = {};
}

void SignedRanks::RankUnits() {
  // Equal sizes share their rank in any order.
  SortKeys(differences.begin(), differences.Size());
  ListTiesOfUnits();
  // Sums of twice the ranks, of both signs and of the negative ones.
  const std::uint64_t count = differences.Size();
  const std::uint64_t twiceAll = count * (count + 1);
  std::uint64_t twiceNegative = 0;
  std::uint64_t allNegatives = 0;
  std::uint64_t end = 0;
  SparseCheck check;
  for (std::uint64_t begin = 0; begin < count; begin = end) {
    check.Step();
    const double first = SizeOf(differences[begin]);
    std::uint64_t negatives = 0;
    end = begin;
    do {
      negatives += differences[end].key & 1;
      ++end;
    } while (end < count && Ties(first, SizeOf(differences[end])));
    const auto tied = static_cast<std::int64_t>(end - begin);
    const std::int64_t twiceRank = TwiceMidRank(static_cast<std::int64_t>(begin), tied);
    twiceNegative += negatives * static_cast<std::uint64_t>(twiceRank);
    allNegatives += negatives;
    if (tied > 1) tieSum += TieTerm(tied).high;
  }
  negativeRankSum = static_cast<double>(twiceNegative) * 0.5;
  positiveRankSum = static_cast<double>(twiceAll - twiceNegative) * 0.5;
  units.negatives = static_cast<std::int64_t>(allNegatives);
  units.positives = static_cast<std::int64_t>(count - allNegatives);
  units.positiveRankSum = positiveRankSum;
}

void SignedRanks::ListTiesOfUnits() {
  const std::size_t count = differences.Size();
  if (count > static_cast<std::size_t>(Units::kMostWithTies)) return;
  std::size_t end = 0;
  for (std::size_t begin = 0; begin < count; begin = end) {
    end = EndOfRun(begin, count, [this](std::size_t i) { return SizeOf(differences[i]); });
    units.ties.push_back(static_cast<std::int64_t>(end - begin));
  }
}

template <typename EntryAt>
void SignedRanks::RankRuns(EntryAt entryAt) {
  const std::size_t count = differences.Size();
  std::int64_t ranksBelow = 0;
  std::size_t end = 0;
  SparseCheck check;
  for (std::size_t begin = 0; begin < count; begin = end) {
    check.Step();
    end = EndOfRun(begin, count, [&entryAt](std::size_t i) { return entryAt(i).size; });
    std::int64_t tied = 0;
    for (std::size_t i = begin; i < end; ++i) tied += TruncateToInt32(entryAt(i).weight);
    const double rank = MidRank(ranksBelow, tied);
    for (std::size_t i = begin; i < end; ++i) {
      const Entry entry = entryAt(i);
      const double part = rank * entry.weight;
      const std::int64_t whole = TruncateToInt32(entry.weight);
      (entry.isNegative ? units.negatives : units.positives) += whole;
      units.positiveRankSum += entry.isNegative ? 0.0 : rank * static_cast<double>(whole);
      positiveRankSum += entry.isNegative ? 0.0 : part;
      negativeRankSum += entry.isNegative ? part : 0.0;
    }
    tieSum += TieTerm(tied).high;
    ranksBelow += tied;
    if (tied > 0 && ranksBelow <= Units::kMostWithTies) units.ties.push_back(tied);
  }
}

void SignedRanks::RankWeighted() {
  constexpr double kLargest = 2147483647.0;  // leaves a bit for the sign
  const auto isBeside = [](double w) { return w >= 0.0 && w <= kLargest && w == std::floor(w); };
  const auto entryOf = [this](std::size_t i) {
    return Entry{SizeOf(differences[i]), weights.IsEmpty() ? 1.0 : weights[i],
                 (differences[i].key & 1) != 0};
  };
  if (std::all_of(weights.begin(), weights.end(), isBeside)) {
    // Weight and sign go with the size, in the place of a record's number.
    const auto sorted = SortedEntries<NumberedKey>(differences.Size(), [&](std::size_t i) {
      const Entry entry = entryOf(i);
      const auto weight = static_cast<std::uint32_t>(entry.weight);
      return NumberedKey(OrderedBits(entry.size), weight << 1 | (entry.isNegative ? 1U : 0U));
    });
    RankRuns([&sorted](std::size_t i) {
      const NumberedKey& key = sorted[i];
      return Entry{ValueOfOrderedBits(key.Key()), static_cast<double>(key.number >> 1),
                   (key.number & 1) != 0};
    });
  } else {
    const RecordOrder order =
        AscendingOrder(differences.Size(), [&](std::size_t i) { return entryOf(i).size; });
    RankRuns([&](std::size_t place) { return entryOf(order[place]); });
  }
}
