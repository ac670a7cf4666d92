#include "kit/summaries/box_plot.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace {

using Units = std::vector<std::pair<double, double>>;  // value, weight

GroupBoxPlot PlotOf(const Units& units) {
  double total = 0.0;
  for (const auto& unit : units) total += static_cast<double>(TruncateToInt32(unit.second));
  GroupBoxPlot plot(3, total);
  for (const auto& [x, weight] : units) plot.TrackValue(x, weight);
  plot.FinishHinges();
  double caseId = 100.0;
  for (const auto& unit : units) plot.ClassifyValue(unit.first, caseId++);
  return plot;
}

Units Plain(const std::vector<double>& values) {
  Units units;
  for (const double value : values) units.emplace_back(value, 1.0);
  return units;
}

std::vector<double> ValuesOf(const std::vector<GroupBoxPlot::Outlier>& outliers) {
  std::vector<double> values;
  for (const auto& outlier : outliers) values.push_back(outlier.value);
  return values;
}

struct CloseCase {
  const char* catches;
  double a, b;
  int result;
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();

const CloseCase kCloseCases[] = {
    {"equal", 2.0, 2.0, 0},
    {"within 100 epsilons", 1.0, 1.0 + 99 * QDPower::gMachineEpsilon, 0},
    {"beyond them", 1.0, 1.0 + 103 * QDPower::gMachineEpsilon, -1},
    {"the larger magnitude counts", -1e20, -1e20 - 1e6, 0},
    {"zero knows no tolerance", 1e-300, 0.0, 1},
    {"zero on the left", 0.0, 1e-300, -1},
    {"equal infinities", kInfinity, kInfinity, 0},
    {"greater", 3.0, 2.0, 1},
};

TEST(BoxPlotTest, ValuesCompareWithARelativeTolerance) {
  for (const CloseCase& row : kCloseCases) {
    SCOPED_TRACE(row.catches);
    EXPECT_EQ(CompareClose(row.a, row.b), row.result);
    EXPECT_EQ(CompareClose(row.b, row.a), -row.result);
  }
}

TEST(BoxPlotTest, HingesFencesAndOutliersAreTukeys) {
  // R 4.2.2: boxplot.stats(c(1, 10, 11, 12, 13, 14, 15, 16, 30))$stats and $out
  const GroupBoxPlot plot = PlotOf(Plain({1, 10, 11, 12, 13, 14, 15, 16, 30}));
  EXPECT_EQ(plot.SmallestNonOutlier(), 10.0);
  EXPECT_EQ(plot.Hinges().FirstQuartile(), 11.0);
  EXPECT_EQ(plot.Hinges().Median(), 13.0);
  EXPECT_EQ(plot.Hinges().ThirdQuartile(), 15.0);
  EXPECT_EQ(plot.LargestNonOutlier(), 16.0);
  EXPECT_EQ(ValuesOf(plot.LowOutliers()), std::vector<double>{1});
  EXPECT_EQ(ValuesOf(plot.HighOutliers()), std::vector<double>{30});
  EXPECT_EQ(plot.HighOutliers()[0].caseId, 108.0);
}

TEST(BoxPlotTest, AValueOnTheLowerFenceIsNoOutlierAndNotTheSmallestInside) {
  // Hinges 4 and 8: fences -2 and 14.
  const GroupBoxPlot plot = PlotOf(Plain({-2, 4, 4, 6, 8, 8, 14}));
  ASSERT_EQ(plot.Hinges().FirstQuartile(), 4.0);
  ASSERT_EQ(plot.Hinges().ThirdQuartile(), 8.0);
  EXPECT_TRUE(plot.LowOutliers().empty());
  EXPECT_TRUE(plot.HighOutliers().empty());
  EXPECT_EQ(plot.SmallestNonOutlier(), 4.0);
  EXPECT_EQ(plot.LargestNonOutlier(), 14.0);
}

}  // namespace
