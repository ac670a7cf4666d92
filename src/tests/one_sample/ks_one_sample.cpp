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
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "tests/one_sample/empirical_differences.h"
#include "tests/one_sample/fitted_distribution.h"

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
      Warn(fitted->family == Family::Uniform ? card::kUniformExcluded : card::kExponentialExcluded,
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
    return !fitted->IsPoisson() || weight.Index() < 0;
  }

 protected:
  void Prepare(const SettingsReader& settings) override {
    variableIndex = settings.Index("variableIndex");
    fitted.emplace(settings, variableIndex, weight.Index());
    ExpectPasses(2);
    Require({variableIndex});
  }

  /// Error 220312 with value and weight: no count, in a Poisson test.
  void Take(RecordBatch& batch) override {
    if (!fitted->TakesAll(batch.Of(variableIndex), batch.Size())) {
      TakeValid(batch);
      return;
    }
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) totalN += weightAt(i);
    });
    fitted->EstimateFrom(batch);
  }

  /// Errors 220003, 220310, 220313: no valid value.
  void Compute() override {
    if (const QDStatus estimated = fitted->EndEstimates(); estimated.IsError()) {
      Fail(estimated.GetErrorCode());
    }
    if (totalN > 0) return;
    switch (fitted->family) {
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
    fitted->UseEstimates();
    switch (fitted->family) {
      case Family::Uniform:
        if (QDPower::AlmostEqual(fitted->minimum, fitted->maximum, QDPower::gMachineEpsilon)) {
          Fail(card::kEmptyUniform);
        }
        break;
      case Family::Poisson:
        if (!(fitted->mean > 0.0)) {
          Fail(card::kNoPoisson);
        } else if (fitted->mean >= ReferenceDistribution::kLargePoissonMean) {
          fitted->UseNormalForPoisson();
          Help(card::kLargePoissonMean);
        }
        break;
      case Family::Normal:
        if (!(fitted->stdDev > 0.0)) Fail(card::kNoNormal);
        break;
      case Family::Exponential:
        if (!(fitted->mean > 0.0)) Fail(card::kNoExponential);
        break;
    }
    differences.emplace(*fitted, totalN);
  }

  void TakeAgain(RecordBatch& batch) override {
    const double* values = batch.Of(variableIndex);
    const std::size_t count = batch.Size();
    const bool isEachOne = weight.TruncatedOf(batch) == nullptr;
    if (isEachOne && fitted->TakesAll(values, count) && differences->PassOver(values, count))
      return;
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < count; ++i) {
        if (fitted->Takes(values[i])) differences->Add(values[i], weightAt(i));
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
    if (fitted->IsGiven()) AddExact(figures);
    if (fitted->IsEstimated()) AddLilliefors(figures);
  }

 private:
  /// Estimates from the valid ones of records that are not all valid.
  void TakeValid(RecordBatch& batch) {
    const double* values = batch.Of(variableIndex);
    isInvalid.assign(batch.Size(), 1);
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size() && !HasFailed(); ++i) {
        if (fitted->Takes(values[i])) {
          totalN += weightAt(i);
          isInvalid[i] = 0;
        } else if (fitted->IsPoisson()) {
          const std::int64_t ofOne = weight.Index() < 0 ? 1 : weightAt(i);
          Fail(card::kNoPoisson, {NumberText(values[i]), IntegerText(ofOne)});
        } else {
          excludedWeight += weightAt(i);
        }
      }
    });
    fitted->EstimateFrom(validRecords.Select(batch, isInvalid));
  }

  [[nodiscard]] Condition GetCondition() const {
    const std::string index = IntegerText(variableIndex);
    const std::string mean = NumberOrMissingText(fitted->mean);
    switch (fitted->family) {
      case Family::Uniform:
        return {
            "UniformDistribution_O_KolmogorovSmirnov_3",
            {index, NumberOrMissingText(fitted->minimum), NumberOrMissingText(fitted->maximum)}};
      case Family::Poisson:
        return {"PoissonDistribution_O_KolmogorovSmirnov_2", {index, mean}};
      case Family::Normal:
        break;
      case Family::Exponential:
        return {"ExponentialDistribution_O_KolmogorovSmirnov_2", {index, mean}};
    }
    return {"NormalDistribution_O_KolmogorovSmirnov_3",
            {index, mean, NumberOrMissingText(fitted->stdDev)}};
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
    const LillieforsSig found = fitted->family == Family::Normal
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
  std::optional<FittedDistribution> fitted;
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
