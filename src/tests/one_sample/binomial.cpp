#include "tests/one_sample/binomial.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/binomial.h"
#include "catalogue/run.h"
#include "kit/statistics/binomial.h"
#include "kit/statistics/exact_binomial.h"
#include "report/elements.h"
#include "tests/one_sample/two_class_construction.h"

namespace card = catalogue::binomial;

namespace {

constexpr TwoClassKeys kConditionKeys{"CategoryListsAreSpecified_O_Binomial_5",
                                      "ACutPointIsSpecified_O_Binomial_4",
                                      "ABinaryTestVariableIsSpecified_O_Binomial_5"};

}  // namespace

void NPARBinomial::Prepare(const SettingsReader& settings) {
  testProbability = settings.Get(card::kTestProbability);
  if (!(testProbability > 0.0 && testProbability < 1.0)) Fail(card::kBadProbability);
  TwoClassTest::Prepare(settings);
}

double NPARBinomial::Sided(double tail) const {
  return twoTailed ? std::min(2.0 * tail, 1.0) : tail;
}

void NPARBinomial::Compute() {
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

void NPARBinomial::Extend(ExtendedFigures& figures) {
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

XMLElement* NPARBinomial::WriteResults() {
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
        AddRow(*content,
               JoinNumbers({percentage(classes.FirstCount()), percentage(classes.SecondCount())}));
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

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const TwoClassEntry classes = ReadTwoClasses(construction, card::kClassCodes);
  if (construction.IsOK()) construction.Copy(card::kTestProbability.key);
  CheckTwoClasses(construction, card::kClassCodes, classes);
  return construction.Make<NPARBinomial>();
}
