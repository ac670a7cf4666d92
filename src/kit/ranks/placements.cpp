#include "kit/ranks/placements.h"

namespace {

constexpr std::int64_t kMostUnits = std::int64_t{1} << 41;
constexpr WideInteger kLargest = static_cast<WideInteger>(~WideUnsigned{0} >> 1);

}  // namespace

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
