#include "kit/ranks/placements.h"

namespace {

constexpr std::int64_t kMostUnits = std::int64_t{1} << 41;
constexpr WideInteger kLargest = static_cast<WideInteger>(~WideUnsigned{0} >> 1);

/// Up to here sums of this many squares stay within 64 bits.
constexpr std::int64_t kFewUnits = std::int64_t{1} << 26;
constexpr std::size_t kUnitsAtOnce = 1024;

}  // namespace

void Placements::AddUntied(const std::int32_t* groups, std::size_t units) noexcept {
  if (units > kUnitsAtOnce || count[0] + count[1] > kFewUnits) {
    for (std::size_t i = 0; i < units; ++i) {
      Add(groups[i] == 0 ? TiedUnits{1, 0} : TiedUnits{0, 1});
    }
    return;
  }
  // Groups come at random: no branch, and no memory between one unit and the next.
  std::int64_t first = count[0];
  std::int64_t second = count[1];
  std::int64_t sums = 0;
  std::int64_t allSquares = 0;
  std::int64_t sumsOfSecond = 0;
  std::int64_t squaresOfSecond = 0;
  for (std::size_t i = 0; i < units; ++i) {
    const std::int64_t isSecond = groups[i];
    const std::int64_t mask = -isSecond;
    const std::int64_t placement = (first & mask) | (second & ~mask);
    const std::int64_t square = placement * placement;
    sums += placement;
    allSquares += square;
    sumsOfSecond += placement & mask;
    squaresOfSecond += square & mask;
    second += isSecond;
    first += 1 - isSecond;
  }
  constexpr int kDoubled = 2;
  sum[0] += kDoubled * (sums - sumsOfSecond);
  sum[1] += kDoubled * sumsOfSecond;
  squares[0] += static_cast<WideUnsigned>(kDoubled * kDoubled) *
                static_cast<WideUnsigned>(allSquares - squaresOfSecond);
  squares[1] +=
      static_cast<WideUnsigned>(kDoubled * kDoubled) * static_cast<WideUnsigned>(squaresOfSecond);
  count = {first, second};
}

std::optional<double> Placements::Scatter(std::size_t group) const noexcept {
  const WideInteger n = count[group];
  if (n == 0 || count[0] > kMostUnits - count[1]) return std::nullopt;
  // About a whole number next to the mean, so that n times the sum of squares passes 128 bits only
  // where the square of the rest is nothing beside it.
  const WideInteger mean = sum[group] / n;
  const WideInteger rest = sum[group] - n * mean;
  const WideInteger about = static_cast<WideInteger>(squares[group]) - mean * (sum[group] + rest);
  if (about > kLargest / n) return static_cast<double>(about);
  return static_cast<double>(n * about - rest * rest) / static_cast<double>(n);
}
