#include "catalogue/cards/ks_one_sample.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "catalogue/run.h"
#include "kit/contract/test.h"
#include "kit/records/record_batch.h"
#include "kit/statistics/kolmogorov_exact.h"
#include "kit/statistics/kolmogorov_smirnov.h"
#include "kit/statistics/lilliefors.h"
#include "kit/statistics/reference_distribution.h"
#include "kit/summaries/univariate.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "tests/one_sample/empirical_differences.h"

namespace card = catalogue::ks_one_sample;

using Family = ReferenceDistribution::Family;

namespace {

/// One-sample Kolmogorov-Smirnov test: does a continuous field follow a normal, uniform, Poisson or
/// exponential distribution, with parameters given or estimated from the sample?
///
/// Formulas, limits, sources: docs/statistics/ks_one_sample.md.
///
/// Two passes over the records ascending by the field: validation and estimation, then the
/// differences. Values that the distribution cannot take are warned of (220311, 220314, with their
/// weight), also by a test that fails later.
class NPARKSmirnowOneSample final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override {
    if (excludedWeight != 0 && totalN > 0) {
      Warn(distribution.family == Family::Uniform ? card::kUniformExcluded
                                                  : card::kExponentialExcluded,
           {IntegerText(excludedWeight)});
    }
    return WriteAlgorithm(*this,
                          // The head of the element is the same for all four cards.
                          {.card = card::kNormal, .decidingSig = sig, .condition = GetCondition()},
                          [this](XMLElement& algorithm) {
                            XMLElement* statistics =
                                AddFigures(algorithm, "StatisticsResult",
                                           {{"TotalN", totalN + excludedWeight}});
                            AddFigures(*statistics, "MostExtremeDifferences",
                                       {{"Absolute", std::max(differences->Absolute(), 0.0)},
                                        {"Positive", differences->Positive()},
                                        {"Negative", differences->Negative()}});
                            AddAttributeRow(*statistics, "TestStatistic", testStatistic);
                            AddAttributeRow(*statistics, "AsymptoticSig2Tailed", sig);
                          });
  }

  /// A message tells the weight of one record that is no count.
  [[nodiscard]] bool TakesCells() const override {
    return !distribution.IsPoisson() || weight.Index() < 0;
  }

 protected:
  void Prepare(const SettingsReader& settings) override {
    distribution.SetFamily(settings.Text("distributionFunction"));
    variableIndex = settings.Index("variableIndex");
    settings.Find(card::kMinimum.key, distribution.minimum);
    settings.Find(card::kMaximum.key, distribution.maximum);
    settings.Find(card::kMean.key, distribution.mean);
    settings.Find(card::kStdDev.key, distribution.stdDev);
    AskForEstimates();
    ExpectPasses(2);
    Require({variableIndex});
  }

  /// Error 220312 with value and weight: no count, in a Poisson test.
  void Take(RecordBatch& batch) override {
    if (!AreValid(batch.Of(variableIndex), batch.Size())) {
      TakeValid(batch);
      return;
    }
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) totalN += weightAt(i);
    });
    estimator->ProcessBatch(batch);
  }

  /// Errors 220003, 220310, 220313: no valid value.
  void Compute() override {
    if (const QDStatus estimated = estimator->EndPass(); estimated.IsError()) {
      Fail(estimated.GetErrorCode());
    }
    if (totalN > 0) return;
    switch (distribution.family) {
      case Family::Uniform:
        Fail(card::kNoValidUniform);
        break;
      case Family::Exponential:
        Fail(card::kNoExponential);
        break;
      case Family::Poisson:
      case Family::Normal:
        Fail(catalogue::run::kNoData);
        break;
    }
  }

  /// Errors 220312, 220313, 220315, 220316: the parameters make no distribution. Help message
  /// 220309: a large Poisson mean.
  void StartPass() override {
    if (estimateMean) distribution.mean = estimator->GetMean();
    if (estimateStdDev) distribution.stdDev = estimator->GetStdDev();
    if (estimateRange) {
      distribution.minimum = estimator->GetMinimum();
      distribution.maximum = estimator->GetMaximum();
    }
    switch (distribution.family) {
      case Family::Uniform:
        if (QDPower::AlmostEqual(distribution.minimum, distribution.maximum,
                                 QDPower::gMachineEpsilon)) {
          Fail(card::kEmptyUniform);
        }
        break;
      case Family::Poisson:
        if (!(distribution.mean > 0.0)) {
          Fail(card::kNoPoisson);
        } else if (distribution.mean >= ReferenceDistribution::kLargePoissonMean) {
          distribution.UseNormalForPoisson();
          Help(card::kLargePoissonMean);
        }
        break;
      case Family::Normal:
        if (!(distribution.stdDev > 0.0)) Fail(card::kNoNormal);
        break;
      case Family::Exponential:
        if (!(distribution.mean > 0.0)) Fail(card::kNoExponential);
        break;
    }
    differences.emplace(distribution, totalN);
  }

  void TakeAgain(RecordBatch& batch) override {
    const double* values = batch.Of(variableIndex);
    const std::size_t count = batch.Size();
    const bool isEachOne = weight.TruncatedOf(batch) == nullptr;
    if (isEachOne && AreValid(values, count) && differences->PassOver(values, count)) return;
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < count; ++i) {
        if (IsValid(values[i])) differences->Add(values[i], weightAt(i));
      }
    });
  }

  /// Error 220305: an exponential failed.
  void Finish() override {
    differences->Finish();
    testStatistic = std::sqrt(static_cast<double>(totalN)) * differences->Absolute();
    if (!KolmogorovSmirnovSig(testStatistic, sig)) Fail(card::kExponentialFailed);
  }

  void Extend(ExtendedFigures& figures) override {
    figures.Add("ValidN", totalN);
    if (!(differences->Absolute() >= 0.0)) return;  // no difference is a number
    figures.Add("AbsoluteDifferenceLocation", differences->Location());
    figures.Add("LimitingSig2Tailed", LimitingKolmogorovSig(testStatistic));
    if (IsGiven()) AddExact(figures);
    const bool isNormal = distribution.family == Family::Normal && estimateMean && estimateStdDev;
    const bool isExponential = distribution.family == Family::Exponential && estimateMean;
    if (isNormal || isExponential) AddLilliefors(figures);
  }

 private:
  void AskForEstimates() {
    const auto isMissing = [](double value) { return value == QDMV::gMissingValue; };
    estimator.emplace(variableIndex, weight.Index());
    const auto ask = [this](Statistic statistic) {
      static_cast<void>(estimator->AddStatistic(static_cast<std::int32_t>(statistic)));
    };
    if (distribution.family != Family::Uniform && isMissing(distribution.mean)) {
      estimateMean = true;
      ask(Statistic::Mean);
    }
    if (distribution.family == Family::Normal && isMissing(distribution.stdDev)) {
      estimateStdDev = true;
      ask(Statistic::MeanStdDev);
    }
    // The empirical distribution function needs the range for every family.
    if (isMissing(distribution.minimum) || isMissing(distribution.maximum)) {
      estimateRange = true;
      ask(Statistic::Maximum);
      ask(Statistic::Minimum);
    }
  }

  /// Does the value take part?
  [[nodiscard]] bool IsValid(double x) const noexcept {
    switch (distribution.family) {
      case Family::Uniform:
        return estimateRange || !(x > distribution.maximum || x < distribution.minimum);
      case Family::Poisson:
        return x >= 0.0 && QDPower::AlmostEqual(x, std::trunc(x), QDPower::gMachineEpsilon);
      case Family::Normal:
        break;
      case Family::Exponential:
        return !(x < 0.0);
    }
    return true;
  }

  /// Do all of these ascending values take part, as their ends tell?
  [[nodiscard]] bool AreValid(const double* values, std::size_t count) const noexcept {
    if (count == 0) return true;
    const double first = values[0];
    const double last = values[count - 1];
    // Of counts, the ends tell nothing; ends that do not compare are not a number.
    return !distribution.IsPoisson() && first <= last && IsValid(first) && IsValid(last);
  }

  /// Estimates from the valid ones of records that are not all valid.
  void TakeValid(RecordBatch& batch) {
    const double* values = batch.Of(variableIndex);
    isInvalid.assign(batch.Size(), 1);
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size() && !HasFailed(); ++i) {
        if (IsValid(values[i])) {
          totalN += weightAt(i);
          isInvalid[i] = 0;
        } else if (distribution.IsPoisson()) {
          const std::int64_t ofOne = weight.Index() < 0 ? 1 : weightAt(i);
          Fail(card::kNoPoisson, {NumberText(values[i]), IntegerText(ofOne)});
        } else {
          excludedWeight += weightAt(i);
        }
      }
    });
    estimator->ProcessBatch(validRecords.Select(batch, isInvalid));
  }

  [[nodiscard]] Condition GetCondition() const {
    const std::string index = IntegerText(variableIndex);
    const std::string mean = NumberOrMissingText(distribution.mean);
    switch (distribution.family) {
      case Family::Uniform:
        return {"UniformDistribution_O_KolmogorovSmirnov_3",
                {index, NumberOrMissingText(distribution.minimum),
                 NumberOrMissingText(distribution.maximum)}};
      case Family::Poisson:
        return {"PoissonDistribution_O_KolmogorovSmirnov_2", {index, mean}};
      case Family::Normal:
        break;
      case Family::Exponential:
        return {"ExponentialDistribution_O_KolmogorovSmirnov_2", {index, mean}};
    }
    return {"NormalDistribution_O_KolmogorovSmirnov_3",
            {index, mean, NumberOrMissingText(distribution.stdDev)}};
  }

  /// Is everything that the distribution needs given?
  [[nodiscard]] bool IsGiven() const noexcept {
    switch (distribution.family) {
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

  void AddExact(ExtendedFigures& figures) const {
    if (totalN > kMostExactKolmogorovUnits) return;
    figures.Add("ExactSig2Tailed", TwoSidedKolmogorovSig(totalN, differences->Absolute()));
    figures.Add("ExactSig1TailedLess", OneSidedKolmogorovSig(totalN, differences->Positive()));
    figures.Add("ExactSig1TailedGreater", OneSidedKolmogorovSig(totalN, -differences->Negative()));
  }

  void AddLilliefors(ExtendedFigures& figures) const {
    if (totalN < kFewestLillieforsUnits) return;
    const double d = differences->Absolute();
    const LillieforsSig found = distribution.family == Family::Normal
                                    ? NormalLillieforsSig(totalN, d)
                                    : ExponentialLillieforsSig(totalN, d);
    switch (found.kind) {
      case LillieforsSig::Kind::Value:
        figures.Add("LillieforsSig", found.sig);
        break;
      case LillieforsSig::Kind::AtLeast:
        figures.Add("LillieforsSigAtLeast", found.sig);
        break;
      case LillieforsSig::Kind::AtMost:
        figures.Add("LillieforsSigAtMost", found.sig);
        break;
    }
  }

  std::int32_t variableIndex = -1;
  ReferenceDistribution distribution;
  bool estimateRange = false;
  bool estimateMean = false;
  bool estimateStdDev = false;
  std::optional<QDContUnivariateVariable> estimator;
  std::vector<std::uint8_t> isInvalid;  // by record in hand
  SelectedRecords validRecords;

  std::int64_t totalN = 0;
  std::int64_t excludedWeight = 0;
  std::optional<EmpiricalDifferences> differences;
  double testStatistic = 0.0;  // z
  double sig = 0.0;
};

std::unique_ptr<NPARTest> Construct(TestConstruction& construction, const catalogue::Card& tested) {
  construction.Put("distributionFunction", tested.distribution.c_str());
  const std::int32_t index =
      construction.LookUpVariable("variableName", card::kUnknownVariable, card::kUnknownVariable);
  if (construction.ReadFlag(card::kUseSample.key)) {
    construction.Put(card::kMean.key, QDMV::gMissingValue);
    construction.Put(card::kStdDev.key, QDMV::gMissingValue);
  } else {
    for (const catalogue::NumberKey* key :
         {&card::kMaximum, &card::kMinimum, &card::kStdDev, &card::kMean}) {
      construction.Copy(key->key);
    }
  }
  construction.Put("variableIndex", index);
  if (construction.IsOK()) {
    if (construction.KindOf(index) == VariableKind::Continuous) {
      construction.Put("measureLevel", 1.0);
      construction.Planner().RegisterSortedVariable(index);
    } else {
      construction.Fail(card::kNotContinuous);
    }
  }
  construction.SortBy(index);
  return construction.Make<NPARKSmirnowOneSample>();
}

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kNormal>(TestConstruction& construction) {
  return Construct(construction, card::kNormal);
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kUniform>(TestConstruction& construction) {
  return Construct(construction, card::kUniform);
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kPoisson>(TestConstruction& construction) {
  return Construct(construction, card::kPoisson);
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kExponential>(TestConstruction& construction) {
  return Construct(construction, card::kExponential);
}
