#include "kit/summaries/histogram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

#include "support/filled_bins.h"

namespace {

using testing::ElementsAre;
using testing::Pair;

struct EdgeCase {
  const char* catches;
  double low, high;
  std::uint64_t bins;
  std::vector<double> edges;
};

const EdgeCase kEdgeCases[] = {
    {"no zero inside: equal steps, the last edge past the top", 1, 5, 4, {2, 3, 4, 6}},
    {"zero already an edge: it stands twice, and the step after the next is two widths wide",
     -1,
     3,
     4,
     {0, 0, 1, 3, 4}},
    {"zero between edges", -3, 5, 4, {-1, 0, 1, 5, 6}},
    {"lower end at zero counts as inside", 0, 4, 4, {0, 1, 3, 4, 5}},
    {"upper end at zero does not", -4, 0, 4, {-3, -2, -1, 1}},
    {"no width", 2, 2, 3, {2, 2, 3}},
    {"no bins", 1, 2, 0, {}},
};

TEST(HistogramTest, EdgesFollowTheRule) {
  for (const EdgeCase& row : kEdgeCases) {
    SCOPED_TRACE(row.catches);
    Histogram histogram;
    histogram.SetRange(row.low, row.high, row.bins);
    EXPECT_EQ(histogram.GetBinUpperEdges(), row.edges);
    EXPECT_EQ(histogram.GetBins().size(), row.edges.size());
  }
}

TEST(HistogramTest, ZeroInsideTheRangeMakesOneMoreOfFourHundredBins) {
  Histogram histogram;
  histogram.SetRange(-1.0, 2.0);
  const std::vector<double>& edges = histogram.GetBinUpperEdges();
  EXPECT_EQ(edges.size(), 401u);
  EXPECT_EQ(std::count(edges.begin(), edges.end(), 0.0), 1);
}

/// Bin i holds the values above edge i - 1 up to edge i.
std::int64_t BinByDefinition(const std::vector<double>& edges, double x) {
  std::size_t bin = 0;
  while (bin + 1 < edges.size() && edges[bin] < x) ++bin;
  return static_cast<std::int64_t>(bin);
}

TEST(HistogramTest, FindBinAgreesWithItsDefinitionAtAndBesideEveryEdge) {
  constexpr double kHuge = std::numeric_limits<double>::max() / 2;
  constexpr double kTiny = std::numeric_limits<double>::denorm_min();
  const std::vector<double> lows = {0,      -1, -1e-300, 1, 1e15,  -7.3, -kHuge,    -1,
                                    -kHuge, 0,  -kTiny,  3, -1e-9, -1e9, -2 * kHuge};
  const std::vector<double> highs = {1,   1,     5e-300,   1 + 1e-13, 1e15 + 3,     -7.3,
                                     1,   kHuge, kHuge,    kTiny,     kTiny * 1000, 1e9,
                                     1e9, 1e-9,  2 * kHuge};
  for (std::size_t range = 0; range < lows.size(); ++range) {
    const double low = lows[range];
    const double high = highs.at(range);
    SCOPED_TRACE(testing::Message() << low << " to " << high);
    Histogram histogram;
    histogram.SetRange(low, high);
    const std::vector<double>& edges = histogram.GetBinUpperEdges();
    std::vector<double> probes = {low, high};
    for (const double edge : edges) {
      probes.insert(probes.end(), {edge, std::nextafter(edge, low), std::nextafter(edge, high)});
    }
    for (const double x : probes) {
      if (!(x >= low) || !(x <= high)) continue;
      ASSERT_EQ(histogram.FindBin(x), BinByDefinition(edges, x)) << x;
    }
  }
}

TEST(HistogramTest, NotANumberAndAFewBinsHaveAnAnswer) {
  Histogram histogram;
  EXPECT_EQ(histogram.FindBin(3.0), 0);
  histogram.SetRange(0.0, 10.0, 1);  // edges 0 and 11
  EXPECT_EQ(histogram.FindBin(5.0), 1);
  EXPECT_EQ(histogram.FindBin(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(HistogramTest, BinsHoldSumsOfWeightsAndWeightedMeansAndZerosComeLast) {
  Histogram histogram;
  histogram.SetRange(-4.0, 4.0, 4);  // edges -2, 0, 0+, 2, 5
  for (const auto& [x, weight] : {std::pair(-4.0, 1), {-3.0, 3}, {4.0, 2}, {3.5, 0}}) {
    histogram.AddValueOrZero(x, weight);
  }
  histogram.AddValueOrZero(0.0, 5);
  histogram.AddZeroBin();
  EXPECT_THAT(Filled(histogram.GetBins()), ElementsAre(Pair(4, -3.25), Pair(2, 4.0), Pair(5, 0.0)));
  EXPECT_EQ(histogram.GetBins().back().Count(), 5);
}

TEST(HistogramTest, ABinsMeanIsRightInAnyOrderAndGrouping) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  struct {
    const char* catches;
    std::vector<std::pair<double, std::int64_t>> values;
    double mean;  // Python's fractions, of the doubles as they are
  } const cases[] = {
      {"digits far below the first",
       {{1e9, 1}, {0.1, 3}, {0.7, 2}, {1e-9, 7}},
       76923077.0538461543846},
      {"a sum that cancels", {{1e16, 3}, {-1e16, 3}, {0.3, 5}}, 0.136363636363636354},
      {"a sum beyond doubles", {{1.5e308, 3}, {1.7e308, 2}, {1e308, 1}}, 1.48333333333333333e308},
      {"an infinity", {{1, 1}, {-kInfinity, 2}, {2, 1}}, -kInfinity},
      {"none left", {{3, 1}, {5, 2}, {3, -1}, {5, -2}}, 0.0},
  };
  std::mt19937 random(3);
  for (auto row : cases) {
    SCOPED_TRACE(row.catches);
    for (int order = 0; order < 20; ++order) {
      std::shuffle(row.values.begin(), row.values.end(), random);
      HistogramBin weighted;
      HistogramBin expanded;
      for (const auto& [x, weight] : row.values) {
        weighted.Add(x, weight);
        for (std::int64_t i = 0; i < std::abs(weight); ++i) expanded.Add(x, weight < 0 ? -1 : 1);
      }
      EXPECT_DOUBLE_EQ(weighted.Mean(), row.mean);
      EXPECT_DOUBLE_EQ(expanded.Mean(), row.mean);
    }
  }
}

TEST(HistogramTest, TakesAColumnAsItsValues) {
  constexpr std::size_t kCount = 700;  // more than are taken at a time
  std::vector<double> values(kCount, std::numeric_limits<double>::quiet_NaN());
  std::vector<std::int32_t> weights;
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i % 90 != 0) values[i] = static_cast<double>(i % 81) * 0.1 - 4.0;  // 0 too, and both ends
    weights.push_back(static_cast<std::int32_t>(i % 3));
  }
  for (const bool isWeighted : {false, true}) {
    for (const std::uint64_t bins : {0U, 4U}) {
      Histogram byColumn;
      Histogram byValue;
      if (bins > 0) byColumn.SetRange(-4.0, 4.0, bins);
      if (bins > 0) byValue.SetRange(-4.0, 4.0, bins);
      byColumn.AddColumn(values.data(), kCount, isWeighted ? weights.data() : nullptr);
      for (std::size_t i = 0; i < kCount; ++i) {
        byValue.AddValueOrZero(values[i], isWeighted ? weights[i] : 1);
      }
      byColumn.AddZeroBin();
      byValue.AddZeroBin();
      ASSERT_EQ(byColumn.GetBins().size(), byValue.GetBins().size());
      for (std::size_t bin = 0; bin < byValue.GetBins().size(); ++bin) {
        EXPECT_EQ(byColumn.GetBins()[bin].Count(), byValue.GetBins()[bin].Count());
        EXPECT_EQ(std::bit_cast<std::uint64_t>(byColumn.GetBins()[bin].Mean()),
                  std::bit_cast<std::uint64_t>(byValue.GetBins()[bin].Mean()));
      }
    }
  }
}

}  // namespace
