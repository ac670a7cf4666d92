#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "foundation/names.h"
#include "kit/order/grouped_cells.h"
#include "kit/summaries/hinges.h"
#include "kit/summaries/stretch.h"

/// Compares with a relative tolerance of 100 machine epsilons: -1, 0 or 1. Zero is compared
/// plainly.
inline constexpr double kCloseTolerance = 100.0 * QDPower::gMachineEpsilon;
[[nodiscard]] inline int CompareClose(double a, double b) noexcept {
  const bool isClose = a != 0.0 && b != 0.0 &&
                       std::fabs(a - b) <= std::max(std::fabs(a), std::fabs(b)) * kCloseTolerance;
  return isClose ? 0 : (a > b) - (a < b);
}

/// Does CompareClose find every number up to `a` below `b`, whatever the rounding?
[[nodiscard]] inline bool IsClearlyBelow(double a, double b) noexcept {
  return a != 0.0 && b != 0.0 &&
         b - a > 2.0 * kCloseTolerance * std::max(std::fabs(a), std::fabs(b));
}

/// Box plot of a variable in one group (J. W. Tukey, Exploratory Data Analysis, 1977): the hinges
/// from a walk over ascending values, then, from another one, the values beyond the fences at 1.5
/// hinge spreads and the last values inside them.
///
/// A value at the lower fence does not become the smallest non-outlier, while one at the upper
/// fence may: so the rule goes. Where no value qualifies, the smallest non-outlier stays the
/// group's maximum and the largest its minimum.
class GroupBoxPlot {
 public:
  /// An outlier and its case identifier; the missing value without one.
  struct Outlier {
    double value;
    double caseId;
  };

  /// `totalWeight` is the group's sum of truncated weights.
  GroupBoxPlot(std::int32_t groupCode, double totalWeight) noexcept
      : groupCode(groupCode), hinges(totalWeight) {}

  /// First walk; the weight counts with its fraction.
  void TrackValue(double x, double weight) noexcept { hinges.TrackHinges(x, weight); }
  bool PassOverTracking(const Stretch& values) noexcept { return hinges.PassOver(values); }
  /// Ends it.
  void FinishHinges() noexcept;
  /// Is a value beyond a fence?
  [[nodiscard]] bool HasOutliers() const noexcept {
    return CompareClose(hinges.Maximum(), upperFence) > 0 ||
           CompareClose(hinges.Minimum(), lowerFence) < 0;
  }
  /// What the second walk looks at.
  [[nodiscard]] WantedPlaces::Tails WantedTails() const noexcept;
  /// Second walk: so many equal values.
  void ClassifyValue(double x, double caseId, std::int32_t times = 1) {
    if (x > innerLow && x < innerHigh && x >= smallestNonOutlier) {
      if (CompareClose(x, largestNonOutlier) > 0) largestNonOutlier = x;
    } else {
      ClassifyByFences(x, caseId, times);
    }
  }
  bool PassOverClassifying(const Stretch& values) noexcept {
    if (!(values.lowest > innerLow && values.lowest >= smallestNonOutlier &&
          values.last < innerHigh)) {
      return false;
    }
    if (values.last == largestNonOutlier) return true;
    // Clear of the value before it, the last one is clear of any that stands so far.
    const bool isClear =
        largestNonOutlier <= values.before && IsClearlyBelow(values.before, values.last);
    if (isClear) largestNonOutlier = values.last;
    return isClear;
  }

  [[nodiscard]] std::int32_t GroupCode() const noexcept { return groupCode; }
  [[nodiscard]] const HingeWalk& Hinges() const noexcept { return hinges; }
  /// In the order of the walk.
  [[nodiscard]] const std::vector<Outlier>& HighOutliers() const noexcept { return highOutliers; }
  [[nodiscard]] const std::vector<Outlier>& LowOutliers() const noexcept { return lowOutliers; }
  [[nodiscard]] double SmallestNonOutlier() const noexcept { return smallestNonOutlier; }
  [[nodiscard]] double LargestNonOutlier() const noexcept { return largestNonOutlier; }

 private:
  void ClassifyByFences(double x, double caseId, std::int32_t times);

  std::int32_t groupCode;
  HingeWalk hinges;
  std::vector<Outlier> highOutliers;
  std::vector<Outlier> lowOutliers;
  double lowerFence = 0.0;
  double upperFence = 0.0;
  // Between these a value is clearly inside the fences.
  double innerLow = 0.0;
  double innerHigh = 0.0;
  double smallestNonOutlier = std::numeric_limits<double>::max();
  double largestNonOutlier = std::numeric_limits<double>::lowest();
};
