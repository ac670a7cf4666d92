#include "kit/summaries/moments.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <type_traits>

#include "kit/order/wide_integer.h"

namespace {

/// From here on sums of squares overflow, soon or late.
constexpr double kHuge = 0x1p500;
constexpr double kHugeUnit = 0x1p100;
/// Of the spread of a chunk above its grid. 2^10 squares of them stay below 2^63.
constexpr int kGridBits = 20;
/// Of a value above the grid, so that adding a power of two cuts it there.
constexpr int kMostBits = 51;
/// Below this the squares of a chunk are 0.
constexpr int kLeastGrid = -900;

int ExponentAbove(double x) noexcept {
  int exponent = 0;
  static_cast<void>(std::frexp(x, &exponent));
  return exponent;
}

template <typename Integer>
DoubleDouble ToDoubleDouble(Integer value, double unit) noexcept {
  const auto high = static_cast<double>(value);
  const auto low = static_cast<double>(value - static_cast<Integer>(high));
  return {high * unit, low * unit};
}

}  // namespace

Moments::Range Moments::Add(const double* values, const std::int32_t* weights,
                            std::size_t count) noexcept {
  return weights == nullptr ? AddChunk<false>(values, weights, count)
                            : AddChunk<true>(values, weights, count);
}

template <bool kIsWeighted>
Moments::Range Moments::AddChunk(const double* values, const std::int32_t* weights,
                                 std::size_t count) noexcept {
  double least = values[0];
  double greatest = values[0];
  double roughSum = 0.0;
  std::int64_t weight = kIsWeighted ? 0 : static_cast<std::int64_t>(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double x = values[i];
    least = x < least ? x : least;
    greatest = x > greatest ? x : greatest;
    if constexpr (kIsWeighted) {
      roughSum += x * weights[i];
      weight += weights[i];
    } else {
      roughSum += x;
    }
  }
  if (!(std::abs(roughSum) < std::numeric_limits<double>::infinity() && least > -kHuge &&
        greatest < kHuge)) {
    AddHuge(values, weights, count);
    return {least, greatest};
  }
  totalWeight += weight;
  if (least == greatest) {
    Merge(least, weight, {}, {});
    return {least, greatest};
  }
  // A centre near the mean keeps the squares about it from cancelling; with negative weights the
  // mean may lie anywhere.
  const double roughCentre =
      std::clamp(weight == 0 ? least : roughSum / static_cast<double>(weight), least, greatest);
  const int grid = std::max({ExponentAbove(greatest - least) - kGridBits,
                             ExponentAbove(std::max(-least, greatest)) - kMostBits, kLeastGrid});
  const double unit = std::ldexp(1.0, grid);
  // Sums with this keep whole units alone, in their lowest bits.
  const double cutter = 0x1.8p52 * unit;
  const auto zero = std::bit_cast<std::int64_t>(roughCentre + cutter);
  const double chunkCentre = (roughCentre + cutter) - cutter;
  using Squares = std::conditional_t<kIsWeighted, WideInteger, std::int64_t>;
  std::int64_t units = 0;
  Squares squares = 0;
  double rests = 0.0;
  double squaresOfRests = 0.0;  // with the products of units and rests
  for (std::size_t i = 0; i < count; ++i) {
    const double cut = values[i] + cutter;
    const double onGrid = cut - cutter;
    const double rest = values[i] - onGrid;
    const std::int64_t fromCentre = std::bit_cast<std::int64_t>(cut) - zero;
    const double squareOfRest = ((onGrid - chunkCentre) * 2.0 + rest) * rest;
    if constexpr (kIsWeighted) {
      units += fromCentre * weights[i];
      squares += static_cast<Squares>(fromCentre * fromCentre) * weights[i];
      rests += rest * weights[i];
      squaresOfRests += squareOfRest * weights[i];
    } else {
      units += fromCentre;
      squares += fromCentre * fromCentre;
      rests += rest;
      squaresOfRests += squareOfRest;
    }
  }
  Merge(chunkCentre, weight, ToDoubleDouble(units, unit) + DoubleDouble{rests},
        ToDoubleDouble(squares, unit * unit) + DoubleDouble{squaresOfRests});
  return {least, greatest};
}

void Moments::Merge(double chunkCentre, std::int64_t weight, DoubleDouble sum,
                    DoubleDouble squares) noexcept {
  if (weightOnGrid == 0 && sumAboutCentre.high == 0.0 && squaresAboutCentre.high == 0.0) {
    centre = chunkCentre;
  }
  weightOnGrid += weight;
  const DoubleDouble shift = DoubleDouble::Sum(chunkCentre, -centre);
  const DoubleDouble shifts = shift * ToDoubleDouble(weight, 1.0);
  squaresAboutCentre = squaresAboutCentre + (squares + shift * (sum + sum + shifts));
  sumAboutCentre = sumAboutCentre + (sum + shifts);
}

void Moments::Append(const Moments& other) noexcept {
  totalWeight += other.totalWeight;
  hugeSum += other.hugeSum;
  hasHuge = hasHuge || other.hasHuge;
  Merge(other.centre, other.weightOnGrid, other.sumAboutCentre, other.squaresAboutCentre);
}

void Moments::AddHuge(const double* values, const std::int32_t* weights,
                      std::size_t count) noexcept {
  std::array<double, kChunk> others;
  std::array<std::int32_t, kChunk> theirWeights;
  std::size_t otherCount = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::int32_t weight = weights == nullptr ? 1 : weights[i];
    if (std::abs(values[i]) < kHuge) {
      others[otherCount] = values[i];
      theirWeights[otherCount++] = weight;
      continue;
    }
    hasHuge = true;
    totalWeight += weight;
    hugeSum += values[i] / kHugeUnit * weight;
  }
  if (otherCount > 0) Add(others.data(), theirWeights.data(), otherCount);
}

double Moments::Mean() const noexcept {
  if (totalWeight <= 0) return 0.0;
  const auto n = static_cast<double>(totalWeight);
  if (hasHuge) {
    const double others = static_cast<double>(weightOnGrid) * centre + sumAboutCentre.high;
    return hugeSum / n * kHugeUnit + others / n;
  }
  return (DoubleDouble{centre} + sumAboutCentre / n).high;
}

double Moments::StdDev() const noexcept {
  if (totalWeight <= 1) return 0.0;
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (hasHuge) {
    return std::abs(hugeSum) < kInfinity ? kInfinity : std::numeric_limits<double>::quiet_NaN();
  }
  const auto n = static_cast<double>(totalWeight);
  const DoubleDouble squares = squaresAboutCentre - sumAboutCentre * sumAboutCentre / n;
  if (!(squares.high < kInfinity)) return kInfinity;
  return std::sqrt(std::max(0.0, squares.high) / (n - 1.0));
}
