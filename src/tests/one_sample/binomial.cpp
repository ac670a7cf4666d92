#include "tests/one_sample/binomial.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/binomial.h"
#include "kit/statistics/binomial.h"
#include "report/elements.h"
#include "report/messages.h"
#include "tests/one_sample/two_class_condition.h"
#include "tests/one_sample/two_class_construction.h"

namespace {

constexpr TwoClassCodes kConstructionCodes{.noVariableName = 221314,
                                           .unknownVariable = 221303,
                                           .unknownLevel = 221304,
                                           .noCategoryList = 221312,
                                           .noCutPoint = 221313,
                                           .cutPointWanted = 221315,
                                           .categoriesWanted = 221316};
constexpr TwoClassKeys kConditionKeys{"CategoryListsAreSpecified_O_Binomial_5",
                                      "ACutPointIsSpecified_O_Binomial_4",
                                      "ABinaryTestVariableIsSpecified_O_Binomial_5"};

constexpr std::int32_t kNoData = 220003;                 // the weights sum to 0
constexpr std::int32_t kDistributionFailed = 220007;     // a distribution function failed
constexpr std::int32_t kShareBelowProbability = 221311;  // help: the tail is the lower one
constexpr std::int32_t kBadProbability = 221317;         // not strictly between 0 and 1

}  // namespace

void NPARBinomial::SetSharedData(UnivariateResults* data) {
  if (data != nullptr) sharedData = data;
}

QDStatus NPARBinomial::BeginPass() {
  passesLeft = 1;
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  classes.ReadFormation(*settings);
  static_cast<void>(settings->GetSettingValByName("testProbability", testProbability));
  if (!(testProbability > 0.0 && testProbability < 1.0)) {
    ReportStatus(QDStatus(kBadProbability), MessageKind::Error);
  }
  if (status.IsError()) return status;
  if (const std::int32_t code = classes.Prepare(*settings, sharedData); code != 0) {
    ReportStatus(QDStatus(code), MessageKind::Error);
  }
  return status;
}

QDStatus NPARBinomial::ProcessRecord(const Record& record) {
  classes.Count(record);
  return status;
}

double NPARBinomial::Sided(double tail) const {
  return twoTailed ? std::min(2.0 * tail, 1.0) : tail;
}

QDStatus NPARBinomial::EndPass() {
  if (status.IsError()) return status;
  const std::int64_t n = classes.Total();
  if (n == 0) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  const auto total = static_cast<double>(n);
  const auto first = static_cast<double>(classes.FirstCount());
  twoTailed = std::abs(testProbability - 0.5) < QDPower::gMachineEpsilon;

  approximation = BinomialApproximation(classes.FirstCount(), n, testProbability);
  asymptoticSig = Sided(QDDistFun::SfStdNorm(std::abs(approximation.z)));

  if (n <= kExactLimit) {
    const auto tails = TailsOfCount(classes.FirstCount(), n, testProbability);
    if (!tails) {
      ReportStatus(QDStatus(kDistributionFailed), MessageKind::Error);
      return status;
    }
    exactSig = Sided(std::min(tails->lower, tails->upper));
  }
  if (testProbability * 100.0 > first / total * 100.0 && !twoTailed) {
    AddMessage(
        {QDStatus(kShareBelowProbability), MessageKind::Help, {NumberText(testProbability)}, {}});
  }
  passesLeft = 0;
  return status;
}

void NPARBinomial::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.assign(1, classes.GetVariable());
}

XMLElement* NPARBinomial::WriteResults() {
  auto algorithm = CreateAlgorithm("OBinomial", "hypothesis_test", "One_Sample",
                                   DecisionWord(status, sigLevel, asymptoticSig));
  AddTwoClassCondition(*algorithm, classes, kConditionKeys,
                       {NumberText(testProbability), NumberText(1.0 - testProbability)});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  const auto total = static_cast<double>(classes.Total());
  const std::vector<double> observed{static_cast<double>(classes.FirstCount()) / total * 100.0,
                                     static_cast<double>(classes.SecondCount()) / total * 100.0};
  const std::vector<double> hypothesized{testProbability * 100.0, (1.0 - testProbability) * 100.0};
  XMLElement* comparison = AddStructuredTable(*algorithm, "TwoClassComparison");
  XMLElement* content = AddSimpleTable(*comparison, "Content", "Observed;Hypothesized", "0;1");
  AddRow(*content, JoinNumbers(observed));
  AddRow(*content, JoinNumbers(hypothesized));

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", classes.Total());
  AddAttributeRow(*statistics, "TestStatistic", classes.FirstCount());
  AddAttributeRow(*statistics, "StandardError", approximation.standardError);
  AddAttributeRow(*statistics, "StandardTestStatistic", approximation.z);
  AddAttributeRow(*statistics, twoTailed ? "AsymptoticSig2Tailed" : "AsymptoticSig1Tailed",
                  asymptoticSig);
  if (exactSig) {
    AddAttributeRow(*statistics, twoTailed ? "ExactSig2Tailed" : "ExactSig1Tailed", *exactSig);
  }
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::binomial::kCard>(
    TestConstruction& construction) {
  const TwoClassEntry classes = ReadTwoClasses(construction, kConstructionCodes);
  double probability = 0.0;
  if (construction.IsOK() && construction.Read("testProbability", probability)) {
    construction.Put("testProbability", probability);
  }
  CheckTwoClasses(construction, kConstructionCodes, classes);
  return construction.Make<NPARBinomial>();
}
