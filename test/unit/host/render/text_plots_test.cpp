#include "host/render/text_plots.h"

#include <gtest/gtest.h>

#include <limits>

namespace npar_host {
namespace {

struct HistogramCase {
  const char* catches;
  std::vector<ResultBin> bins;
  std::size_t most;
  const char* unicode;
  const char* ascii;
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(TextPlotsTest, HistogramsShowCountsByValue) {
  const HistogramCase cases[] = {
      {"one value", {{3, 5}}, 20, "█", "@"},
      {"order of the bins is not that of the values", {{4, 2}, {2, 1}, {1, 0}}, 20, "▂▄█", ":=@"},
      {"the largest value lies in the last cell", {{1, 0}, {1, 10}, {1, 9}}, 2, "▄█", "=@"},
      {"a gap is blank", {{1, 0}, {1, 1}, {1, 10}}, 20, "█ ▄", "@ ="},
      {"a single record among many is seen", {{1000, 0}, {1, 1}}, 20, "█▁", "@."},
      {"what is not finite lies nowhere", {{1, 0}, {9, kInfinity}}, 20, "█", "@"},
      {"the range is wider than the largest double", {{1, -1.5e308}, {1, 1.5e308}}, 20, "██", "@@"},
      {"nothing", {}, 20, "", ""},
  };
  for (const HistogramCase& row : cases) {
    SCOPED_TRACE(row.catches);
    const std::size_t cells = HistogramCells(row.bins, row.most);
    EXPECT_EQ(HistogramLine(row.bins, RangeOf(row.bins), cells, false), row.unicode);
    std::string ascii = HistogramLine(row.bins, RangeOf(row.bins), cells, true);
    EXPECT_EQ(ascii, row.ascii);
  }
}

TEST(TextPlotsTest, BoxPlotsPutFiguresAtTheirPlaces) {
  const ResultBoxPlot plot{0, "", {"0", "2", "4", "6", "8"}, {{"10", "", ""}}};
  PlotRange range;
  IncludeBoxPlot(plot, range);
  EXPECT_EQ(range.highest, 10.0);
  EXPECT_EQ(BoxPlotLine(plot, range, 11, true), "|-==#==-| o");
  EXPECT_EQ(BoxPlotLine(plot, range, 11, false), "├─▒▒█▒▒─┤ o");
  EXPECT_EQ(BoxPlotLine({0, "", {}, {{"10", "", ""}}}, range, 11, true), "");
  EXPECT_EQ(BoxPlotLine({0, "", {"0", "nan", "4", "6", "8"}, {}}, range, 11, true), "");
}

TEST(TextPlotsTest, BarsKeepTheirShareAndNeverVanish) {
  EXPECT_EQ(BarLine(1.0, 4, true), "####");
  EXPECT_EQ(BarLine(0.5, 4, true), "##");
  EXPECT_EQ(BarLine(1e-9, 4, true), "#");
  EXPECT_EQ(BarLine(0.0, 4, true), "");
  EXPECT_EQ(BarLine(std::numeric_limits<double>::quiet_NaN(), 4, true), "");
}

}  // namespace
}  // namespace npar_host
