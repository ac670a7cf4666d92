#include "catalogue/cards/binomial.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "catalogue/run.h"
#include "kit/statistics/binomial.h"
#include "kit/statistics/exact_binomial.h"
#include "kit/statistics/normal.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "tests/one_sample/two_class_construction.h"
#include "tests/one_sample/two_class_test.h"

namespace card = catalogue::binomial;

namespace {

constexpr TwoClassKeys kConditionKeys{"CategoryListsAreSpecified_O_Binomial_5",
                                      "ACutPointIsSpecified_O_Binomial_4",
                                      "ABinaryTestVariableIsSpecified_O_Binomial_5"};

/// Binomial test: does the proportion of the first of two classes agree with a probability p?
///
/// Formulas, limits, sources: docs/statistics/binomial.md.
///
/// kit/groups/two_classes.h forms the classes. The asymptotic value decides, also beside an exact
/// one.
class NPARBinomial final : public TwoClassTest {
 public:
  /// The largest n with an exact value.
  static constexpr std::int64_t kExactLimit = 25;

  using TwoClassTest::TwoClassTest;

  XMLElement* WriteResults() override {
    const double complement = 1.0 - testProbability;
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = asymptoticSig,
         .condition =
             ClassCondition(kConditionKeys, {NumberText(testProbability), NumberText(complement)}),
         .unknownTexts = classes.UnknownTexts()},
        [&](XMLElement& algorithm) {
          const auto percentage = [this](std::int64_t count) {
            return static_cast<double>(count) / static_cast<double>(classes.Total()) * 100.0;
          };
          XMLElement* comparison = AddStructuredTable(algorithm, "TwoClassComparison");
          XMLElement* content =
              AddSimpleTable(*comparison, "Content", "Observed;Hypothesized", "0;1");
          AddRow(*content, JoinNumbers({percentage(classes.FirstCount()),
                                        percentage(classes.SecondCount())}));
          AddRow(*content, JoinNumbers({testProbability * 100.0, complement * 100.0}));
          AddFigures(algorithm, "StatisticsResult",
                     {{"TotalN", classes.Total()},
                      {"TestStatistic", classes.FirstCount()},
                      {"StandardError", approximation.standardError},
                      {"StandardTestStatistic", approximation.z},
                      {twoTailed ? "AsymptoticSig2Tailed" : "AsymptoticSig1Tailed", asymptoticSig},
                      {twoTailed ? "ExactSig2Tailed" : "ExactSig1Tailed", exactSig}});
        });
  }

 protected:
  /// Error 221317: "testProbability" is not strictly between 0 and 1; errors of the classes.
  void Prepare(const SettingsReader& settings) override {
    testProbability = settings.Get(card::kTestProbability);
    if (!(testProbability > 0.0 && testProbability < 1.0)) Fail(card::kBadProbability);
    TwoClassTest::Prepare(settings);
  }

  /// Error 220003: the weights sum to 0; 220007: a distribution function failed. Help message
  /// 221311, with p: the observed proportion lies below p (and p is not 1/2).
  void Compute() override {
    const std::int64_t n = classes.Total();
    if (n == 0) {
      Fail(catalogue::run::kNoData);
      return;
    }
    const auto total = static_cast<double>(n);
    const auto first = static_cast<double>(classes.FirstCount());
    twoTailed = std::abs(testProbability - 0.5) < QDPower::gMachineEpsilon;

    approximation = BinomialApproximation(classes.FirstCount(), n, testProbability);
    asymptoticSig = Sided(QDDistFun::SfStdNorm(std::abs(approximation.z)));

    if (n <= kExactLimit) {
      const auto tails = TailsOfCount(classes.FirstCount(), n, testProbability);
      if (!tails) {
        Fail(catalogue::run::kDistributionFailed);
        return;
      }
      exactSig = Sided(std::min(tails->lower, tails->upper));
    }
    if (testProbability * 100.0 > first / total * 100.0 && !twoTailed) {
      Help(card::kBelowProbability, {NumberText(testProbability)});
    }
  }

  void Extend(ExtendedFigures& figures) override {
    AddClasses(figures);
    if (const auto exact =
            ExactBinomialTails(classes.FirstCount(), classes.Total(), testProbability)) {
      figures.Add("ExactSig1TailedLess", exact->less);
      figures.Add("ExactSig1TailedGreater", exact->greater);
      figures.Add("ExactSig2Tailed", exact->twoSided);
    }
    AddShareIntervals(figures);
    figures.Add("CohensH", CohensH(classes.FirstShare(), testProbability));
  }

 private:
  /// Doubles a one-sided value where the test is two-sided.
  [[nodiscard]] double Sided(double tail) const {
    return twoTailed ? std::min(2.0 * tail, 1.0) : tail;
  }

  double testProbability = 0.5;
  bool twoTailed = false;
  NormalFigures approximation;
  double asymptoticSig = 0.0;
  std::optional<double> exactSig;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const TwoClassEntry classes = ReadTwoClasses(construction, card::kClassCodes);
  if (construction.IsOK()) construction.Copy(card::kTestProbability.key);
  CheckTwoClasses(construction, card::kClassCodes, classes);
  return construction.Make<NPARBinomial>();
}
