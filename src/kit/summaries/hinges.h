#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "foundation/names.h"
#include "kit/summaries/moments.h"
#include "kit/summaries/stretch.h"

/// Median and hinges (J. W. Tukey, Exploratory Data Analysis, 1977) of values that arrive in
/// ascending order, which are not kept; their extremes on the way.
class HingeWalk {
 public:
  HingeWalk() = default;
  /// `totalWeight` is the sum of the weights to come, each without its fraction.
  explicit HingeWalk(double totalWeight) noexcept;

  /// The weight counts with its fraction.
  void TrackHinges(double x, double weight) noexcept {
    extremes.Take(x);
    const double reached = cumulativeWeight + weight;
    if (cumulativeWeight <= nextHinge && reached <= nextHinge) {
      cumulativeWeight = reached;
      previousValue = x;
    } else {
      SettleHinges(x, weight);
    }
  }
  /// For values of weight 1, whose sum does not round.
  bool PassOver(const Stretch& values) noexcept;
  /// Adds the ranks, from 1, of the units that the hinges are read off where weights are whole.
  void WantRanks(std::vector<std::int64_t>& ranks) const;
  /// Gives hinges that the walk did not reach the last value that it saw.
  void FinishHinges() noexcept;

  /// The missing value before they are found.
  [[nodiscard]] double FirstQuartile() const noexcept { return hinges[0].value; }
  [[nodiscard]] double Median() const noexcept { return hinges[1].value; }
  [[nodiscard]] double ThirdQuartile() const noexcept { return hinges[2].value; }
  [[nodiscard]] double Minimum() const noexcept { return extremes.minimum; }
  [[nodiscard]] double Maximum() const noexcept { return extremes.maximum; }

 private:
  /// The value at a position among the units in ascending order, counted from 1.
  struct Hinge {
    double position = 0.0;
    double value = QDMV::gMissingValue;
  };
  void SettleHinges(double x, double weight) noexcept;

  std::array<Hinge, 3> hinges;
  double nextHinge = std::numeric_limits<double>::lowest();  // up to this weight none is passed
  double cumulativeWeight = 0.0;
  double previousValue = QDMV::gMissingValue;
  Extremes extremes;
};
