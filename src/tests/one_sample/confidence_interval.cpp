#include "tests/one_sample/confidence_interval.h"

#include "catalogue/cards/confidence_interval.h"
#include "catalogue/run.h"
#include "report/elements.h"
#include "tests/one_sample/two_class_construction.h"

namespace card = catalogue::confidence_interval;

namespace {

constexpr TwoClassKeys kConditionKeys{"CategoryListsAreSpecified_O_Binomial_2",
                                      "ACutPointIsSpecified_O_Binomial_2",
                                      "ABinaryTestVariableIsSpecified_O_Binomial_2"};

}  // namespace

void NPAREstimateCI::Prepare(const SettingsReader& settings) {
  wantsClopperPearson = settings.Get(card::kClopperPearson);
  wantsJeffreys = settings.Get(card::kJeffreys);
  wantsProfileLikelihood = settings.Get(card::kProfileLikelihood);
  TwoClassTest::Prepare(settings);
}

void NPAREstimateCI::Compute() {
  if (classes.Total() == 0) {
    Fail(catalogue::run::kNoData);
    return;
  }
  const ProportionEstimator estimator(classes.FirstCount(), classes.SecondCount(), confidenceLevel);
  estimate = estimator.Estimate();
  if (wantsClopperPearson) clopperPearson = estimator.ClopperPearson();
  if (wantsJeffreys) jeffreys = estimator.Jeffreys();
  if (wantsProfileLikelihood) {
    profileLikelihood = estimator.ProfileLikelihood();
    if (!profileLikelihood) Fail(catalogue::run::kDistributionFailed);
  }
}

void NPAREstimateCI::Extend(ExtendedFigures& figures) {
  AddClasses(figures);
  AddShareIntervals(figures);
}

XMLElement* NPAREstimateCI::WriteResults() {
  return WriteAlgorithm(
      *this,
      {.card = card::kCard,
       .decidingSig = 0.0,
       .condition = ClassCondition(kConditionKeys, {}),
       .unknownTexts = classes.UnknownTexts()},
      [&](XMLElement& algorithm) {
        const auto write = [&](const char* method,
                               const std::optional<ProportionInterval>& interval) {
          if (!interval) return;
          AddFigures(algorithm, "ConfidenceInterval",
                     {{"computeECIMethod", std::string(method)},
                      {"Estimate", estimate},
                      {"Lower", interval->lower},
                      {"Upper", interval->upper}});
        };
        write("ClopperPearson", clopperPearson);
        write("Jeffreys", jeffreys);
        write("ProfileLikelihood", profileLikelihood);
      });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  CheckTwoClasses(construction, card::kClassCodes, ReadTwoClasses(construction, card::kClassCodes));
  for (const catalogue::FlagKey* method : card::kAskedBy) construction.Copy(method->key);
  return construction.Make<NPAREstimateCI>();
}
