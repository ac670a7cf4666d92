#include "kit/fits/fitted_distribution.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/ks_one_sample.h"
#include "catalogue/run.h"

namespace card = catalogue::ks_one_sample;

FittedDistribution::FittedDistribution(const ReferenceDistribution& given)
    : ReferenceDistribution(given) {
  const auto isMissing = [](double value) { return value == QDMV::gMissingValue; };
  estimateMean = family != Family::Uniform && isMissing(mean);
  estimateStdDev = family == Family::Normal && isMissing(stdDev);
  estimateRange = isMissing(minimum) || isMissing(maximum);
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

FittedDistribution::Part FittedDistribution::TakenOf(
    std::span<const double> values) const noexcept {
  if (TakesAll(values.data(), values.size())) return {0, values.size()};
  const auto isTaken = [this](double x) { return Takes(x); };
  const auto begin = std::ranges::find_if(values, isTaken);
  const auto end = std::find_if_not(begin, values.end(), isTaken);
  return {static_cast<std::size_t>(begin - values.begin()),
          static_cast<std::size_t>(end - values.begin())};
}

void FittedDistribution::UseEstimates(const Estimates& estimates) {
  if (estimateMean) mean = estimates.mean;
  if (estimateStdDev) stdDev = estimates.stdDev;
  if (estimateRange) {
    minimum = estimates.minimum;
    maximum = estimates.maximum;
  }
  if (IsPoisson() && mean >= kLargePoissonMean) UseNormalForPoisson();
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

std::int32_t FittedDistribution::CodeWithoutValues() const noexcept {
  switch (family) {
    case Family::Uniform:
      return card::kNoValidUniform;
    case Family::Exponential:
      return card::kNoExponential;
    case Family::Poisson:
    case Family::Normal:
      break;
  }
  return catalogue::run::kNoData;
}

std::optional<std::int32_t> FittedDistribution::CodeAgainst() const noexcept {
  // Of infinite values no parameter is a number that a distribution could have.
  const auto isPositive = [](double x) { return x > 0.0 && std::isfinite(x); };
  switch (family) {
    case Family::Uniform:
      if (QDPower::AlmostEqual(minimum, maximum, QDPower::gMachineEpsilon) ||
          !std::isfinite(maximum - minimum)) {
        return card::kEmptyUniform;
      }
      break;
    case Family::Poisson:
      if (!isPositive(mean)) return card::kNoPoisson;
      break;
    case Family::Normal:
      if (!isPositive(stdDev)) return card::kNoNormal;
      break;
    case Family::Exponential:
      if (!isPositive(mean)) return card::kNoExponential;
      break;
  }
  return std::nullopt;
}

std::int32_t FittedDistribution::CodeOfExcluded() const noexcept {
  return family == Family::Uniform ? card::kUniformExcluded : card::kExponentialExcluded;
}

std::string_view FittedDistribution::ConditionKey() const noexcept {
  switch (family) {
    case Family::Uniform:
      return "UniformDistribution_O_KolmogorovSmirnov_3";
    case Family::Poisson:
      return "PoissonDistribution_O_KolmogorovSmirnov_2";
    case Family::Normal:
      break;
    case Family::Exponential:
      return "ExponentialDistribution_O_KolmogorovSmirnov_2";
  }
  return "NormalDistribution_O_KolmogorovSmirnov_3";
}

std::vector<double> FittedDistribution::Parameters() const {
  if (family == Family::Uniform) return {minimum, maximum};
  if (family == Family::Normal) return {mean, stdDev};
  return {mean};
}
