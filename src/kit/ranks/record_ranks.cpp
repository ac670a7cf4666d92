#include "kit/ranks/record_ranks.h"

#include <algorithm>
#include <cmath>

#include "kit/order/radix_sort.h"
#include "kit/ranks/rank.h"

namespace {

/// Above this, insertion costs more than a sort that halves.
constexpr std::size_t kMostByInsertion = 32;

}  // namespace

void RecordRanks::Sort(std::size_t count) noexcept {
  if (count > kMostByInsertion) {
    std::sort(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(count),
              [](const Entry& a, const Entry& b) {
                // Bits are in order also where a value is not a number.
                const std::uint64_t bitsOfA = OrderedBits(a.value);
                const std::uint64_t bitsOfB = OrderedBits(b.value);
                return bitsOfA != bitsOfB ? bitsOfA < bitsOfB : a.place < b.place;
              });
    return;
  }
  for (std::size_t i = 1; i < count; ++i) {
    const Entry entry = entries[i];
    std::size_t hole = i;
    for (; hole > 0 && entry.value < entries[hole - 1].value; --hole) {
      entries[hole] = entries[hole - 1];
    }
    entries[hole] = entry;
  }
}

void RecordRanks::Rank(std::size_t count) noexcept {
  Sort(count);
  tieTerm = 0.0;
  for (std::size_t begin = 0; begin < count;) {
    std::size_t end = begin + 1;
    while (end < count &&
           std::abs(entries[end].value - entries[begin].value) < NPARRank::kTieTolerance) {
      ++end;
    }
    const auto tied = static_cast<double>(end - begin);
    const double rank = (tied + 1.0) * 0.5 + static_cast<double>(begin);
    for (std::size_t i = begin; i < end; ++i) ranks[entries[i].place] = rank;
    if (end - begin > 1) tieTerm += tied * tied * tied - tied;
    begin = end;
  }
}
