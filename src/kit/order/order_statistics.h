#pragma once

#include <cstddef>
#include <cstdint>

#include "kit/order/weighted_values.h"
#include "kit/order/wide_integer.h"

/// A number as a sum of weights: cut to 0 below, to 2^126 above; not a number gives 0.
[[nodiscard]] WideInteger ToWideInteger(double value);

/// The order statistics of values that are not listed: there are as many as pairs of data, and they
/// are selected in time n log n and memory n.
class OrderStatistics {
 public:
  virtual ~OrderStatistics() = default;
  /// The weight of all values.
  [[nodiscard]] WideInteger Total() const noexcept { return total; }
  /// The value of that rank in ascending order, a value of weight w holding w ranks; the first for
  /// a rank below 1, the last for one above Total. Throws std::bad_alloc.
  [[nodiscard]] virtual double Select(WideInteger rank) const = 0;
  /// The value in the middle, or the mean of the two there.
  [[nodiscard]] double Median() const;

 protected:
  /// The value of a rank up to Total, in one count, from that of the rank before.
  [[nodiscard]] virtual double SelectNext(double value, WideInteger rank) const = 0;
  WideInteger total = 0;
};

/// The averages (a + b) / 2 of all pairs of the values, each with itself included, computed in
/// doubles; of opposite infinities it is 0. Two values weigh the product of their weights, one with
/// itself w (w + 1) / 2: as if each were written down w times.
class WalshAverages final : public OrderStatistics {
 public:
  /// `data` is sorted, not empty, and must outlive this.
  explicit WalshAverages(const WeightedValues& data);
  double Select(WideInteger rank) const override;

 protected:
  double SelectNext(double value, WideInteger rank) const override;

 private:
  const WeightedValues& data;
};

/// The differences b - a of each value of the second group and each of the first, computed in
/// doubles, with the products of their weights. Equal infinities differ by 0.
class GroupDifferences final : public OrderStatistics {
 public:
  /// Both are sorted, not empty, and must outlive this.
  GroupDifferences(const WeightedValues& first, const WeightedValues& second);
  double Select(WideInteger rank) const override;

 protected:
  double SelectNext(double value, WideInteger rank) const override;

 private:
  [[nodiscard]] bool IsPlain() const noexcept;

  const WeightedValues& first;
  const WeightedValues& second;
};
