#include "kit/ranks/record_ranks.h"

#include <algorithm>

#include "kit/order/radix_sort.h"
#include "kit/ranks/ties.h"

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
  for (std::size_t begin = 0; begin < count;) {
    const std::size_t end =
        EndOfRun(begin, count, [this](std::size_t i) { return entries[i].value; });
    const double rank =
        MidRank(static_cast<std::int64_t>(begin), static_cast<std::int64_t>(end - begin));
    for (; begin < end; ++begin) ranks[entries[begin].place] = rank;
  }
}
