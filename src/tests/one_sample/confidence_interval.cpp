#include "catalogue/cards/confidence_interval.h"

#include <optional>

#include "catalogue/run.h"
#include "kit/statistics/proportion_interval.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "tests/one_sample/two_class_construction.h"
#include "tests/one_sample/two_class_test.h"

namespace card = catalogue::confidence_interval;

namespace {

constexpr TwoClassKeys kConditionKeys{"CategoryListsAreSpecified_O_Binomial_2",
                                      "ACutPointIsSpecified_O_Binomial_2",
                                      "ABinaryTestVariableIsSpecified_O_Binomial_2"};

/// Confidence interval for the proportion of the first of two classes, by up to three methods that
/// the entry chooses.
///
/// Formulas, limits, sources: docs/statistics/confidence_interval.md.
///
/// Splits the records as the binomial test does and makes no decision.
class NPAREstimateCI final : public TwoClassTest {
 public:
  using TwoClassTest::TwoClassTest;

  XMLElement* WriteResults() override {
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

 protected:
  /// Errors of the classes.
  void Prepare(const SettingsReader& settings) override {
    wantsClopperPearson = settings.Get(card::kClopperPearson);
    wantsJeffreys = settings.Get(card::kJeffreys);
    wantsProfileLikelihood = settings.Get(card::kProfileLikelihood);
    TwoClassTest::Prepare(settings);
  }

  /// Error 220003: the weights sum to 0; 220007: the exponential of the profile limit failed.
  void Compute() override {
    if (classes.Total() == 0) {
      Fail(catalogue::run::kNoData);
      return;
    }
    const ProportionEstimator estimator(classes.FirstCount(), classes.SecondCount(),
                                        confidenceLevel);
    estimate = estimator.Estimate();
    if (wantsClopperPearson) clopperPearson = estimator.ClopperPearson();
    if (wantsJeffreys) jeffreys = estimator.Jeffreys();
    if (wantsProfileLikelihood) {
      profileLikelihood = estimator.ProfileLikelihood();
      if (!profileLikelihood) Fail(catalogue::run::kDistributionFailed);
    }
  }

  void Extend(ExtendedFigures& figures) override {
    AddClasses(figures);
    AddShareIntervals(figures);
  }

 private:
  bool wantsClopperPearson = false;
  bool wantsJeffreys = false;
  bool wantsProfileLikelihood = false;
  double estimate = 0.0;
  std::optional<ProportionInterval> clopperPearson;
  std::optional<ProportionInterval> jeffreys;
  std::optional<ProportionInterval> profileLikelihood;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  CheckTwoClasses(construction, card::kClassCodes, ReadTwoClasses(construction, card::kClassCodes));
  for (const catalogue::FlagKey* method : card::kAskedBy) construction.Copy(method->key);
  return construction.Make<NPAREstimateCI>();
}
