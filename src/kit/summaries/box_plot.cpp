#include "kit/summaries/box_plot.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kFenceSpreads = 1.5;

}  // namespace

void GroupBoxPlot::FinishHinges() noexcept {
  hinges.FinishHinges();
  const double spread = hinges.ThirdQuartile() - hinges.FirstQuartile();
  upperFence = hinges.ThirdQuartile() + spread * kFenceSpreads;
  lowerFence = hinges.FirstQuartile() - spread * kFenceSpreads;
  const double margin =
      4.0 * kCloseTolerance * std::max(std::fabs(lowerFence), std::fabs(upperFence));
  innerLow = lowerFence + margin;
  innerHigh = upperFence - margin;
  smallestNonOutlier = hinges.Maximum();
  largestNonOutlier = hinges.Minimum();
}

WantedPlaces::Tails GroupBoxPlot::WantedTails() const noexcept {
  // A value that is clear of those before it is the last one inside the fence, whichever stood for
  // that so far. From an infinity no value is clear.
  const bool areFinite = std::isfinite(hinges.Minimum()) && std::isfinite(hinges.Maximum());
  const double clear =
      2.0 * kCloseTolerance * std::max(std::fabs(lowerFence), std::fabs(upperFence));
  return {innerLow, innerHigh, areFinite ? clear : std::numeric_limits<double>::infinity()};
}

void GroupBoxPlot::ClassifyByFences(double x, double caseId, std::int32_t times) {
  const auto count = static_cast<std::size_t>(times);
  const int toUpper = CompareClose(x, upperFence);
  const int toLower = CompareClose(x, lowerFence);
  if (toUpper > 0) {
    highOutliers.insert(highOutliers.end(), count, {x, caseId});
  } else if (toLower < 0) {
    lowOutliers.insert(lowOutliers.end(), count, {x, caseId});
  }
  if (toUpper <= 0 && CompareClose(x, largestNonOutlier) > 0) largestNonOutlier = x;
  if ((toLower > 0 || toUpper == 0) && CompareClose(x, smallestNonOutlier) < 0) {
    smallestNonOutlier = x;
  }
}
