#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "foundation/double_double.h"

// The rule of ties, for all tests that rank values or count their runs.

/// Values less than this apart tie, whatever their scale.
inline constexpr double kTieTolerance = 1e-14;

/// Is a value in the run that begins with `first`? It is measured against that one alone, so that
/// the values of a run do not drift. Infinities of one sign tie; not-a-number ties with nothing.
[[nodiscard]] inline bool Ties(double first, double x) noexcept {
  const double distance = std::abs(x - first);
  if (distance >= kTieTolerance) return false;  // most values go no further
  return distance < kTieTolerance || x == first;
}

/// Do two unequal values tie, or does neither precede the other? Where no two values do so, < and >
/// rank them. Free of branches, for loops over columns.
[[nodiscard]] inline bool TiesUnequally(double a, double b) noexcept {
  return !(std::abs(a - b) >= kTieTolerance) & !(a == b);
}

/// Cuts ascending values that come one at a time into runs of ties.
class TieRuns {
 public:
  /// Does this value begin a run? The first one does.
  [[nodiscard]] bool Begins(double x) noexcept {
    if (Ties(first, x)) return false;
    first = x;
    return true;
  }
  /// What the open run began with.
  [[nodiscard]] double First() const noexcept { return first; }

 private:
  double first = std::numeric_limits<double>::quiet_NaN();
};

/// The end of the run that begins there, among `count` ascending values.
template <typename ValueAt>
[[nodiscard]] std::size_t EndOfRun(std::size_t begin, std::size_t count, ValueAt valueAt) {
  const double first = valueAt(begin);
  std::size_t end = begin + 1;
  while (end < count && Ties(first, valueAt(end))) ++end;
  return end;
}

/// Twice the rank that all units of a run share: a whole number, so that sums of it are exact.
[[nodiscard]] constexpr std::int64_t TwiceMidRank(std::int64_t below,
                                                  std::int64_t weight) noexcept {
  return 2 * below + weight + 1;
}
[[nodiscard]] constexpr double MidRank(std::int64_t below, std::int64_t weight) noexcept {
  return static_cast<double>(TwiceMidRank(below, weight)) * 0.5;
}

/// t^3 - t of a run of that weight, exact up to weights of 2^35: sums of it are taken from N^3 - N,
/// which leaves little where nearly all values tie. A single record of weight 2 or more is a tie as
/// well.
[[nodiscard]] inline DoubleDouble TieTerm(std::int64_t weight) noexcept {
  const auto t = static_cast<double>(weight);
  return weight < 2 ? DoubleDouble() : DoubleDouble::Product(t, t) * t - t;
}

/// Sums over the runs of ties, t being the weight of a run.
struct TieSums {
  DoubleDouble pairs;    ///< sum of t (t - 1)
  DoubleDouble triples;  ///< sum of t^2 (t - 1)

  void Add(double t, double sign = 1.0) noexcept {
    if (t == 0.0 || t == 1.0) return;  // the rule among measured values
    const DoubleDouble ordered = DoubleDouble::Product(sign * t, t - 1.0);
    pairs = pairs + ordered;
    triples = triples + ordered * t;
  }
  /// Sum of t^3 - t.
  [[nodiscard]] DoubleDouble Cubic() const noexcept { return pairs + triples; }
};
