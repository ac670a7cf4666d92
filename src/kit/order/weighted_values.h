#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "kit/order/growing_array.h"
#include "kit/order/radix_sort.h"

/// Values in ascending order with whole weights from 1 to 2^32 - 1. Memory: 8 bytes a value where
/// every weight is 1; with other weights 16, and 28 for the moment of sorting.
class WeightedValues {
 public:
  /// Throws std::bad_alloc.
  void Add(double value, std::int64_t weight) {
    if (weight != 1 && weights.IsEmpty()) weights.Assign(values.Size(), 1);
    values.Add({std::bit_cast<std::uint64_t>(value)});
    if (weight != 1 || !weights.IsEmpty()) weights.Add(static_cast<std::uint32_t>(weight));
  }
  /// Raises every value.
  void Shift(double distance) noexcept;
  /// Call it once, after the last Add. Throws std::bad_alloc.
  void Sort();

  [[nodiscard]] std::size_t Size() const noexcept { return values.Size(); }
  [[nodiscard]] double Value(std::size_t place) const noexcept {
    return std::bit_cast<double>(values[place].key);
  }
  [[nodiscard]] std::int64_t Weight(std::size_t place) const noexcept {
    return WeightBelow(place + 1) - WeightBelow(place);
  }
  /// Sum of the weights before a place.
  [[nodiscard]] std::int64_t WeightBelow(std::size_t place) const noexcept {
    return weightBelow.IsEmpty() ? static_cast<std::int64_t>(place) : weightBelow[place];
  }
  [[nodiscard]] std::int64_t TotalWeight() const noexcept { return WeightBelow(values.Size()); }
  /// Are the values, of which there is one at least, finite and all of weight 1?
  [[nodiscard]] bool IsPlain() const noexcept;

 private:
  void SortPlainly();

  GrowingArray<PlainKey> values;        // the bits of doubles; ordered bits while they are sorted
  GrowingArray<std::uint32_t> weights;  // until then; empty as long as every weight is 1
  GrowingArray<std::int64_t> weightBelow;  // empty where every weight is 1
};
