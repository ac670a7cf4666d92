#include "tests/one_sample/fitted_distribution.h"

#include <cmath>

#include "catalogue/cards/ks_one_sample.h"

namespace card = catalogue::ks_one_sample;

FittedDistribution::FittedDistribution(const SettingsReader& settings, std::int32_t variable,
                                       std::int32_t weightVariable)
    : estimator(variable, weightVariable) {
  SetFamily(settings.Text("distributionFunction"));
  settings.Find(card::kMinimum.key, minimum);
  settings.Find(card::kMaximum.key, maximum);
  settings.Find(card::kMean.key, mean);
  settings.Find(card::kStdDev.key, stdDev);
  const auto isMissing = [](double value) { return value == QDMV::gMissingValue; };
  const auto ask = [this](Statistic statistic) {
    static_cast<void>(estimator.AddStatistic(static_cast<std::int32_t>(statistic)));
  };
  if (family != Family::Uniform && isMissing(mean)) {
    estimateMean = true;
    ask(Statistic::Mean);
  }
  if (family == Family::Normal && isMissing(stdDev)) {
    estimateStdDev = true;
    ask(Statistic::MeanStdDev);
  }
  // The empirical distribution function needs the range for every family.
  if (isMissing(minimum) || isMissing(maximum)) {
    estimateRange = true;
    ask(Statistic::Maximum);
    ask(Statistic::Minimum);
  }
}

bool FittedDistribution::Takes(double x) const noexcept {
  switch (family) {
    case Family::Uniform:
      return estimateRange || !(x > maximum || x < minimum);
    case Family::Poisson:
      return x >= 0.0 && QDPower::AlmostEqual(x, std::trunc(x), QDPower::gMachineEpsilon);
    case Family::Normal:
      break;
    case Family::Exponential:
      return !(x < 0.0);
  }
  return true;
}

bool FittedDistribution::TakesAll(const double* values, std::size_t count) const noexcept {
  if (count == 0) return true;
  const double first = values[0];
  const double last = values[count - 1];
  // Of counts, the ends tell nothing; ends that do not compare are not a number.
  return !IsPoisson() && first <= last && Takes(first) && Takes(last);
}

void FittedDistribution::UseEstimates() {
  if (estimateMean) mean = estimator.GetMean();
  if (estimateStdDev) stdDev = estimator.GetStdDev();
  if (estimateRange) {
    minimum = estimator.GetMinimum();
    maximum = estimator.GetMaximum();
  }
}

bool FittedDistribution::IsGiven() const noexcept {
  switch (family) {
    case Family::Normal:
      return !estimateMean && !estimateStdDev;
    case Family::Uniform:
      return !estimateRange;
    case Family::Exponential:
      return !estimateMean;
    case Family::Poisson:
      break;
  }
  return false;
}

bool FittedDistribution::IsEstimated() const noexcept {
  if (family == Family::Normal) return estimateMean && estimateStdDev;
  return family == Family::Exponential && estimateMean;
}
