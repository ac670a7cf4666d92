#include "host/render/html/cumulative_plots.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "arithmetic/elementary.h"
#include "catalogue/cards/ks_one_sample.h"
#include "catalogue/cards/ks_two_sample.h"
#include "host/render/html/markup.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr double kLeft = 48.0;
constexpr double kRight = kPlotWidth - 12.0;
constexpr double kTop = 34.0;
constexpr double kBottom = 214.0;
constexpr int kCurvePoints = 160;
constexpr double kMostPoissonMean = 1e5;  // more terms than a picture is worth

struct Step {
  double value = 0.0;
  double share = 0.0;  // of values up to this one
};

std::vector<Step> Steps(std::vector<ResultBin> bins) {
  std::erase_if(bins, [](const ResultBin& bin) { return !std::isfinite(bin.value); });
  std::ranges::stable_sort(bins, {}, &ResultBin::value);
  double total = 0.0;
  for (const ResultBin& bin : bins) total += bin.count;
  std::vector<Step> steps;
  double sum = 0.0;
  for (const ResultBin& bin : bins) {
    sum += bin.count;
    steps.push_back({bin.value, sum / total});
  }
  return steps;
}

double ShareUpTo(const std::vector<Step>& steps, double value) {
  double share = 0.0;
  for (const Step& step : steps) {
    if (step.value > value) break;
    share = step.share;
  }
  return share;
}

void DrawSteps(Drawing& drawing, const std::vector<Step>& steps, const Scale& across,
               const Scale& shares, std::string_view shapeClass) {
  std::vector<std::pair<double, double>> points{{across.from, shares(0.0)}};
  double share = 0.0;
  for (const Step& step : steps) {
    points.emplace_back(across(step.value), shares(share));
    points.emplace_back(across(step.value), shares(step.share));
    share = step.share;
  }
  points.emplace_back(across.to, shares(share));
  drawing.Polyline(points, shapeClass);
}

std::string Extreme(const ResultTest& test, std::string_view name) {
  for (const ResultStatistic& figure : test.statistics) {
    if (figure.group == "MostExtremeDifferences" && figure.name == name) {
      return FigureText(figure.text);
    }
  }
  return {};
}

double Parameter(const ResultTest& test, std::size_t position) {
  if (position >= test.conditionParameters.size()) return NAN;
  return FigureNumber(test.conditionParameters[position]).value_or(NAN);
}

double PoissonShare(double mean, double value) {
  if (mean > kMostPoissonMean) return NAN;
  double sum = 0.0;
  const double logarithmOfMean = arithmetic::Log(mean);
  const auto last = static_cast<std::int64_t>(std::clamp(value, -1.0, 10.0 * kMostPoissonMean));
  for (std::int64_t k = 0; k <= last; ++k) {
    const auto count = static_cast<double>(k);
    sum += arithmetic::Exp(count * logarithmOfMean - mean - arithmetic::LogGamma(count + 1.0));
  }
  return std::min(sum, 1.0);
}

// The hypothesised share of values up to `value`, to the precision of a picture; not a number where
// the condition does not tell it.
double HypothesisedShare(const ResultTest& test, double value) {
  const double first = Parameter(test, 1);
  const double second = Parameter(test, 2);
  if (test.conditionKey.starts_with("Uniform")) {
    return std::clamp((value - first) / (second - first), 0.0, 1.0);
  }
  if (test.conditionKey.starts_with("Poisson")) return PoissonShare(first, value);
  if (test.conditionKey.starts_with("Exponential")) {
    return value > 0.0 ? 1.0 - arithmetic::Exp(-value / first) : 0.0;
  }
  return 0.5 * arithmetic::Erfc((first - value) / (second * std::sqrt(2.0)));
}

}  // namespace

std::optional<Plot> TwoSampleFunctions(const ResultDocument& document, const ResultTest& test) {
  if (test.name != catalogue::ks_two_sample::kCard.element || test.groups.size() != 2)
    return std::nullopt;
  const std::vector<Step> first = Steps(test.groups[0].bins);
  const std::vector<Step> second = Steps(test.groups[1].bins);
  if (first.empty() || second.empty()) return std::nullopt;
  std::vector<double> values;
  values.reserve(first.size() + second.size());
  for (const Step& step : first) values.push_back(step.value);
  for (const Step& step : second) values.push_back(step.value);
  const auto titles = FieldTitles(document, test, 0);
  const std::string title = titles.empty() ? "the values" : titles[0];
  const std::string firstTitle = GroupTitle(document, test, test.groups[0]);
  const std::string secondTitle = GroupTitle(document, test, test.groups[1]);
  Plot plot;
  plot.kind = "functions";
  plot.title = "Distribution functions of " + title + " in two groups";
  plot.description = "The proportions of values up to each value in " + firstTitle +
                     " (solid) and " + secondTitle + " (dashed). Their greatest distance is " +
                     Extreme(test, "Absolute") + ".";
  const Scale across = ScaleOver(values, kLeft, kRight);
  const Scale shares{0.0, 1.0, kBottom, kTop};
  DrawAxisLeft(plot.drawing, shares, kLeft, kRight, false);
  double at = values[0];
  double distance = -1.0;
  for (const double value : values) {
    const double here = std::abs(ShareUpTo(first, value) - ShareUpTo(second, value));
    if (here > distance) {
      distance = here;
      at = value;
    }
  }
  plot.drawing.Line(across(at), shares(ShareUpTo(first, at)), across(at),
                    shares(ShareUpTo(second, at)), "marker thick");
  DrawSteps(plot.drawing, first, across, shares, "first line");
  DrawSteps(plot.drawing, second, across, shares, "second line dashed");
  const bool isRight = across(at) > kPlotWidth / 2.0;
  plot.drawing.Text(across(at) + (isRight ? -8.0 : 8.0),
                    shares((ShareUpTo(first, at) + ShareUpTo(second, at)) / 2.0) + 4.0,
                    isRight ? "end" : "start", "D = " + Extreme(test, "Absolute"), "value halo");
  plot.drawing.Line(kLeft, 14.0, kLeft + 24.0, 14.0, "first line");
  plot.drawing.Name(kLeft + 30.0, 18.0, "start", firstTitle, 140.0);
  plot.drawing.Line(kLeft + 180.0, 14.0, kLeft + 204.0, 14.0, "second line dashed");
  plot.drawing.Name(kLeft + 210.0, 18.0, "start", secondTitle, 175.0);
  DrawAxisBelow(plot.drawing, across, kBottom, title);
  plot.height = kBottom + 44.0;
  plot.note = "Drawn from the document's bins, which hold the values that the groups have.";
  return plot;
}

std::optional<Plot> OneSampleFunctions(const ResultDocument& document, const ResultTest& test) {
  if (test.name != catalogue::ks_one_sample::kNormal.element || test.Failed()) return std::nullopt;
  const auto fields = test.ConditionFields(0, document.fields.size());
  if (fields.empty()) return std::nullopt;
  const ResultField& field = document.fields[fields[0]];
  if (!field.distribution) return std::nullopt;
  const std::vector<Step> steps = Steps(field.distribution->bins);
  if (steps.empty() || !std::isfinite(HypothesisedShare(test, steps[0].value))) {
    return std::nullopt;
  }
  Plot plot;
  plot.kind = "functions";
  plot.title = "Distribution function of " + field.Title() + " and the hypothesised one";
  plot.description = "The proportions of values up to each value as observed (solid) and as " +
                     std::string("hypothesised (dashed). Their greatest distance is ") +
                     Extreme(test, "Absolute") + ".";
  std::vector<double> values;
  values.reserve(steps.size());
  for (const Step& step : steps) values.push_back(step.value);
  const Scale across = ScaleOver(values, kLeft, kRight);
  const Scale shares{0.0, 1.0, kBottom, kTop};
  DrawAxisLeft(plot.drawing, shares, kLeft, kRight, false);
  std::vector<std::pair<double, double>> curve;
  for (int i = 0; i <= kCurvePoints; ++i) {
    const double value = across.low + (across.high - across.low) * i / kCurvePoints;
    curve.emplace_back(across(value), shares(HypothesisedShare(test, value)));
  }
  DrawSteps(plot.drawing, steps, across, shares, "first line");
  plot.drawing.Polyline(curve, "second line dashed");
  plot.drawing.Line(kLeft, 14.0, kLeft + 24.0, 14.0, "first line");
  plot.drawing.Text(kLeft + 30.0, 18.0, "start", "observed", "name");
  plot.drawing.Line(kLeft + 110.0, 14.0, kLeft + 134.0, 14.0, "second line dashed");
  plot.drawing.Text(kLeft + 140.0, 18.0, "start", "hypothesised", "name");
  plot.drawing.Text(kRight, 18.0, "end", "D = " + Extreme(test, "Absolute"), "value");
  DrawAxisBelow(plot.drawing, across, kBottom, field.Title());
  plot.height = kBottom + 44.0;
  return plot;
}

}  // namespace npar_host
