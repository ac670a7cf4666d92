#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Equal values of one group among ascending ones.
struct ValueCell {
  double value = 0.0;
  std::int64_t weight = 0;  ///< units, at least 1
  std::uint32_t group = 0;

  friend bool operator==(const ValueCell&, const ValueCell&) = default;
};

/// Units of a sample side by side; their values ascend.
struct Units {
  std::span<const double> values;
  std::span<const std::uint32_t> groups;  ///< of each value
  std::span<const std::int32_t> weights;  ///< at least 1; empty where each is 1

  [[nodiscard]] std::size_t Size() const noexcept { return values.size(); }
  [[nodiscard]] std::int64_t WeightAt(std::size_t i) const noexcept {
    return weights.empty() ? 1 : weights[i];
  }
  /// Null where each weighs 1.
  [[nodiscard]] const std::int32_t* Weights() const noexcept {
    return weights.empty() ? nullptr : weights.data();
  }
  [[nodiscard]] std::int64_t Weight() const noexcept {
    if (weights.empty()) return static_cast<std::int64_t>(Size());
    std::int64_t sum = 0;
    for (const std::int32_t weight : weights) sum += weight;
    return sum;
  }
  [[nodiscard]] Units Part(std::size_t begin, std::size_t end) const {
    const std::size_t count = end - begin;
    return {values.subspan(begin, count), groups.subspan(begin, count),
            weights.empty() ? weights : weights.subspan(begin, count)};
  }
};
