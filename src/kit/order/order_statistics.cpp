// Selection without listing.
//
// The values stand in a table whose rows and columns both ascend: averages of sorted data, or
// differences of a sorted group and a descending one. Rounding keeps that order, since it is
// monotone. How many of the values are not above a bound is then counted along the staircase that
// parts the table, in one step for each row and column.
//
// The wanted value is bracketed on the line of all doubles, whose bits in order are 64-bit
// integers: a count at the middle halves the bracket, so that 64 of these end at the value itself.
// Between them the bounds are interpolated, a little below and a little above the wanted rank in
// turn, which narrows a smooth distribution much faster. The ends of the bracket move on to the
// next value of the table, which the count sees in passing, so that many equal values do no harm.
// As soon as fewer values lie in the bracket than there are data, they are listed, sorted, and the
// wanted one is read off; that takes some ten counts on usual data.
//
// So what comes back is exactly what the sorted list holds at that rank. D. B. Johnson and T.
// Mizoguchi, SIAM J. Comput. 7 (1978), 147-153, select in such tables with a bracket of table
// entries instead.

#include "kit/order/order_statistics.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "kit/order/infinities.h"

namespace {

/// The largest double whose ordered bits are not above these.
double FromOrderedBits(std::uint64_t bits) {
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  if ((bits & kSign) != 0) return std::bit_cast<double>(bits & ~kSign);
  // Right below zero stand the bits of a negative zero, which no value has: it has those of zero.
  return std::bit_cast<double>(~std::min(bits, kSign - 2));
}

/// Row i: the averages of value i and those from it on. In a plain table the values are finite and
/// weigh 1.
template <bool kIsPlainTable>
struct WalshTable {
  static constexpr bool kIsPlain = kIsPlainTable;
  const WeightedValues& data;

  [[nodiscard]] std::size_t Rows() const { return data.Size(); }
  [[nodiscard]] std::size_t Columns() const { return data.Size(); }
  [[nodiscard]] std::size_t FirstColumn(std::size_t row) const { return row; }
  [[nodiscard]] double Value(std::size_t row, std::size_t column) const {
    if constexpr (kIsPlain) return (data.Value(column) + data.Value(row)) * 0.5;
    return Middle(data.Value(column), data.Value(row));
  }
  /// The weight of the row's entries before a column behind its first.
  [[nodiscard]] WideInteger WeightBefore(std::size_t row, std::size_t column) const {
    const WideInteger w = data.Weight(row);
    return w * (w + 1) / 2 + w * (data.WeightBelow(column) - data.WeightBelow(row + 1));
  }
  [[nodiscard]] std::int64_t WeightOf(std::size_t row, std::size_t column) const {
    const std::int64_t w = data.Weight(row);
    return row == column ? w * (w + 1) / 2 : w * data.Weight(column);
  }
};

/// Row i: the differences from the i-th largest value of the first group; plain as above.
template <bool kIsPlainTable>
struct DifferenceTable {
  static constexpr bool kIsPlain = kIsPlainTable;
  const WeightedValues& first;
  const WeightedValues& second;

  [[nodiscard]] std::size_t Rows() const { return first.Size(); }
  [[nodiscard]] std::size_t Columns() const { return second.Size(); }
  [[nodiscard]] std::size_t FirstColumn(std::size_t) const { return 0; }
  [[nodiscard]] std::size_t Place(std::size_t row) const { return first.Size() - 1 - row; }
  [[nodiscard]] double Value(std::size_t row, std::size_t column) const {
    if constexpr (kIsPlain) return second.Value(column) - first.Value(Place(row));
    return Difference(second.Value(column), first.Value(Place(row)));
  }
  [[nodiscard]] WideInteger WeightBefore(std::size_t row, std::size_t column) const {
    return static_cast<WideInteger>(first.Weight(Place(row))) * second.WeightBelow(column);
  }
  [[nodiscard]] std::int64_t WeightOf(std::size_t row, std::size_t column) const {
    return first.Weight(Place(row)) * second.Weight(column);
  }
};

/// Calls `take(row, end)` for each row with entries not above the bound, which end before that
/// column, and once for the first row without.
template <typename Table, typename Take>
void WalkStaircase(const Table& table, double bound, Take take) {
  std::size_t end = table.Columns();
  SparseCheck check;
  for (std::size_t row = 0; row < table.Rows(); ++row) {
    check.Step();
    const std::size_t begin = table.FirstColumn(row);
    end = std::max(end, begin);
    while (end > begin && table.Value(row, end - 1) > bound) --end;
    take(row, end);
    if (end == begin) return;
  }
}

/// The first number from `begin` on for which `holds`, which then holds for all up to `end`; `end`
/// if there is none.
template <typename Holds>
std::size_t FirstWhere(std::size_t begin, std::size_t end, Holds holds) {
  while (begin < end) {
    const std::size_t middle = begin + (end - begin) / 2;
    if (holds(middle)) {
      end = middle;
    } else {
      begin = middle + 1;
    }
  }
  return begin;
}

/// What lies on either side of a bound, and the values next to it.
struct Cut {
  std::uint64_t entriesUpTo = 0;
  WideInteger weightUpTo = 0;
  double largestUpTo = -std::numeric_limits<double>::infinity();
  double smallestAbove = std::numeric_limits<double>::infinity();
};

/// One of two doubles by a mask of all bits or none.
double Choose(std::uint64_t mask, double chosen, double otherwise) noexcept {
  return std::bit_cast<double>((std::bit_cast<std::uint64_t>(chosen) & mask) |
                               (std::bit_cast<std::uint64_t>(otherwise) & ~mask));
}

/// A part of the way down the staircase, row by row; a step is one column back or one row on.
template <typename Table>
struct Stretch {
  std::size_t row = 0;
  std::size_t end = 0;
  std::size_t steps = 0;
  Cut cut;

  /// Without a branch: which way it goes is as good as random.
  void Step(const Table& table, double bound) noexcept {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double value = table.Value(row, end - 1);
    const std::uint64_t isAbove = value > bound ? 1 : 0;
    const std::uint64_t ifAbove = 0 - isAbove;  // a mask
    cut.smallestAbove = std::min(cut.smallestAbove, Choose(ifAbove, value, kInfinity));
    cut.largestUpTo = std::max(cut.largestUpTo, Choose(ifAbove, -kInfinity, value));
    cut.entriesUpTo += (end - table.FirstColumn(row)) & ~ifAbove;
    end -= isAbove;
    row += 1 - isAbove;
  }
};

/// CutAt of a plain table. Each step waits for the value of the one before, so
/// the way is gone in several stretches at once.
template <typename Table>
Cut CutInStretches(const Table& table, double bound) {
  constexpr std::size_t kStretches = 4;
  const auto endOf = [&](std::size_t row) {  // the first column above the bound
    return FirstWhere(table.FirstColumn(row), table.Columns(),
                      [&](std::size_t column) { return table.Value(row, column) > bound; });
  };
  const std::size_t rows = FirstWhere(0, table.Rows(), [&](std::size_t row) {
    return table.Value(row, table.FirstColumn(row)) > bound;
  });
  Cut cut;
  if (rows < table.Rows()) cut.smallestAbove = table.Value(rows, table.FirstColumn(rows));
  if (rows == 0) return cut;

  std::array<Stretch<Table>, kStretches> stretches;
  const auto stepsBefore = [&](std::size_t row) { return row + (table.Columns() - endOf(row)); };
  const std::size_t allSteps = stepsBefore(rows - 1) + 1;
  for (std::size_t k = 0; k < kStretches; ++k) {
    Stretch<Table>& stretch = stretches[k];
    stretch.row = FirstWhere(
        0, rows, [&](std::size_t row) { return stepsBefore(row) >= allSteps / kStretches * k; });
    if (stretch.row == rows) continue;
    stretch.end = endOf(stretch.row);
    if (stretch.end < table.Columns()) {
      stretch.cut.smallestAbove = table.Value(stretch.row, stretch.end);
    }
  }
  std::size_t together = allSteps;
  for (std::size_t k = 0; k < kStretches; ++k) {
    Stretch<Table>& stretch = stretches[k];
    const std::size_t rowsEnd = k + 1 < kStretches ? stretches[k + 1].row : rows;
    if (stretch.row < rowsEnd) {
      stretch.steps = rowsEnd - stretch.row + (stretch.end - endOf(rowsEnd - 1));
    }
    together = std::min(together, stretch.steps);
  }
  for (std::size_t step = 0; step < together; ++step) {
    for (Stretch<Table>& stretch : stretches) stretch.Step(table, bound);
  }
  for (Stretch<Table>& stretch : stretches) {
    for (std::size_t step = together; step < stretch.steps; ++step) stretch.Step(table, bound);
    cut.smallestAbove = std::min(cut.smallestAbove, stretch.cut.smallestAbove);
    cut.largestUpTo = std::max(cut.largestUpTo, stretch.cut.largestUpTo);
    cut.entriesUpTo += stretch.cut.entriesUpTo;
  }
  cut.weightUpTo = static_cast<WideInteger>(cut.entriesUpTo);
  return cut;
}

template <typename Table>
Cut CutAt(const Table& table, double bound) {
  Interruption::Check();
  if constexpr (Table::kIsPlain) return CutInStretches(table, bound);
  Cut cut;
  WalkStaircase(table, bound, [&](std::size_t row, std::size_t end) {
    const std::size_t begin = table.FirstColumn(row);
    if (end < table.Columns()) {
      cut.smallestAbove = std::min(cut.smallestAbove, table.Value(row, end));
    }
    if (end == begin) return;
    cut.largestUpTo = std::max(cut.largestUpTo, table.Value(row, end - 1));
    cut.entriesUpTo += end - begin;
    cut.weightUpTo += table.WeightBefore(row, end);
  });
  return cut;
}

/// The wanted value's ordered bits are above `low` and not above `high`.
struct Bracket {
  std::uint64_t low;
  std::uint64_t high;
  std::uint64_t entriesUpToLow;
  std::uint64_t entriesUpToHigh;
  WideInteger weightUpToLow;   // below the rank
  WideInteger weightUpToHigh;  // not below it

  [[nodiscard]] std::uint64_t Entries() const { return entriesUpToHigh - entriesUpToLow; }
};

/// Calls `take(row, column, bits)` for each entry in the bracket.
template <typename Table, typename Take>
void WalkBracket(const Table& table, const Bracket& bracket, Take take) {
  WalkStaircase(table, FromOrderedBits(bracket.high), [&](std::size_t row, std::size_t end) {
    for (std::size_t column = end; column > table.FirstColumn(row); --column) {
      const std::uint64_t bits = OrderedBits(table.Value(row, column - 1));
      if (bits <= bracket.low) return;
      take(row, column - 1, bits);
    }
  });
}

/// Lists what lies in the bracket of a plain table.
template <typename Table>
double SelectListedUnit(const Table& table, const Bracket& bracket, WideInteger rank) {
  std::vector<std::uint64_t> entries;
  entries.reserve(bracket.Entries());
  WalkBracket(table, bracket,
              [&](std::size_t, std::size_t, std::uint64_t bits) { entries.push_back(bits); });
  const auto wanted =
      entries.begin() + static_cast<std::ptrdiff_t>(rank - bracket.weightUpToLow - 1);
  std::nth_element(entries.begin(), wanted, entries.end());
  return FromOrderedBits(*wanted);
}

/// Lists and sorts what lies in the bracket.
template <typename Table>
double SelectListed(const Table& table, const Bracket& bracket, WideInteger rank) {
  if constexpr (Table::kIsPlain) return SelectListedUnit(table, bracket, rank);
  struct Entry {
    std::uint64_t bits;
    std::int64_t weight;  // a product of two weights
  };
  std::vector<Entry> entries;
  entries.reserve(bracket.Entries());
  WalkBracket(table, bracket, [&](std::size_t row, std::size_t column, std::uint64_t bits) {
    entries.push_back({bits, table.WeightOf(row, column)});
  });
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return a.bits < b.bits; });
  WideInteger reached = bracket.weightUpToLow;
  for (const Entry& entry : entries) {
    reached += entry.weight;
    if (reached >= rank) return FromOrderedBits(entry.bits);
  }
  return FromOrderedBits(bracket.high);
}

/// A place inside the bracket: its middle, or where the rank would lie on a straight line between
/// the ends, less or more a part of the bracket so that the other end moves the next time.
std::uint64_t NextBound(const Bracket& bracket, WideInteger rank, int step) {
  constexpr int kBisectEvery = 5;
  constexpr int kFirstMargin = -4;  // as a power of two
  if (step % kBisectEvery == kBisectEvery - 1) {
    return bracket.low + (bracket.high - bracket.low) / 2;
  }
  // A smooth distribution is the straighter the narrower the bracket is.
  const double margin = std::ldexp(1.0, std::max(kFirstMargin - 2 * step, -40));
  const double share = static_cast<double>(rank - bracket.weightUpToLow) /
                           static_cast<double>(bracket.weightUpToHigh - bracket.weightUpToLow) +
                       (step % 2 == 0 ? -margin : margin);
  const double lowest = FromOrderedBits(bracket.low);
  const double bound = lowest + (FromOrderedBits(bracket.high) - lowest) * share;
  return std::clamp(OrderedBits(bound), bracket.low + 1, bracket.high - 1);
}

template <typename Table>
double SelectFrom(const Table& table, WideInteger rank) {
  const double smallest = table.Value(0, 0);
  const double largest = table.Value(table.Rows() - 1, table.Columns() - 1);
  const Cut whole = CutAt(table, largest);
  Bracket bracket{OrderedBits(smallest) - 1, OrderedBits(largest), 0, whole.entriesUpTo, 0,
                  whole.weightUpTo};
  // Sorting the rest costs as much as a few more cuts.
  const std::uint64_t fewEnough = (table.Rows() + table.Columns()) / 16 + 64;
  for (int step = 0; bracket.high > bracket.low + 1; ++step) {
    if (bracket.Entries() <= fewEnough) return SelectListed(table, bracket, rank);
    const Cut cut = CutAt(table, FromOrderedBits(NextBound(bracket, rank, step)));
    // The ends move to values of the table, so that a bracket around one value ends the search
    // however often it stands there.
    if (cut.weightUpTo >= rank) {
      bracket.high = OrderedBits(cut.largestUpTo);
      bracket.entriesUpToHigh = cut.entriesUpTo;
      bracket.weightUpToHigh = cut.weightUpTo;
    } else {
      bracket.low = OrderedBits(cut.smallestAbove) - 1;
      bracket.entriesUpToLow = cut.entriesUpTo;
      bracket.weightUpToLow = cut.weightUpTo;
    }
  }
  return FromOrderedBits(bracket.high);
}

/// The value of a rank, from that of the rank before.
template <typename Table>
double SelectNextFrom(const Table& table, double value, WideInteger rank) {
  const Cut cut = CutAt(table, value);
  if (cut.weightUpTo >= rank) return value;
  if (!std::isfinite(cut.smallestAbove)) return SelectFrom(table, rank);
  return cut.smallestAbove + 0.0;  // never a negative zero
}

}  // namespace

WideInteger ToWideInteger(double value) {
  constexpr double kLimit = 0x1p126;
  if (!(value > 0.0)) return 0;
  return static_cast<WideInteger>(std::min(value, kLimit));
}

double OrderStatistics::Median() const {
  const double lower = Select((total + 1) / 2);
  if (total % 2 != 0) return lower;
  const double upper = SelectNext(lower, total / 2 + 1);
  return lower == upper ? lower : Middle(lower, upper);
}

WalshAverages::WalshAverages(const WeightedValues& data) : data(data) {
  const WideInteger n = data.TotalWeight();
  total = n * (n + 1) / 2;
}

double WalshAverages::Select(WideInteger rank) const {
  const WideInteger within = std::clamp(rank, WideInteger{1}, total);
  return data.IsPlain() ? SelectFrom(WalshTable<true>{data}, within)
                        : SelectFrom(WalshTable<false>{data}, within);
}

double WalshAverages::SelectNext(double value, WideInteger rank) const {
  return data.IsPlain() ? SelectNextFrom(WalshTable<true>{data}, value, rank)
                        : SelectNextFrom(WalshTable<false>{data}, value, rank);
}

GroupDifferences::GroupDifferences(const WeightedValues& first, const WeightedValues& second)
    : first(first), second(second) {
  total = static_cast<WideInteger>(first.TotalWeight()) * second.TotalWeight();
}

bool GroupDifferences::IsPlain() const noexcept { return first.IsPlain() && second.IsPlain(); }

double GroupDifferences::Select(WideInteger rank) const {
  const WideInteger within = std::clamp(rank, WideInteger{1}, total);
  return IsPlain() ? SelectFrom(DifferenceTable<true>{first, second}, within)
                   : SelectFrom(DifferenceTable<false>{first, second}, within);
}

double GroupDifferences::SelectNext(double value, WideInteger rank) const {
  return IsPlain() ? SelectNextFrom(DifferenceTable<true>{first, second}, value, rank)
                   : SelectNextFrom(DifferenceTable<false>{first, second}, value, rank);
}
