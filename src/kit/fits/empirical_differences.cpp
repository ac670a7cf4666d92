#include "kit/fits/empirical_differences.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kStepsAtOnce = 1024;
/// Up to so many steps are taken as they are: bounding them costs as much.
constexpr std::size_t kFewSteps = 4;
/// Far above what rounding does to a distribution function, so that no step that decides an extreme
/// is passed over.
constexpr double kRoundingMargin = 1e-12;
/// Sizes no further apart are the same but for rounding.
constexpr double kAlike = 1e-12;

}  // namespace

void ExtremeDifferences::TakeSize(const Place& place) {
  if (!(place.size > absolute)) return;
  absolute = place.size;
  // Values ascend, and of those that are alike the first counts.
  std::erase_if(places, [this](const Place& each) { return !(each.size > absolute - kAlike); });
  places.push_back(place);
}

void ExtremeDifferences::Take(double difference, double x) {
  TakeSize({x, std::abs(difference)});
  positive = std::max(positive, difference);
  negative = std::min(negative, difference);
}

void ExtremeDifferences::Append(const ExtremeDifferences& next) {
  for (const Place& place : next.places) TakeSize(place);
  positive = std::max(positive, next.positive);
  negative = std::min(negative, next.negative);
}

bool ExtremeDifferences::Hold(double lowest, double highest) const noexcept {
  return highest <= positive - kRoundingMargin && lowest >= negative + kRoundingMargin;
}

std::optional<double> ExtremeDifferences::Location() const {
  if (!(absolute > 0.0) || places.empty()) return std::nullopt;
  return places.front().x;
}

EmpiricalDifferences::EmpiricalDifferences(const ReferenceDistribution& distribution,
                                           std::int64_t totalWeight, std::int64_t weightBefore)
    : distribution(distribution), totalWeight(totalWeight), cumulative(weightBefore) {
  if (weightBefore == 0) return;
  previousEmpirical = static_cast<double>(weightBefore) / static_cast<double>(totalWeight);
}

double EmpiricalDifferences::EmpiricalAt(double x, std::int64_t weightUpTo) const {
  if (distribution.minimum > x) return 0.0;
  if (!(x < distribution.maximum)) return 1.0;
  return static_cast<double>(weightUpTo == 0 ? 1 : weightUpTo) / static_cast<double>(totalWeight);
}

bool EmpiricalDifferences::PassOver(const double* values, std::size_t count) {
  if (count == 0 || previousValue == QDMV::gMissingValue) return false;
  const double last = values[count - 1];
  if (!(previousValue <= values[0] && previousValue < last)) return false;
  TakeSteps();
  // The step of the value before, which waits for its last tie, is bounded with them.
  const double cdfBefore =
      boundedValue == previousValue ? boundedCdf : distribution.RoughCdf(previousValue);
  boundedValue = last;
  boundedCdf = distribution.RoughCdf(last);
  const std::int64_t weightUpTo = cumulative + static_cast<std::int64_t>(count);
  if (!extremes.Hold(previousEmpirical - boundedCdf, EmpiricalAt(last, weightUpTo) - cdfBefore)) {
    return false;
  }
  std::size_t place = count - 1;  // of the first value of the last tie
  while (place > 0 && values[place - 1] == last) --place;
  previousEmpirical = EmpiricalAt(place > 0 ? values[place - 1] : previousValue,
                                  cumulative + static_cast<std::int64_t>(place));
  previousValue = values[place];
  tieWeight = static_cast<std::int64_t>(count - place);
  cumulative = weightUpTo;
  return true;
}

void EmpiricalDifferences::EndStep() {
  const double x = previousValue;
  if (!distribution.IsPoisson()) {
    steps.push_back({x, cumulative});
    if (steps.size() == kStepsAtOnce) TakeSteps();
    return;
  }
  double before = 0.0;
  if (x != 0.0) {
    before = EmpiricalAt(x - 1.0, cumulative - tieWeight) - distribution.Cdf(x - 1.0);
  }
  extremes.Take(before, x - 1.0);
  extremes.Take(EmpiricalAt(x, cumulative) - distribution.Cdf(x), x);
}

void EmpiricalDifferences::Finish() {
  EndStep();
  TakeSteps();
}

void EmpiricalDifferences::TakeSteps() {
  if (steps.empty()) return;
  TakeSteps(0, steps.size());
  previousEmpirical = EmpiricalAt(steps.back().x, steps.back().weightUpTo);
  steps.clear();
}

void EmpiricalDifferences::TakeSteps(std::size_t begin, std::size_t end) {
  const auto empiricalUpTo = [this](std::size_t place) {
    if (place == 0) return previousEmpirical;
    return EmpiricalAt(steps[place - 1].x, steps[place - 1].weightUpTo);
  };
  if (end - begin > kFewSteps && !hasNegativeWeight) {
    // Both functions ascend, so their ends bound every difference between.
    const double highest = empiricalUpTo(end) - distribution.RoughCdf(steps[begin].x);
    const double lowest = empiricalUpTo(begin) - distribution.RoughCdf(steps[end - 1].x);
    if (extremes.Hold(lowest, highest)) return;
    const std::size_t middle = begin + (end - begin) / 2;
    TakeSteps(begin, middle);
    TakeSteps(middle, end);
    return;
  }
  for (std::size_t i = begin; i < end; ++i) {
    const double theoretical = distribution.Cdf(steps[i].x);
    extremes.Take(empiricalUpTo(i) - theoretical, steps[i].x);
    extremes.Take(empiricalUpTo(i + 1) - theoretical, steps[i].x);
  }
}
