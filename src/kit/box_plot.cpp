#include "kit/box_plot.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kRelativeTolerance = 100.0 * QDPower::gMachineEpsilon;
constexpr double kFenceSpreads = 1.5;

int ComparePlainly(double a, double b) noexcept { return (a > b) - (a < b); }

}  // namespace

int CompareClose(double a, double b) noexcept {
  if (a == b || a == 0.0 || b == 0.0) return ComparePlainly(a, b);
  if (std::fabs(a - b) <= std::max(std::fabs(a), std::fabs(b)) * kRelativeTolerance) return 0;
  return ComparePlainly(a, b);
}

void GroupBoxPlot::FinishHinges() {
  summary.FinishHinges();
  const double spread = summary.GetThirdQuartile() - summary.GetFirstQuartile();
  upperFence = summary.GetThirdQuartile() + spread * kFenceSpreads;
  lowerFence = summary.GetFirstQuartile() - spread * kFenceSpreads;
  smallestNonOutlier = summary.GetMaximum();
  largestNonOutlier = summary.GetMinimum();
}

void GroupBoxPlot::ClassifyValue(double x, double caseId) {
  const int toUpper = CompareClose(x, upperFence);
  const int toLower = CompareClose(x, lowerFence);
  if (toUpper > 0) {
    highOutliers.push_back({x, caseId});
  } else if (toLower < 0) {
    lowOutliers.push_back({x, caseId});
  }
  if (toUpper <= 0 && CompareClose(x, largestNonOutlier) > 0) largestNonOutlier = x;
  if ((toLower > 0 || toUpper == 0) && CompareClose(x, smallestNonOutlier) < 0) {
    smallestNonOutlier = x;
  }
}
