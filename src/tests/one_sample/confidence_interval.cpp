#include "tests/one_sample/confidence_interval.h"

#include "catalogue/cards/confidence_interval.h"
#include "report/elements.h"
#include "report/messages.h"
#include "tests/one_sample/two_class_condition.h"
#include "tests/one_sample/two_class_construction.h"

namespace {

constexpr TwoClassCodes kConstructionCodes{.noVariableName = 221513,
                                           .unknownVariable = 221503,
                                           .unknownLevel = 221504,
                                           .noCategoryList = 221511,
                                           .noCutPoint = 221512,
                                           .cutPointWanted = 221514,
                                           .categoriesWanted = 221515};
constexpr TwoClassKeys kConditionKeys{"CategoryListsAreSpecified_O_Binomial_2",
                                      "ACutPointIsSpecified_O_Binomial_2",
                                      "ABinaryTestVariableIsSpecified_O_Binomial_2"};
constexpr const char* kMethodKeys[] = {"isDoClopperPearson", "isDoJeffreys",
                                       "isDoProfileLikelihood"};

constexpr std::int32_t kNoData = 220003;              // the weights sum to 0
constexpr std::int32_t kDistributionFailed = 220007;  // the exponential of the profile limit failed

}  // namespace

void NPAREstimateCI::SetSharedData(UnivariateResults* data) {
  if (data != nullptr) sharedData = data;
}

QDStatus NPAREstimateCI::BeginPass() {
  passesLeft = 1;
  static_cast<void>(settings->GetSettingValByName("confidenceLevel", confidenceLevel));
  classes.ReadFormation(*settings);
  if (status.IsError()) return status;
  if (const std::int32_t code = classes.Prepare(*settings, sharedData); code != 0) {
    ReportStatus(QDStatus(code), MessageKind::Error);
  }
  return status;
}

QDStatus NPAREstimateCI::ProcessRecord(const Record& record) {
  classes.Count(record);
  return status;
}

QDStatus NPAREstimateCI::EndPass() {
  if (status.IsError()) return status;
  if (classes.Total() == 0) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  const auto wants = [this](const char* key) {
    bool wanted = false;
    return settings->GetSettingValByName(key, wanted) && wanted;
  };
  const ProportionEstimator estimator(classes.FirstCount(), classes.SecondCount(), confidenceLevel);
  estimate = estimator.Estimate();
  if (wants("isDoClopperPearson")) clopperPearson = estimator.ClopperPearson();
  if (wants("isDoJeffreys")) jeffreys = estimator.Jeffreys();
  if (wants("isDoProfileLikelihood")) {
    profileLikelihood = estimator.ProfileLikelihood();
    if (!profileLikelihood) {
      ReportStatus(QDStatus(kDistributionFailed), MessageKind::Error);
      return status;
    }
  }
  passesLeft = 0;
  return status;
}

void NPAREstimateCI::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.assign(1, classes.GetVariable());
}

XMLElement* NPAREstimateCI::WriteResults() {
  auto algorithm =
      CreateAlgorithm("OEstimateConfidenceInterval", "confidence_interval", "One_Sample", "");
  AddTwoClassCondition(*algorithm, classes, kConditionKeys, {});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  const auto write = [&](const char* method, const std::optional<ProportionInterval>& interval) {
    if (!interval) return;
    XMLElement* table = AddStructuredTable(*algorithm, "ConfidenceInterval");
    AddAttributeRow(*table, "computeECIMethod", method);
    AddAttributeRow(*table, "Estimate", estimate);
    AddAttributeRow(*table, "Lower", interval->lower);
    AddAttributeRow(*table, "Upper", interval->upper);
  };
  write("ClopperPearson", clopperPearson);
  write("Jeffreys", jeffreys);
  write("ProfileLikelihood", profileLikelihood);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::confidence_interval::kCard>(
    TestConstruction& construction) {
  CheckTwoClasses(construction, kConstructionCodes,
                  ReadTwoClasses(construction, kConstructionCodes));
  for (const char* key : kMethodKeys) construction.Copy(key);
  return construction.Make<NPAREstimateCI>();
}
