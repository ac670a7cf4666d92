#include "host/render/html/profile_plot.h"

#include <algorithm>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "host/data/join_words.h"
#include "host/render/html/value_marks.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

using namespace catalogue;

constexpr double kLeft = 48.0;
constexpr double kRight = kPlotWidth - 12.0;
constexpr double kTop = 12.0;
constexpr double kBottom = 230.0;
constexpr double kHalfBox = 9.0;
constexpr std::size_t kMostFields = 12;

bool ComparesMeasurements(const ResultTest& test) {
  return test.name == sign::kCard.element || test.name == wilcoxon_pairs::kCard.element ||
         test.name == friedman::kCard.element || test.name == kendall_w::kCard.element;
}

// The lines of the records, by where the second value lies to the first.
struct Slopes {
  std::vector<Drawing::Points> up, down, even;
};

void Describe(Plot& plot, const std::vector<std::string>& titles, const Slopes& slopes) {
  const std::string& first = titles.front();
  const std::string& second = titles.back();
  const auto count = [](const auto& lines) { return std::to_string(lines.size()); };
  plot.title = "Each record from " + first + " to " + second;
  plot.description = "In " + count(slopes.up) + " records " + second + " is above " + first +
                     ", in " + count(slopes.down) + " below, in " + count(slopes.even) +
                     " the same.";
  plot.note = "A line is a record, in the one colour where " + second + " is above " + first +
              ", in the other where it is below.";
}

void DrawBoxes(Drawing& drawing, const ResultTest& test, const std::vector<double>& places,
               const Scale& up) {
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto quartiles = SampleQuartiles(test, i);
    if (!quartiles) continue;
    const double left = places[i] - kHalfBox;
    const auto [lower, median, upper] = *quartiles;
    drawing.Box(left, up(upper), 2.0 * kHalfBox, up(lower) - up(upper), "box");
    drawing.Line(left, up(median), left + 2.0 * kHalfBox, up(median), "median");
  }
}

}  // namespace

std::optional<Plot> ProfilePlot(const ResultDocument& document, const ResultTest& test) {
  if (!ComparesMeasurements(test)) return std::nullopt;
  std::vector<std::size_t> fields = test.ConditionFields(0, document.fields.size());
  for (const std::size_t field : test.ConditionFields(1, document.fields.size())) {
    fields.push_back(field);
  }
  if (fields.size() < 2 || fields.size() > kMostFields) return std::nullopt;
  const std::vector<std::vector<double>> records = CompleteRecords(document, fields);
  if (records.empty()) return std::nullopt;
  std::vector<double> values;
  for (const auto& record : records) values.insert(values.end(), record.begin(), record.end());
  const Scale up = ScaleOver(values, kBottom, kTop);
  const double step = (kRight - kLeft) / static_cast<double>(fields.size());
  std::vector<double> places;
  std::vector<std::string> titles;
  for (const std::size_t field : fields) {
    places.push_back(kLeft + step * (static_cast<double>(places.size()) + 0.5));
    titles.push_back(document.fields[field].Title());
  }
  const bool isPair = fields.size() == 2;
  Slopes slopes;
  Drawing::Points dots;
  for (const auto& record : records) {
    Drawing::Points line;
    for (std::size_t i = 0; i < record.size(); ++i) line.emplace_back(places[i], up(record[i]));
    dots.insert(dots.end(), line.begin(), line.end());
    const bool isUp = isPair && record[1] > record[0];
    const bool isDown = isPair && record[1] < record[0];
    (isUp ? slopes.up : isDown ? slopes.down : slopes.even).push_back(std::move(line));
  }
  Plot plot;
  plot.kind = "profiles";
  plot.title = "Each record across the fields";
  plot.description = "A line for each record, from " + titles.front() + " to " + titles.back() +
                     "; the table has the medians.";
  plot.note = "A line is a record.";
  if (isPair) Describe(plot, titles, slopes);
  DrawAxisLeft(plot.drawing, up, kLeft, kRight, false);
  plot.drawing.Lines(slopes.even, "slope");
  plot.drawing.Lines(slopes.down, "slope down");
  plot.drawing.Lines(slopes.up, "slope up");
  plot.drawing.Dots(dots, "values");
  DrawBoxes(plot.drawing, test, places, up);
  plot.drawing.Line(kLeft, kBottom, kRight, kBottom, "axis");
  const std::size_t shared = SharedBeginning(titles);
  for (std::size_t i = 0; i < titles.size(); ++i) {
    plot.drawing.Name(places[i], kBottom + 18.0, "middle", titles[i], step - 6.0, "name", shared);
  }
  plot.height = kBottom + 28.0;
  plot.note += SampleQuartiles(test, 0) ? " Boxes: quartiles and medians." : "";
  return plot;
}

}  // namespace npar_host
