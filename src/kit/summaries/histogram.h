#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "foundation/double_double.h"

/// One bin: a sum of weights and the weighted mean of the values in it, right to the last digits in
/// any order and grouping.
class HistogramBin {
 public:
  HistogramBin() = default;
  /// So many equal values.
  HistogramBin(std::int64_t count, double value) noexcept { Add(value, count); }

  void Add(double x, std::int64_t weight) noexcept {
    count += weight;
    if (weight == 1) {
      AddTerm(x * unit);
    } else if (weight != 0) {
      AddWeighted(x, static_cast<double>(weight));
    }
  }

  [[nodiscard]] std::int64_t Count() const noexcept { return count; }
  /// 0 of no weight.
  [[nodiscard]] double Mean() const noexcept;

 private:
  void AddTerm(double term) noexcept {
    const DoubleDouble next = DoubleDouble::Sum(sum, term);
    if (std::abs(next.high) <= std::numeric_limits<double>::max()) {
      sum = next.high;
      rest += next.low;
    } else {
      AddHuge(term);
    }
  }
  void AddWeighted(double x, double times) noexcept;
  /// A term with which the sum is no number.
  void AddHuge(double term) noexcept;
  /// To smaller units.
  void Shrink() noexcept;

  std::int64_t count = 0;
  // Of the values in this unit, a power of two: their sum, and what its rounding has left out (A.
  // Neumaier, ZAMM 54 (1974), 39-51).
  double unit = 1.0;
  double sum = 0.0;
  double rest = 0.0;
};

/// What a histogram has to span; what is no number leaves it alone.
struct ValueRange {
  double low = std::numeric_limits<double>::max();
  double high = std::numeric_limits<double>::lowest();

  void Take(double x) noexcept {
    high = x > high ? x : high;
    low = x < low ? x : low;
  }
};

/// Equal bins over a range, with a split at zero. Bin i holds the values above edge i - 1 up to
/// edge i. An exact zero that the ...OrZero operations meet enters no bin: it is counted by itself
/// and joins as one more entry at the end (AddZeroBin).
class Histogram {
 public:
  static constexpr std::uint64_t kBinCount = 400;

  /// Makes so many empty bins from low to high, one more where zero lies inside; the last edge is
  /// high + 1.
  void SetRange(double low, double high, std::uint64_t binCount = kBinCount);
  void SetRange(const ValueRange& range) { SetRange(range.low, range.high); }
  /// The bin of a value, from 0.
  [[nodiscard]] std::int64_t FindBin(double x) const;
  void AddValue(double x, std::int64_t weight);
  void AddValueOrZero(double x, std::int64_t weight) {
    if (x == 0.0) {
      zeroCount += weight;
    } else {
      AddValue(x, weight);
    }
  }
  /// The same for values in ascending order, which stay in a bin for long.
  void AddAscendingOrZero(double x, std::int64_t weight) {
    if (x == 0.0) {
      zeroCount += weight;
    } else {
      AddAscending(x, weight);
    }
  }
  /// The bin that takes all values from one up to another, the next in ascending order; null where
  /// there are several, or zero is among them.
  [[nodiscard]] HistogramBin* OneBinOf(double least, double greatest);
  /// AddValueOrZero for each of `count` values; weights null: each weighs 1.
  void AddColumn(const double* values, std::size_t count, const std::int32_t* weights);
  /// The same for those that are not missing.
  void AddColumnWithMissing(const double* values, std::size_t count, const std::int32_t* weights);
  /// Appends the zeros as a last entry, where there are any.
  void AddZeroBin();

  [[nodiscard]] const std::vector<HistogramBin>& GetBins() const noexcept { return bins; }
  [[nodiscard]] const std::vector<double>& GetBinUpperEdges() const noexcept {
    return binUpperEdges;
  }

 private:
  [[nodiscard]] std::int64_t LastBin() const noexcept {
    return binUpperEdges.empty() ? 0 : static_cast<std::int64_t>(binUpperEdges.size()) - 1;
  }
  /// Where to begin the search for a value's bin, from 0 to `last`.
  [[nodiscard]] std::int32_t GuessBin(double x, double last) const noexcept {
    const double guess = (x - rangeLow) * binsPerUnit;
    const double fromFirst = guess > 0.0 ? guess : 0.0;  // not a number: the first
    return static_cast<std::int32_t>(fromFirst < last ? fromFirst : last);
  }
  /// The bin of a value, sought from `bin` on.
  [[nodiscard]] std::int64_t SeekBin(double x, std::int64_t bin, std::int64_t last) const noexcept {
    const double* edges = binUpperEdges.data();
    while (bin > 0 && !(edges[bin - 1] < x)) --bin;
    while (bin < last && edges[bin] < x) ++bin;
    return bin;
  }
  void AddAscending(double x, std::int64_t weight);
  void SeekAscending(double x);
  void AddToBin(std::int64_t bin, double x, std::int64_t weight);
  template <bool kSkipsMissing, typename WeightAt>
  void AddValues(const double* values, std::size_t count, WeightAt weightAt);
  template <bool kSkipsMissing>
  void AddWeighted(const double* values, std::size_t count, const std::int32_t* weights);

  std::vector<HistogramBin> bins;
  std::vector<double> binUpperEdges;
  double rangeLow = std::numeric_limits<double>::max();
  double binsPerUnit = 0.0;  // the reciprocal of their width
  std::int64_t latestBin = 0;
  std::int64_t zeroCount = 0;
};
