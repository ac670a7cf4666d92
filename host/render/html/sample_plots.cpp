#include "host/render/html/sample_plots.h"

#include <algorithm>
#include <cmath>

#include "arithmetic/elementary.h"
#include "catalogue/cards/runs.h"
#include "host/data/number.h"
#include "host/render/html/markup.h"
#include "host/render/html/value_marks.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr double kLabelEnd = 126.0;
constexpr double kLeft = 136.0;
constexpr double kRight = kPlotWidth - 16.0;
constexpr double kTop = 12.0;
constexpr double kLabelRoom = kLabelEnd - 2.0;
constexpr std::size_t kOutliersInWords = 5;

std::optional<double> Finite(std::string_view text) {
  const auto number = FigureNumber(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::string FindText(const std::vector<ResultStatistic>& figures, std::string_view name) {
  for (const ResultStatistic& figure : figures) {
    if (figure.name == name) return figure.text;
  }
  return {};
}

std::string BoxWords(const std::string& title, const ResultBoxPlot& box) {
  if (box.fiveNumbers.empty()) return " " + title + ": no values.";
  const auto figure = [&box](std::size_t i) { return FigureText(box.fiveNumbers[i]); };
  std::string words = " " + title + ": median " + figure(2) + ", quartiles " + figure(1) + " and " +
                      figure(3) + ", whiskers from " + figure(0) + " to " + figure(4);
  if (box.outliers.empty()) return words + ".";
  words += ", outliers";
  for (std::size_t i = 0; i < std::min(box.outliers.size(), kOutliersInWords); ++i) {
    words += (i > 0 ? ", " : " ") + FigureText(box.outliers[i].value);
    if (!box.outliers[i].Case().empty()) words += " (case " + box.outliers[i].Case() + ")";
  }
  if (box.outliers.size() > kOutliersInWords) words += " and more, which the table lists";
  return words + ".";
}

// Labels that would run into the one before are left out; the table below names them all.
void DrawOutliers(Drawing& drawing, const ResultBoxPlot& box, const Scale& across, double y) {
  constexpr double kCharacterWidth = 8.0;
  constexpr double kCaseRoom = 90.0;
  std::vector<const ResultOutlier*> sorted;
  for (const ResultOutlier& outlier : box.outliers) {
    if (Finite(outlier.value)) sorted.push_back(&outlier);
  }
  std::ranges::stable_sort(sorted, {}, [](const auto* o) { return *Finite(o->value); });
  constexpr double kLeastStep = 2.0;  // below, circles are a band
  double labelEnd = -INFINITY;
  double last = -INFINITY;
  for (const ResultOutlier* outlier : sorted) {
    const double x = across(*Finite(outlier->value));
    if (x - last < kLeastStep) continue;
    last = x;
    drawing.Dot(x, y, 3.5, "outlier");
    const double half =
        std::min(kCaseRoom, static_cast<double>(outlier->Case().size()) * kCharacterWidth) / 2.0;
    if (outlier->Case().empty() || x - half < labelEnd || x + half > kPlotWidth) continue;
    drawing.Name(x, y - 8.0, "middle", outlier->Case(), kCaseRoom);
    labelEnd = x + half + 2.0;
  }
}

std::vector<double> WithoutOutliers(std::vector<double> values, const ResultBoxPlot& box) {
  constexpr double kRounding = 1e-12;  // of the document's digits
  std::erase_if(values, [&box](double value) {
    return std::ranges::any_of(box.outliers, [value](const ResultOutlier& outlier) {
      const double given = Finite(outlier.value).value_or(NAN);
      return std::abs(given - value) <= kRounding * std::abs(value);
    });
  });
  return values;
}

std::vector<double> BoxValues(const std::vector<ResultBoxPlot>& boxes) {
  std::vector<double> values;
  for (const ResultBoxPlot& box : boxes) {
    for (const std::string& number : box.fiveNumbers)
      values.push_back(Finite(number).value_or(NAN));
    for (const auto& outlier : box.outliers) values.push_back(Finite(outlier.value).value_or(NAN));
  }
  return values;
}

}  // namespace

std::optional<Plot> BoxPlots(const ResultDocument& document, const ResultTest& test) {
  if (test.boxPlots.empty()) return std::nullopt;
  constexpr std::size_t kRoomy = 16;  // more boxes stand closer
  const bool isRoomy = test.boxPlots.size() <= kRoomy;
  const double step = isRoomy ? 40.0 : 15.0;
  const double half = isRoomy ? 10.0 : 5.0;
  const auto titles = FieldTitles(document, test, 0);
  const std::string title = titles.empty() ? "the values" : titles[0];
  Plot plot;
  plot.kind = "box-plots";
  plot.title = "Box plots of " + title + " by group";
  const Scale across = ScaleOver(BoxValues(test.boxPlots), kLeft, kRight);
  const double bottom = kTop + step * static_cast<double>(test.boxPlots.size());
  double y = kTop + step / 2.0 + 3.0;
  std::vector<std::int32_t> codes;
  for (const ResultBoxPlot& box : test.boxPlots) codes.push_back(box.code);
  const std::size_t shared = SharedBeginning(SampleTitles(document, test, codes));
  for (const ResultBoxPlot& box : test.boxPlots) {
    const std::string name = SampleTitle(document, test, box.code);
    plot.description += BoxWords(name, box);
    plot.drawing.Line(kLeft, y, kRight, y, "grid");
    plot.drawing.Name(kLabelEnd, y + 4.0, "end", name, kLabelRoom, "name", shared);
    std::vector<double> five;
    for (const std::string& number : box.fiveNumbers) {
      if (const auto value = Finite(number)) five.push_back(across(*value));
    }
    if (five.size() == 5) {
      plot.drawing.Line(five[0], y, five[1], y, "whisker");
      plot.drawing.Line(five[3], y, five[4], y, "whisker");
      plot.drawing.Line(five[0], y - half / 2.0, five[0], y + half / 2.0, "whisker");
      plot.drawing.Line(five[4], y - half / 2.0, five[4], y + half / 2.0, "whisker");
      plot.drawing.Box(five[1], y - half, five[3] - five[1], 2.0 * half, "box");
      plot.drawing.Line(five[2], y - half, five[2], y + half, "median");
    }
    DrawValues(plot.drawing, WithoutOutliers(GroupValues(document, test, {box.code}), box), across,
               y, half - 2.0);
    DrawOutliers(plot.drawing, box, across, y);
    y += step;
  }
  plot.description.erase(0, 1);
  DrawAxisBelow(plot.drawing, across, bottom, title);
  plot.height = bottom + 44.0;
  plot.note = document.values ? "Dots: the values, spread so that they can be told apart. " : "";
  plot.note +=
      "Box: quartiles and median. Whiskers: the furthest values within 1.5 interquartile ranges of "
      "the box. Circles: outliers, with the case where the data name it.";
  return plot;
}

std::optional<Plot> RankPlot(const ResultDocument& document, const ResultTest& test,
                             const std::string& id) {
  if (test.classification != "Related_Samples" || test.groups.empty()) return std::nullopt;
  constexpr double kStep = 64.0;
  constexpr double kBarsHeight = 42.0;
  std::vector<double> ranks{1.0, static_cast<double>(test.groups.size())};
  double highest = 1.0;
  for (const ResultGroup& group : test.groups) {
    for (const ResultBin& bin : group.bins) {
      ranks.push_back(bin.value);
      highest = std::max(highest, bin.count);
    }
  }
  Plot plot;
  plot.kind = "ranks";
  plot.title = "Ranks within the records";
  plot.description = "Mean ranks:";
  Scale across = ScaleOver(ranks, kLeft, kRight - 20.0);
  across.low -= 0.2;
  across.high += 0.2;
  const double bottom = kTop + kStep * static_cast<double>(test.groups.size());
  const double barWidth = std::clamp((across(1.5) - across(1.0)) * 0.7, 1.5, 26.0);
  double base = kTop + kStep - 8.0;
  std::size_t number = 1;
  std::vector<std::string> names;
  for (const ResultGroup& group : test.groups) names.push_back(GroupTitle(document, test, group));
  const std::size_t shared = SharedBeginning(names);
  for (const ResultGroup& group : test.groups) {
    const std::string name = GroupTitle(document, test, group);
    const std::string mean = FindText(group.figures, "MeanOfRank");
    plot.drawing.Name(kLabelEnd, base - 20.0, "end", name, kLabelRoom, "name", shared);
    plot.drawing.Text(kLabelEnd, base - 5.0, "end", FigureText(mean), "value");
    plot.drawing.Line(kLeft, base, kRight, base, "axis");
    for (const ResultBin& bin : group.bins) {
      const double height = kBarsHeight * bin.count / highest;
      plot.drawing.Box(across(bin.value) - barWidth / 2.0, base - height, barWidth, height,
                       "first");
    }
    if (const auto rank = Finite(mean)) {
      plot.drawing.Line(across(*rank), base - kBarsHeight - 4.0, across(*rank), base, "marker");
      plot.drawing.Diamond(across(*rank), base, 5.0, "mark");
    }
    plot.description += " " + name + " " + FigureText(mean) + ";";
    HtmlTable ranksOfField(id + std::to_string(number++), "Ranks of " + name);
    ranksOfField.SetColumns({"Rank", "Count"});
    for (const ResultBin& bin : group.bins) {
      ranksOfField.AddRow(FigureMarkup(NumberText(bin.value)),
                          {FigureMarkup(NumberText(bin.count))});
    }
    plot.values += ranksOfField.Markup("figures");
    base += kStep;
  }
  plot.description.back() = '.';
  DrawAxisBelow(plot.drawing, across, bottom, "Rank");
  plot.height = bottom + 44.0;
  plot.note = "Bars: how often the field had the rank. Diamond: mean rank.";
  return plot;
}

std::optional<Plot> IntervalPlot(const ResultDocument& document, const ResultTest& test) {
  std::vector<double> values;
  for (const ResultInterval& interval : test.intervals) {
    for (const std::string* text : {&interval.estimate, &interval.lower, &interval.upper}) {
      values.push_back(Finite(*text).value_or(NAN));
    }
  }
  if (std::ranges::none_of(values, [](double value) { return std::isfinite(value); })) {
    return std::nullopt;
  }
  constexpr double kStep = 44.0;
  const bool isShift = test.classification != "One_Sample";
  if (isShift) values.push_back(0.0);
  Plot plot;
  plot.kind = "intervals";
  plot.title = "Estimates with their confidence intervals";
  const Scale across = ScaleOver(values, kLeft, kRight - 4.0);
  const double bottom = kTop + kStep * static_cast<double>(test.intervals.size());
  if (isShift) plot.drawing.Line(across(0.0), kTop, across(0.0), bottom, "marker dashed");
  double y = kTop + kStep / 2.0;
  for (const ResultInterval& interval : test.intervals) {
    const std::string name =
        interval.method.empty() ? "Hodges-Lehmann" : FigureLabel(interval.method);
    plot.drawing.Name(kLabelEnd, y + 4.0, "end", name, kLabelRoom);
    const auto lower = Finite(interval.lower);
    const auto upper = Finite(interval.upper);
    if (lower && upper) {
      plot.drawing.Line(across(*lower), y, across(*upper), y, "whisker");
      plot.drawing.Line(across(*lower), y - 6.0, across(*lower), y + 6.0, "whisker");
      plot.drawing.Line(across(*upper), y - 6.0, across(*upper), y + 6.0, "whisker");
    }
    if (const auto estimate = Finite(interval.estimate)) {
      plot.drawing.Dot(across(*estimate), y, 5.0, "mark");
    }
    plot.description += " " + name + ": " + FigureText(interval.estimate) + ", from " +
                        FigureText(interval.lower) + " to " + FigureText(interval.upper) + ".";
    y += kStep;
  }
  plot.description.erase(0, 1);
  const auto titles = FieldTitles(document, test, 0);
  DrawAxisBelow(plot.drawing, across, bottom,
                isShift ? "Difference" : "Share in " + (titles.empty() ? "the field" : titles[0]));
  plot.height = bottom + 44.0;
  if (isShift) plot.note = "Dashed line: no difference.";
  return plot;
}

std::optional<Plot> RunsPlot(const ResultTest& test) {
  if (test.name != catalogue::runs::kCard.element) return std::nullopt;
  const auto mean = Finite(FindText(test.details, "Mean"));
  const auto deviation = Finite(FindText(test.details, "StdDev"));
  const auto observed = Finite(FindText(test.details, "ObservedRunNumber"));
  if (!mean || !deviation || !observed || !(*deviation > 0.0)) return std::nullopt;
  constexpr double kLine = 80.0;
  constexpr double kBottom = 120.0;
  constexpr double kWidest = 3.5;  // standard deviations shown of the expected distribution
  Plot plot;
  plot.kind = "runs";
  plot.title = "Observed runs and those expected of a random order";
  plot.description = "Observed " + FigureText(FindText(test.details, "ObservedRunNumber")) +
                     "; expected " + FigureText(FindText(test.details, "Mean")) +
                     " with a standard deviation of " +
                     FigureText(FindText(test.details, "StdDev")) + ".";
  const Scale across = ScaleOver(
      {*mean - kWidest * *deviation, *mean + kWidest * *deviation, *observed}, 24.0, kRight);
  std::vector<std::pair<double, double>> curve;
  for (int i = -35; i <= 35; ++i) {
    const double z = i / 10.0;
    curve.emplace_back(across(*mean + z * *deviation),
                       kBottom - 84.0 * arithmetic::Exp(-z * z / 2.0));
  }
  plot.drawing.Polyline(curve, "second line dashed");
  plot.drawing.Line(across(*mean), kBottom - 84.0, across(*mean), kBottom, "grid");
  plot.drawing.Line(across(*observed), kLine - 48.0, across(*observed), kBottom, "marker");
  plot.drawing.Diamond(across(*observed), kBottom, 6.0, "mark");
  const bool isRight = across(*observed) > kPlotWidth / 2.0;
  plot.drawing.Text(
      across(*observed) + (isRight ? -8.0 : 8.0), kLine - 38.0, isRight ? "end" : "start",
      "observed " + FigureText(FindText(test.details, "ObservedRunNumber")), "value halo");
  DrawAxisBelow(plot.drawing, across, kBottom, "Number of runs");
  plot.height = kBottom + 44.0;
  plot.note = "Dashed curve: the normal distribution that the significance is taken from.";
  return plot;
}

}  // namespace npar_host
