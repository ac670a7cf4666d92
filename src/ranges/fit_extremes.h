#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <utility>

#include "kit/fits/empirical_differences.h"
#include "kit/fits/fitted_distribution.h"
#include "ranges/bytes.h"
#include "ranges/units.h"

/// What a stretch of a sorted sample has to know of the whole before its differences from a fitted
/// distribution are taken: a Poisson distribution's need all units of a value at once.
struct FitStart {
  std::int64_t before = 0;       ///< units that the distribution can take, in earlier stretches
  std::int64_t firstBefore = 0;  ///< of these, units of the stretch's own first value
  std::int64_t lastBehind = 0;   ///< units of its last value in later stretches

  template <typename See>
  void Visit(See& see) {
    see(before);
    see(firstBefore);
    see(lastBehind);
  }
};

/// The whole that a distribution was fitted to; without units, there is nothing to be held against
/// it.
struct FittedWhole {
  FittedDistribution::Estimates estimates;
  std::int64_t count = 0;

  /// Whatever the estimates are, no numbers too.
  friend bool operator==(const FittedWhole& a, const FittedWhole& b) noexcept {
    using Bits = std::array<std::uint64_t, 5>;
    return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
  }
  template <typename See>
  void Visit(See& see) {
    for (double* estimate :
         {&estimates.mean, &estimates.stdDev, &estimates.minimum, &estimates.maximum}) {
      see(*estimate);
    }
    see(count);
  }
};

/// The extreme differences between the empirical distribution function and a fitted distribution
/// over one stretch of a sorted sample.
class FitExtremes {
 public:
  FitExtremes() = default;
  FitExtremes(const FittedWhole& whole, std::int64_t before, std::int64_t upTo,
              ExtremeDifferences extremes)
      : whole(whole), before(before), upTo(upTo), extremes(std::move(extremes)) {}

  /// Are the others those of the stretch that follows?
  [[nodiscard]] bool Precede(const FitExtremes& next) const {
    return next.whole == whole && next.before == upTo;
  }
  void Append(const FitExtremes& next);
  /// Are these those of all units of such a whole?
  [[nodiscard]] bool AreOf(const FittedWhole& all) const {
    return whole == all && before == 0 && upTo == all.count;
  }
  [[nodiscard]] const ExtremeDifferences& Differences() const noexcept { return extremes; }

  void Write(ByteWriter& write) const;
  /// False for what can't have been written so.
  [[nodiscard]] bool Read(ByteReader& read);

 private:
  FittedWhole whole;
  std::int64_t before = 0;
  std::int64_t upTo = 0;
  ExtremeDifferences extremes;
};

/// Takes the differences of one stretch.
class FitWalk {
 public:
  FitWalk(FittedDistribution wanted, const FittedWhole& whole, const FitStart& start);

  /// Takes units that follow, of values that the distribution can take and of others.
  void Take(const Units& units);
  [[nodiscard]] FitExtremes Finish();

 private:
  void TakeValid(const Units& units);

  FittedDistribution fitted;
  FittedWhole whole;
  FitStart start;
  std::int64_t upTo;
  EmpiricalDifferences differences;
  double last = QDMV::gMissingValue;
};
