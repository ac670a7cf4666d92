#include "tests/one_sample/ks_one_sample.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "catalogue/cards/ks_one_sample.h"
#include "kit/statistics/kolmogorov_smirnov.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

using Family = ReferenceDistribution::Family;

constexpr std::int32_t kNoData = 220003;               // no valid value, normal or Poisson
constexpr std::int32_t kNoSuchVariable = 220303;       // no field in the entry, or no such field
constexpr std::int32_t kNotContinuous = 220304;        // the field is not continuous
constexpr std::int32_t kExponentialFailed = 220305;    // an exponential was out of range
constexpr std::int32_t kLargePoissonMean = 220309;     // help: the normal takes over
constexpr std::int32_t kNoValidUniform = 220310;       // no valid value, uniform
constexpr std::int32_t kUniformExcluded = 220311;      // warning: values left out, uniform
constexpr std::int32_t kNoPoisson = 220312;            // mean not above 0, or a value is no count
constexpr std::int32_t kNoExponential = 220313;        // mean not above 0, or no valid value
constexpr std::int32_t kExponentialExcluded = 220314;  // warning: values left out, exponential
constexpr std::int32_t kNoNormal = 220315;             // standard deviation not above 0
constexpr std::int32_t kEmptyUniform = 220316;         // the range has no width

constexpr double kLowestStart = std::numeric_limits<double>::lowest();
constexpr double kHighestStart = std::numeric_limits<double>::max();

constexpr std::size_t kStepsAtOnce = 1024;
/// Up to so many steps are taken as they are: bounding them costs as much.
constexpr std::size_t kFewSteps = 4;
/// Far above what rounding does to a distribution function, so that no step that decides an extreme
/// is passed over.
constexpr double kRoundingMargin = 1e-12;

bool IsMissing(double value) { return value == QDMV::gMissingValue; }

/// A difference that no value has touched is 0.
double DifferenceOf(double value, double start) { return value == start ? 0.0 : value; }

}  // namespace

QDStatus NPARKSmirnowOneSample::BeginPass() {
  if (pass == 0) {
    ReadSettings();
    AskForEstimates();
    if (status.IsOK()) passesLeft = 2;
    return status;
  }
  if (status.IsError()) return status;
  if (estimateMean) distribution.mean = estimator->GetMean();
  if (estimateStdDev) distribution.stdDev = estimator->GetStdDev();
  if (estimateRange) {
    minimum = estimator->GetMinimum();
    maximum = estimator->GetMaximum();
  }
  distribution.minimum = minimum;
  distribution.maximum = maximum;
  CheckParameters();
  if (status.IsOK()) passesLeft = 1;
  return status;
}

void NPARKSmirnowOneSample::ReadSettings() {
  std::string word;
  static_cast<void>(settings->GetSettingValByName("distributionFunction", word));
  distribution.SetFamily(word);
  static_cast<void>(settings->GetSettingValByName("variableIndex", variableIndex));
  weight = RecordWeight(*settings);
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  static_cast<void>(settings->GetSettingValByName("min", minimum));
  static_cast<void>(settings->GetSettingValByName("max", maximum));
  static_cast<void>(settings->GetSettingValByName("mean", distribution.mean));
  static_cast<void>(settings->GetSettingValByName("stdDev", distribution.stdDev));
  distribution.minimum = minimum;
  distribution.maximum = maximum;
}

void NPARKSmirnowOneSample::AskForEstimates() {
  estimator.emplace(variableIndex, weight.Index());
  const auto ask = [this](Statistic statistic) {
    static_cast<void>(estimator->AddStatistic(static_cast<std::int32_t>(statistic)));
  };
  if (distribution.family != Family::Uniform && IsMissing(distribution.mean)) {
    estimateMean = true;
    ask(Statistic::Mean);
  }
  if (distribution.family == Family::Normal && IsMissing(distribution.stdDev)) {
    estimateStdDev = true;
    ask(Statistic::MeanStdDev);
  }
  // The empirical distribution function needs the range for every family.
  if (IsMissing(minimum) || IsMissing(maximum)) {
    estimateRange = true;
    ask(Statistic::Maximum);
    ask(Statistic::Minimum);
  }
}

void NPARKSmirnowOneSample::CheckParameters() {
  const auto fail = [this](std::int32_t code) { ReportStatus(QDStatus(code), MessageKind::Error); };
  switch (distribution.family) {
    case Family::Uniform:
      if (QDPower::AlmostEqual(minimum, maximum, QDPower::gMachineEpsilon)) fail(kEmptyUniform);
      break;
    case Family::Poisson:
      if (!(distribution.mean > 0.0)) {
        fail(kNoPoisson);
      } else if (distribution.mean >= ReferenceDistribution::kLargePoissonMean) {
        distribution.UseNormalForPoisson();
        ReportStatus(QDStatus(kLargePoissonMean), MessageKind::Help);
      }
      break;
    case Family::Normal:
      if (!(distribution.stdDev > 0.0)) fail(kNoNormal);
      break;
    case Family::Exponential:
      if (!(distribution.mean > 0.0)) fail(kNoExponential);
      break;
  }
}

bool NPARKSmirnowOneSample::IsGivenUniform() const noexcept {
  return distribution.family == Family::Uniform && !estimateRange;
}

bool NPARKSmirnowOneSample::ValidateValue(double x, std::int64_t w) {
  switch (distribution.family) {
    case Family::Uniform:
      if (!IsGivenUniform() || !(x > maximum || x < minimum)) return true;
      break;
    case Family::Poisson:
      if (x >= 0.0 && QDPower::AlmostEqual(x, std::trunc(x), QDPower::gMachineEpsilon)) return true;
      if (pass == 0) {
        AddMessage({QDStatus(kNoPoisson), MessageKind::Error, {NumberText(x), IntegerText(w)}, {}});
      }
      break;
    case Family::Normal:
      return true;
    case Family::Exponential:
      if (!(x < 0.0)) return true;
      break;
  }
  if (pass == 0) excludedWeight += w;
  return false;
}

bool NPARKSmirnowOneSample::AreValid(const double* values, std::size_t count) const noexcept {
  if (count == 0) return true;
  const double first = values[0];
  const double last = values[count - 1];
  if (!(first <= last)) return false;  // one is not a number
  switch (distribution.family) {
    case Family::Uniform:
      return !IsGivenUniform() || (first >= minimum && last <= maximum);
    case Family::Normal:
      return true;
    case Family::Exponential:
      return first >= 0.0;
    case Family::Poisson:
      break;
  }
  return false;
}

QDStatus NPARKSmirnowOneSample::ProcessBatch(RecordBatch& batch) {
  if (pass == 0) {
    Estimate(batch);
    return status;
  }
  const double* values = batch.Of(variableIndex);
  if (weight.Index() < 0 && TakeInside(values, batch.Size())) return status;
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      if (ValidateValue(values[i], weightAt(i))) TakeValue(values[i], weightAt(i));
    }
  });
  return status;
}

void NPARKSmirnowOneSample::Estimate(RecordBatch& batch) {
  const double* values = batch.Of(variableIndex);
  if (AreValid(values, batch.Size())) {
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) totalN += weightAt(i);
    });
    estimator->ProcessBatch(batch);
    return;
  }
  isInvalid.assign(batch.Size(), 1);
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t i = 0; i < batch.Size() && !status.IsError(); ++i) {
      if (!ValidateValue(values[i], weightAt(i))) continue;
      totalN += weightAt(i);
      isInvalid[i] = 0;
    }
  });
  estimator->ProcessBatch(validRecords.Select(batch, isInvalid));
}

bool NPARKSmirnowOneSample::TakeInside(const double* values, std::size_t count) {
  if (count == 0 || IsMissing(previousValue) || !AreValid(values, count)) return false;
  const double last = values[count - 1];
  if (!(previousValue <= values[0] && previousValue < last)) return false;
  TakeSteps();
  // The step of the value before, which waits for its last tie, is bounded with them.
  const double cdfBefore =
      boundedValue == previousValue ? boundedCdf : distribution.RoughCdf(previousValue);
  boundedValue = last;
  boundedCdf = distribution.RoughCdf(last);
  const std::int64_t weightUpTo = cumulative + static_cast<std::int64_t>(count);
  if (!CannotBeExtreme(previousEmpirical - boundedCdf, EmpiricalAt(last, weightUpTo) - cdfBefore)) {
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

void NPARKSmirnowOneSample::TakeValue(double x, std::int64_t w) {
  if (w < 0) hasNegativeWeight = true;
  if (IsMissing(previousValue)) previousValue = x;
  if (previousValue == x && cumulative < totalN) {
    tieWeight += w;
    cumulative += w;
  } else {
    StepDifferences();
    cumulative += w;
    tieWeight = w;
    previousValue = x;
  }
}

double NPARKSmirnowOneSample::EmpiricalAt(double x, std::int64_t weightUpTo) const {
  if (minimum > x) return 0.0;
  if (!(x < maximum)) return 1.0;
  return static_cast<double>(weightUpTo == 0 ? 1 : weightUpTo) / static_cast<double>(totalN);
}

void NPARKSmirnowOneSample::StepDifferences() {
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
  TakeDifference(before);
  TakeDifference(EmpiricalAt(x, cumulative) - distribution.Cdf(x));
}

void NPARKSmirnowOneSample::TakeSteps() {
  if (steps.empty()) return;
  TakeSteps(0, steps.size());
  previousEmpirical = EmpiricalAt(steps.back().x, steps.back().weightUpTo);
  steps.clear();
}

void NPARKSmirnowOneSample::TakeSteps(std::size_t begin, std::size_t end) {
  const auto empiricalUpTo = [this](std::size_t place) {
    if (place == 0) return previousEmpirical;
    return EmpiricalAt(steps[place - 1].x, steps[place - 1].weightUpTo);
  };
  if (end - begin > kFewSteps && !hasNegativeWeight) {
    // Both functions ascend, so their ends bound every difference between.
    const double highest = empiricalUpTo(end) - distribution.RoughCdf(steps[begin].x);
    const double lowest = empiricalUpTo(begin) - distribution.RoughCdf(steps[end - 1].x);
    if (CannotBeExtreme(lowest, highest)) return;
    const std::size_t middle = begin + (end - begin) / 2;
    TakeSteps(begin, middle);
    TakeSteps(middle, end);
    return;
  }
  for (std::size_t i = begin; i < end; ++i) {
    const double theoretical = distribution.Cdf(steps[i].x);
    TakeDifference(empiricalUpTo(i) - theoretical);
    TakeDifference(empiricalUpTo(i + 1) - theoretical);
  }
}

bool NPARKSmirnowOneSample::CannotBeExtreme(double lowest, double highest) const noexcept {
  return highest <= std::max(positiveDiff, 0.0) - kRoundingMargin &&
         lowest >= std::min(negativeDiff, 0.0) + kRoundingMargin;
}

void NPARKSmirnowOneSample::TakeDifference(double difference) {
  absoluteDiff = std::max(absoluteDiff, std::abs(difference));
  if (difference > 0.0) positiveDiff = std::max(positiveDiff, difference);
  if (difference < 0.0) negativeDiff = std::min(negativeDiff, difference);
}

QDStatus NPARKSmirnowOneSample::EndPass() {
  if (status.IsError()) return status;
  if (pass == 0) {
    if (const QDStatus estimated = estimator->EndPass(); estimated.IsError()) {
      ReportStatus(estimated, MessageKind::Error);
    }
    if (totalN == 0) {
      ReportStatus(QDStatus(distribution.family == Family::Uniform       ? kNoValidUniform
                            : distribution.family == Family::Exponential ? kNoExponential
                                                                         : kNoData),
                   MessageKind::Error);
    }
    return status;
  }
  StepDifferences();
  TakeSteps();
  testStatistic = std::sqrt(static_cast<double>(totalN)) * absoluteDiff;
  if (!KolmogorovSmirnovSig(testStatistic, sig)) {
    ReportStatus(QDStatus(kExponentialFailed), MessageKind::Error);
  }
  passesLeft = 0;
  return status;
}

void NPARKSmirnowOneSample::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.push_back(variableIndex);
}

XMLElement* NPARKSmirnowOneSample::WriteResults() {
  auto algorithm = CreateAlgorithm("OKolmogorovSmirnov", "hypothesis_test", "One_Sample",
                                   DecisionWord(status, sigLevel, sig));
  const std::string index = IntegerText(variableIndex);
  const std::string mean = NumberOrMissingText(distribution.mean);
  switch (distribution.family) {
    case Family::Uniform:
      AddCondition(*algorithm, "UniformDistribution_O_KolmogorovSmirnov_3",
                   {index, NumberOrMissingText(minimum), NumberOrMissingText(maximum)});
      break;
    case Family::Poisson:
      AddCondition(*algorithm, "PoissonDistribution_O_KolmogorovSmirnov_2", {index, mean});
      break;
    case Family::Normal:
      AddCondition(*algorithm, "NormalDistribution_O_KolmogorovSmirnov_3",
                   {index, mean, NumberOrMissingText(distribution.stdDev)});
      break;
    case Family::Exponential:
      AddCondition(*algorithm, "ExponentialDistribution_O_KolmogorovSmirnov_2", {index, mean});
      break;
  }
  if (excludedWeight != 0 && totalN != 0 && !distribution.IsPoisson()) {
    AddMessage(
        {QDStatus(distribution.family == Family::Uniform ? kUniformExcluded : kExponentialExcluded),
         MessageKind::Warning,
         {IntegerText(excludedWeight)},
         {}});
  }
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", totalN + excludedWeight);
  XMLElement* differences = AddStructuredTable(*statistics, "MostExtremeDifferences");
  AddAttributeRow(*differences, "Absolute", DifferenceOf(absoluteDiff, kLowestStart));
  AddAttributeRow(*differences, "Positive", DifferenceOf(positiveDiff, kLowestStart));
  AddAttributeRow(*differences, "Negative", DifferenceOf(negativeDiff, kHighestStart));
  AddAttributeRow(*statistics, "TestStatistic", testStatistic);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", sig);
  return algorithm.release();
}

namespace {

std::unique_ptr<NPARTest> ConstructKSOneSampleTest(TestConstruction& construction,
                                                   const char* distributionName) {
  construction.Put("distributionFunction", distributionName);
  const std::int32_t index =
      construction.LookUpVariable("variableName", kNoSuchVariable, kNoSuchVariable);
  if (construction.ReadFlag("isUseSample")) {
    construction.Put("mean", QDMV::gMissingValue);
    construction.Put("stdDev", QDMV::gMissingValue);
  } else {
    for (const char* key : {"max", "min", "stdDev", "mean"}) {
      double value = 0.0;
      if (construction.Read(key, value)) construction.Put(key, value);
    }
  }
  construction.Put("variableIndex", index);
  if (construction.IsOK()) {
    if (construction.KindOf(index) == VariableKind::Continuous) {
      construction.Put("measureLevel", 1.0);
      construction.Planner().RegisterSortedVariable(index);
    } else {
      construction.Fail(kNotContinuous);
    }
  }
  construction.SortBy(index);
  return construction.Make<NPARKSmirnowOneSample>();
}

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::ks_one_sample::kNormal>(
    TestConstruction& construction) {
  return ConstructKSOneSampleTest(construction, "normal");
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::ks_one_sample::kUniform>(
    TestConstruction& construction) {
  return ConstructKSOneSampleTest(construction, "uniform");
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::ks_one_sample::kPoisson>(
    TestConstruction& construction) {
  return ConstructKSOneSampleTest(construction, "poisson");
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::ks_one_sample::kExponential>(
    TestConstruction& construction) {
  return ConstructKSOneSampleTest(construction, "exponential");
}
