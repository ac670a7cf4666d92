#include "catalogue/cards/ks_one_sample.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/run.h"
#include "kit/contract/test.h"
#include "kit/fits/empirical_differences.h"
#include "kit/fits/fitted_distribution.h"
#include "kit/fits/kolmogorov.h"
#include "kit/records/record_batch.h"
#include "kit/statistics/kolmogorov_smirnov.h"
#include "kit/statistics/reference_distribution.h"
#include "kit/summaries/univariate_variable.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"

namespace card = catalogue::ks_one_sample;

namespace {

/// Parameters that the settings leave out are the missing value.
ReferenceDistribution GivenDistribution(const SettingsReader& settings) {
  ReferenceDistribution given;
  given.SetFamily(settings.Text("distributionFunction"));
  settings.Find(card::kMinimum.key, given.minimum);
  settings.Find(card::kMaximum.key, given.maximum);
  settings.Find(card::kMean.key, given.mean);
  settings.Find(card::kStdDev.key, given.stdDev);
  return given;
}

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
      Warn(fitted->CodeOfExcluded(), {IntegerText(excludedWeight)});
    }
    return WriteAlgorithm(*this,
                          // The head of the element is the same for all four cards.
                          {.card = card::kNormal, .decidingSig = sig, .condition = GetCondition()},
                          [this](XMLElement& algorithm) {
                            XMLElement* statistics =
                                AddFigures(algorithm, "StatisticsResult",
                                           {{"TotalN", totalN + excludedWeight}});
                            const ExtremeDifferences& found = differences->Extremes();
                            AddFigures(*statistics, "MostExtremeDifferences",
                                       {{"Absolute", std::max(found.Absolute(), 0.0)},
                                        {"Positive", found.Positive()},
                                        {"Negative", found.Negative()}});
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
    fitted.emplace(GivenDistribution(settings));
    estimator.emplace(variableIndex, weight.Index());
    if (fitted->WantsMean()) Estimate(Statistic::Mean);
    if (fitted->WantsStdDev()) Estimate(Statistic::MeanStdDev);
    if (fitted->WantsRange()) {
      Estimate(Statistic::Maximum);
      Estimate(Statistic::Minimum);
    }
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
    estimator->ProcessBatch(batch);
  }

  /// Errors 220003, 220310, 220313: no valid value.
  void Compute() override {
    if (totalN <= 0) Fail(fitted->CodeWithoutValues());
  }

  /// Errors 220312, 220313, 220315, 220316: the parameters make no distribution. Help message
  /// 220309: a large Poisson mean.
  void StartPass() override {
    fitted->UseEstimates({estimator->GetMean(), estimator->GetStdDev(), estimator->GetMinimum(),
                          estimator->GetMaximum()});
    if (const auto code = fitted->CodeAgainst()) {
      Fail(*code);
    } else if (fitted->IsNormalForPoisson()) {
      Help(card::kLargePoissonMean);
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
    testStatistic = KolmogorovStatistic(totalN, differences->Extremes());
    if (!KolmogorovSmirnovSig(testStatistic, sig)) Fail(card::kExponentialFailed);
  }

  void Extend(ExtendedFigures& figures) override {
    ExtendKolmogorov(figures, *fitted, totalN, differences->Extremes());
  }

 private:
  /// Estimates from the valid ones of records that are not all valid.
  void TakeValid(RecordBatch& batch) {
    const double* values = batch.Of(variableIndex);
    isInvalid.assign(batch.Size(), true);
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size() && !HasFailed(); ++i) {
        if (fitted->Takes(values[i])) {
          totalN += weightAt(i);
          isInvalid[i] = false;
        } else if (fitted->IsPoisson()) {
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
    std::vector<std::string> parameters = {IntegerText(variableIndex)};
    for (const double each : fitted->Parameters()) parameters.push_back(NumberOrMissingText(each));
    return {std::string(fitted->ConditionKey()), std::move(parameters)};
  }

  void Estimate(Statistic statistic) {
    static_cast<void>(estimator->AddStatistic(static_cast<std::int32_t>(statistic)));
  }

  std::int32_t variableIndex = -1;
  std::optional<FittedDistribution> fitted;
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
