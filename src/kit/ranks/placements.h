#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "kit/order/wide_integer.h"
#include "kit/statistics/tied_units.h"

/// The placements of two groups' units: how many units of the other group are below a unit, those
/// tied with it half; doubled, so that all sums are whole and exact.
class Placements {
 public:
  /// The next run in ascending order.
  void Add(const TiedUnits& run) noexcept {
    AddTo(0, run.first, 2 * count[1] + run.second);
    AddTo(1, run.second, 2 * count[0] + run.first);
    count[0] += run.first;
    count[1] += run.second;
  }

  /// The next units of weight 1, no two of which tie; of each its group, 0 or 1.
  void AddUntied(const std::int32_t* groups, std::size_t units) noexcept;

  /// Units of a group, 0 or 1.
  [[nodiscard]] std::int64_t Count(std::size_t group) const noexcept { return count[group]; }
  /// Sum of the doubled placements; of the second group it is 2 U.
  [[nodiscard]] WideInteger Sum(std::size_t group) const noexcept { return sum[group]; }
  /// Sum of the squared deviations of the doubled placements from their mean, 0 where none varies.
  /// Nothing beyond 2^41 units, where the sums might pass 128 bits.
  [[nodiscard]] std::optional<double> Scatter(std::size_t group) const noexcept;

 private:
  void AddTo(std::size_t group, std::int64_t units, std::int64_t doubled) noexcept {
    const WideInteger weighted = static_cast<WideInteger>(units) * doubled;
    sum[group] += weighted;
    squares[group] += static_cast<WideUnsigned>(weighted) * static_cast<WideUnsigned>(doubled);
  }

  std::array<std::int64_t, 2> count{0, 0};
  std::array<WideInteger, 2> sum{0, 0};
  std::array<WideUnsigned, 2> squares{0, 0};
};
