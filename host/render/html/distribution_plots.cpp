#include "host/render/html/distribution_plots.h"

#include <algorithm>
#include <cmath>

#include "arithmetic/elementary.h"
#include "catalogue/cards/wilcoxon.h"
#include "host/data/number.h"
#include "host/render/html/markup.h"
#include "host/render/html/value_marks.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr double kLeft = 48.0;
constexpr double kRight = kPlotWidth - 12.0;
constexpr double kTop = 16.0;
constexpr double kBottom = 190.0;
constexpr std::size_t kMostSingleBars = 30;
constexpr double kZeroBarHalf = 4.0;

struct Bar {
  double low = 0.0;
  double high = 0.0;
  double count = 0.0;
};

std::string FindText(const std::vector<ResultStatistic>& figures, std::string_view name) {
  for (const ResultStatistic& figure : figures) {
    if (figure.name == name) return FigureText(figure.text);
  }
  return {};
}

std::vector<double> Values(const std::vector<ResultBin>& bins) {
  std::vector<double> values;
  values.reserve(bins.size());
  for (const ResultBin& bin : bins) values.push_back(bin.value);
  return values;
}

double Total(const std::vector<ResultBin>& bins) {
  double total = 0.0;
  for (const ResultBin& bin : bins) total += bin.count;
  return total;
}

// The width of the classes that a histogram shows: 1 for few whole numbers; otherwise a round width
// that makes about 2 n^(1/3) classes (Rice's rule) of n values.
double ClassWidth(const std::vector<double>& values, double total) {
  const auto [low, high] = std::ranges::minmax(values);
  const bool areWhole = std::ranges::all_of(values, [](double v) { return v == std::floor(v); });
  if (areWhole && high - low < static_cast<double>(kMostSingleBars)) return 1.0;
  const double classes = std::clamp(2.0 * arithmetic::Cbrt(std::max(total, 1.0)), 6.0, 40.0);
  const double width = RoundStep(high - low, classes);
  return areWhole ? std::max(width, 1.0) : width;
}

// Whole numbers stand in the middle of a class of width 1; else the classes' bounds are multiples
// of the width, so that 0 is a bound.
std::vector<Bar> Classes(const std::vector<ResultBin>& bins, double width, bool centred) {
  std::vector<Bar> bars;
  for (const ResultBin& bin : bins) {
    if (!std::isfinite(bin.value)) continue;
    const double low = centred ? bin.value - 0.5 : std::floor(bin.value / width + 1e-9) * width;
    if (bars.empty() || low > bars.back().low + width / 2.0) {
      bars.push_back({low, low + width, bin.count});
    } else {
      bars.back().count += bin.count;
    }
  }
  return bars;
}

double Highest(const std::vector<Bar>& bars) {
  double highest = 0.0;
  for (const Bar& bar : bars) highest = std::max(highest, bar.count);
  return highest;
}

std::vector<double> Bounds(const std::vector<Bar>& bars) {
  std::vector<double> bounds;
  for (const Bar& bar : bars) {
    bounds.push_back(bar.low);
    bounds.push_back(bar.high);
  }
  return bounds;
}

std::vector<Bar> HistogramBars(const std::vector<ResultBin>& bins) {
  if (bins.empty()) return {};
  std::vector<ResultBin> sorted = bins;
  std::ranges::stable_sort(sorted, {}, &ResultBin::value);
  const std::vector<double> values = Values(sorted);
  const double width = ClassWidth(values, Total(sorted));
  return Classes(sorted, width, width == 1.0 && std::ranges::all_of(values, [](double v) {
                                  return v == std::floor(v);
                                }));
}

Scale CountScale(double highest, double from, double to) {
  return {0.0, highest > 0.0 ? highest * 1.05 : 1.0, from, to};
}

void DrawBars(Drawing& drawing, const std::vector<Bar>& bars, const Scale& across,
              const Scale& counts, std::string_view shapeClass) {
  for (const Bar& bar : bars) {
    const double y = counts(bar.count);
    const double base = counts(0.0);
    const double width = across(bar.high) - across(bar.low);
    drawing.Box(across(bar.low) + 0.5, std::min(y, base), std::max(width - 1.0, 0.6),
                std::abs(base - y), shapeClass);
  }
}

std::string ValuesTable(const std::string& id, std::string_view caption,
                        const std::vector<ResultBin>& bins) {
  HtmlTable table(id, caption);
  table.SetColumns({"Value", "Count"});
  for (const ResultBin& bin : bins) {
    table.AddRow(FigureMarkup(NumberText(bin.value)), {FigureMarkup(NumberText(bin.count))});
  }
  return table.Markup("figures");
}

constexpr double kStripHeight = 40.0;

/// The data themselves, above or below their histogram.
struct Strip {
  std::vector<double> values;
  std::optional<Quartiles> quartiles;

  [[nodiscard]] bool IsEmpty() const { return values.empty() && !quartiles; }
};

void DrawStrip(Drawing& drawing, const Strip& strip, const Scale& across, double y) {
  constexpr double kHalfBox = 9.0;
  constexpr double kSpread = 11.0;
  if (strip.quartiles) DrawBox(drawing, *strip.quartiles, across, y, kHalfBox);
  DrawValues(drawing, strip.values, across, y, kSpread);
}

std::string GroupWords(const std::string& group, const std::vector<ResultStatistic>& figures) {
  const std::string rank = FindText(figures, "MeanOfRank");
  return group + " with " + FindText(figures, "N") + " values" +
         (rank.empty() ? "" : " and mean rank " + rank);
}

Plot CategoriesPlot(const ResultField& field) {
  Plot plot;
  plot.kind = "bars";
  plot.title = "How often the categories of " + field.Title() + " occur";
  plot.description = "Bars, one for each category:";
  constexpr double kLabelEnd = 130.0;
  constexpr double kStep = 26.0;
  const auto& bins = field.distribution->bins;
  std::vector<Bar> bars;
  bars.reserve(bins.size());
  for (const ResultBin& bin : bins) bars.push_back({0.0, 0.0, bin.count});
  const Scale across{0.0, std::max(Highest(bars), 1.0), kLabelEnd + 8.0, kRight - 60.0};
  double y = 12.0;
  for (const ResultBin& bin : bins) {
    const std::string name = CategoryTitle(field, static_cast<std::int32_t>(bin.value));
    const std::string count = FigureText(NumberText(bin.count));
    plot.drawing.Name(kLabelEnd, y + 14.0, "end", name, kLabelEnd - 4.0);
    plot.drawing.Box(across(0.0), y, across(bin.count) - across(0.0), kStep - 7.0, "first");
    plot.drawing.Text(across(bin.count) + 6.0, y + 14.0, "start", count, "value");
    plot.description.append(" ").append(name).append(" ").append(count).append(";");
    y += kStep;
  }
  plot.description.back() = '.';
  plot.drawing.Line(across(0.0), 6.0, across(0.0), y, "axis");
  plot.height = y + 10.0;
  return plot;
}

}  // namespace

std::optional<Plot> FieldPlot(const ResultField& field, const std::string& id) {
  if (!field.distribution || field.distribution->bins.empty()) return std::nullopt;
  if (field.isCategorical) return CategoriesPlot(field);
  const ResultDistribution& distribution = *field.distribution;
  const std::vector<Bar> bars = HistogramBars(distribution.bins);
  if (bars.empty()) return std::nullopt;
  const auto figure = [&](const char* name) { return FindText(distribution.figures, name); };
  Plot plot;
  plot.kind = "histogram";
  plot.title = "Histogram of " + field.Title();
  plot.description = figure("TotalN") + " values from " + figure("Min") + " to " + figure("Max") +
                     " with mean " + figure("Mean") + " and standard deviation " +
                     figure("StdDev") + ".";
  const Scale across = ScaleOver(Bounds(bars), kLeft, kRight);
  const Scale counts = CountScale(Highest(bars), kBottom, kTop);
  DrawAxisLeft(plot.drawing, counts, kLeft, kRight, true);
  DrawBars(plot.drawing, bars, across, counts, "first");
  DrawAxisBelow(plot.drawing, across, kBottom, field.Title());
  plot.values = ValuesTable(id, "Values of " + field.Title(), distribution.bins);
  return plot;
}

std::optional<Plot> DifferencesPlot(const ResultDocument& document, const ResultTest& test,
                                    const std::string& id) {
  if (!test.differences || test.differences->bins.empty()) return std::nullopt;
  if (FindText(test.differences->figures, "PositiveDifferences").empty()) return std::nullopt;
  const auto figure = [&](const char* name) { return FindText(test.differences->figures, name); };
  const auto firstTitles = FieldTitles(document, test, 0);
  const auto secondTitles = FieldTitles(document, test, 1);
  const std::string difference =
      firstTitles.empty() || secondTitles.empty()
          ? "second - first"
          : Shortened(secondTitles[0], 22) + " - " + Shortened(firstTitles[0], 22);
  std::vector<ResultBin> others = test.differences->bins;
  double zeros = 0.0;
  std::erase_if(others, [&zeros](const ResultBin& bin) {
    if (bin.value == 0.0) zeros += bin.count;
    return bin.value == 0.0;
  });
  Plot plot;
  plot.kind = "differences";
  plot.title = "Histogram of the differences " + difference;
  plot.description = figure("NegativeDifferences") + " negative differences, " + figure("Ties") +
                     " of 0 and " + figure("PositiveDifferences") + " positive ones.";
  std::vector<Bar> bars = HistogramBars(others);
  std::vector<double> bounds = Bounds(bars);
  bounds.push_back(0.0);
  const Scale across = ScaleOver(bounds, kLeft, kRight);
  const Scale counts = CountScale(std::max(Highest(bars), zeros), kBottom, kTop + 14.0);
  DrawAxisLeft(plot.drawing, counts, kLeft, kRight, true);
  for (const Bar& bar : bars) {
    const bool isNegative = bar.low + bar.high < 0.0;
    // Bars that reach 0 leave room for the bar of the zeros.
    double left = across(bar.low) + 0.5;
    double right = across(bar.high) - 0.5;
    if (isNegative) right = std::min(right, across(0.0) - kZeroBarHalf - 2.0);
    if (!isNegative) left = std::max(left, across(0.0) + kZeroBarHalf + 2.0);
    plot.drawing.Box(left, counts(bar.count), std::max(right - left, 0.6),
                     kBottom - counts(bar.count), isNegative ? "second" : "first");
  }
  if (zeros > 0.0) {
    plot.drawing.Box(across(0.0) - kZeroBarHalf, counts(zeros), 2.0 * kZeroBarHalf,
                     kBottom - counts(zeros), "zero");
  }
  plot.drawing.Text(kLeft, kTop - 3.0, "start",
                    "\u25c2 " + figure("NegativeDifferences") + " negative", "value");
  plot.drawing.Text((kLeft + kRight) / 2.0, kTop - 3.0, "middle", figure("Ties") + " of 0",
                    "value");
  plot.drawing.Text(kRight, kTop - 3.0, "end", figure("PositiveDifferences") + " positive \u25b8",
                    "value");
  DrawAxisBelow(plot.drawing, across, kBottom, difference);
  plot.note = "The narrow bar at 0 counts the pairs without a difference.";
  plot.values = ValuesTable(id, "Differences", test.differences->bins);
  return plot;
}

std::optional<Plot> MedianPlot(const ResultDocument& document, const ResultTest& test,
                               const std::string& id) {
  if (!test.differences || test.name != catalogue::wilcoxon::kCard.element) return std::nullopt;
  const std::string hypothetical = FindText(test.differences->figures, "HypotheticalMedian");
  const std::string observed = FindText(test.differences->figures, "ObservedMedian");
  std::vector<ResultBin> bins = test.differences->bins;
  // Values that equal the hypothesised median come first, as a pair of their own with value 0; they
  // are among the other pairs too. The total leaves them out: that tells whether they are there.
  const std::string* total = test.Statistic("TotalN");
  const double effective = total ? FigureNumber(*total).value_or(0.0) : 0.0;
  std::string equal;
  if (!bins.empty() && bins[0].value == 0.0 && Total(bins) == effective + 2.0 * bins[0].count) {
    equal = FigureText(NumberText(bins[0].count));
    bins.erase(bins.begin());
  }
  const std::vector<Bar> bars = HistogramBars(bins);
  if (bars.empty()) return std::nullopt;
  const auto titles = FieldTitles(document, test, 0);
  const std::string title = titles.empty() ? "the values" : titles[0];
  Plot plot;
  plot.kind = "median";
  plot.title = "Histogram of " + title + " with its medians";
  plot.description =
      "The hypothesised median is " + hypothetical + ", the observed one " + observed + ".";
  if (!equal.empty()) {
    plot.note = equal + " values equal the hypothesised median and take no part in the ranking.";
    plot.description += " " + plot.note;
  }
  const double median = FigureNumber(hypothetical).value_or(0.0);
  const double middle = FigureNumber(observed).value_or(median);
  std::vector<double> bounds = Bounds(bars);
  bounds.push_back(median);
  const Scale across = ScaleOver(bounds, kLeft, kRight);
  const Scale counts = CountScale(Highest(bars), kBottom, kTop + 26.0);
  DrawAxisLeft(plot.drawing, counts, kLeft, kRight, true);
  DrawBars(plot.drawing, bars, across, counts, "first");
  const auto mark = [&](double value, double y, std::string_view line, const std::string& text) {
    const double x = across(value);
    const bool isRight = x > kPlotWidth / 2.0;
    plot.drawing.Line(x, y - 8.0, x, kBottom, line);
    plot.drawing.Text(isRight ? x - 5.0 : x + 5.0, y, isRight ? "end" : "start", text, "value");
  };
  mark(median, kTop, "marker dashed", "hypothesised " + hypothetical);
  mark(middle, kTop + 15.0, "marker", "observed " + observed);
  const Strip strip{FieldValues(document, test), std::nullopt};
  const double room = strip.IsEmpty() ? 0.0 : kStripHeight;
  DrawStrip(plot.drawing, strip, across, kBottom + 18.0);
  DrawAxisBelow(plot.drawing, across, kBottom + room, title);
  plot.height += room;
  plot.values = ValuesTable(id, "Values of " + title, test.differences->bins);
  return plot;
}

std::optional<Plot> MirroredPlot(const ResultDocument& document, const ResultTest& test,
                                 const std::string& id) {
  if (test.groups.size() != 2) return std::nullopt;
  const ResultGroup& first = test.groups[0];
  const ResultGroup& second = test.groups[1];
  if (first.bins.empty() || second.bins.empty()) return std::nullopt;
  std::vector<double> values = Values(first.bins);
  for (const double value : Values(second.bins)) values.push_back(value);
  const double width = ClassWidth(values, (Total(first.bins) + Total(second.bins)) / 2.0);
  const bool centred =
      width == 1.0 && std::ranges::all_of(values, [](double v) { return v == std::floor(v); });
  const auto bars = [&](std::vector<ResultBin> bins) {
    std::ranges::stable_sort(bins, {}, &ResultBin::value);
    return Classes(bins, width, centred);
  };
  const std::vector<Bar> above = bars(first.bins);
  const std::vector<Bar> below = bars(second.bins);
  std::vector<double> bounds = Bounds(above);
  for (const double bound : Bounds(below)) bounds.push_back(bound);
  const auto titles = FieldTitles(document, test, 0);
  const std::string title = titles.empty() ? "the values" : titles[0];
  const std::string firstTitle = GroupTitle(document, test, first);
  const std::string secondTitle = GroupTitle(document, test, second);
  Plot plot;
  plot.kind = "mirrored";
  plot.title = "Histograms of " + title + " in two groups";
  plot.description = "Upwards " + GroupWords(firstTitle, first.figures) + "; downwards " +
                     GroupWords(secondTitle, second.figures) + ".";
  const Strip firstStrip{GroupValues(document, test, first.codes), SampleQuartiles(test, 0)};
  const Strip secondStrip{GroupValues(document, test, second.codes), SampleQuartiles(test, 1)};
  const double room = firstStrip.IsEmpty() && secondStrip.IsEmpty() ? 0.0 : kStripHeight;
  const double top = kTop + room;
  const double middle = top + 114.0;
  const double bottom = middle + 110.0;
  const double highest = std::max(Highest(above), Highest(below));
  const Scale across = ScaleOver(bounds, kLeft, kRight);
  const Scale up = CountScale(highest, middle, top + 6.0);
  const Scale down = CountScale(highest, middle, bottom);
  DrawAxisLeft(plot.drawing, up, kLeft, kRight, true);
  DrawAxisLeft(plot.drawing, down, kLeft, kRight, true);
  DrawBars(plot.drawing, above, across, up, "first");
  DrawBars(plot.drawing, below, across, down, "second");
  plot.drawing.Line(kLeft, middle, kRight, middle, "axis");
  plot.drawing.Name(kRight, kTop + 2.0, "end", "\u25b4 " + firstTitle, 320.0);
  plot.drawing.Name(kRight, bottom - 4.0, "end", "\u25be " + secondTitle, 320.0);
  DrawStrip(plot.drawing, firstStrip, across, kTop + 26.0);
  DrawStrip(plot.drawing, secondStrip, across, bottom + 18.0);
  DrawAxisBelow(plot.drawing, across, bottom + room, title);
  plot.height = bottom + room + 44.0;
  if (!firstStrip.values.empty()) plot.note = "Dots: the values, spread to be told apart. ";
  if (firstStrip.quartiles) plot.note += "Box: quartiles and median.";
  plot.values = ValuesTable(id + "-first", "Values of " + firstTitle, first.bins) +
                ValuesTable(id + "-second", "Values of " + secondTitle, second.bins);
  return plot;
}

}  // namespace npar_host
