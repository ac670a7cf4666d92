#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A sample of ascending values, kept as distinct values with their cumulative weights.
class SortedSample {
 public:
  /// Takes a value that is not below the one before; a weight not above 0 adds nothing.
  void Add(double x, std::int64_t weight);

  [[nodiscard]] std::int64_t Total() const noexcept {
    return cumulative.empty() ? 0 : cumulative.back();
  }
  /// Weight of the values at or below x.
  [[nodiscard]] std::int64_t CountUpTo(double x) const;

  /// The distinct values.
  [[nodiscard]] const std::vector<double>& Values() const noexcept { return values; }
  /// Weight of the values before a place of them.
  [[nodiscard]] std::int64_t CountBefore(std::size_t place) const noexcept {
    return place == 0 ? 0 : cumulative[place - 1];
  }

 private:
  std::vector<double> values;
  std::vector<std::int64_t> cumulative;
};

/// The median of samples taken together, N being their weight: the mean of the floor((N + 1) /
/// 2)-th and the (floor(N / 2) + 1)-th unit in ascending order. Needs a unit. The samples are not
/// merged: the time is near proportional to their number, and to log^2 of their sizes.
[[nodiscard]] double MedianOf(std::span<const SortedSample* const> samples);
