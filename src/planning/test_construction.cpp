#include "planning/test_construction.h"

#include "catalogue/run.h"

TestConstruction::TestConstruction(NPARPlanner& planner, const QDSettings& entry)
    : planner(planner), entry(entry), settings(std::make_unique<QDSettings>()) {
  Put("sigLevel", planner.GetSigLevel());
  Put("confidenceLevel", planner.GetConfidenceLevel());
  if (planner.WantsExtended()) Put(catalogue::run::kExtendedFigures.key, true);
  if (planner.HasWeight()) Put("weightVariableIndex", planner.GetWeightIndex());
}

void TestConstruction::Fail(std::int32_t code) {
  if (IsOK()) FailOver(code);
}

void TestConstruction::Fail(std::int32_t code, std::string parameter) {
  if (IsOK()) FailOver(code, std::move(parameter));
}

void TestConstruction::FailOver(std::int32_t code) { status = QDStatus(code); }

void TestConstruction::FailOver(std::int32_t code, std::string parameter) {
  FailOver(code);
  parameters.push_back(std::move(parameter));
}

std::int32_t TestConstruction::LookUpVariable(const std::string& key, std::int32_t absentCode,
                                              std::int32_t unknownCode) {
  std::string name;
  if (!Read(key, name)) {
    FailOver(absentCode);
    return -1;
  }
  const std::int32_t index = planner.GetVariables().FindVariable(name);
  if (index < 0) FailOver(unknownCode, std::move(name));
  return index;
}

std::vector<std::int32_t> TestConstruction::LookUpList(
    std::int32_t absentCode, std::int32_t unknownCode,
    const std::function<void(std::int32_t)>& check) {
  std::vector<std::string> names;
  if (!Read("variableName", names)) FailOver(absentCode);
  std::vector<std::int32_t> indices;
  for (const std::string& name : names) {
    const std::int32_t index = planner.GetVariables().FindVariable(name);
    if (index < 0) {
      FailOver(unknownCode, name);
      break;
    }
    indices.push_back(index);
    check(index);
  }
  return indices;
}

bool TestConstruction::Require(bool fits, std::int32_t index, std::int32_t code, bool tellsUnfit) {
  if (index < 0 || fits) return true;
  if (tellsUnfit) {
    FailOver(code, std::to_string(index));
  } else {
    FailOver(code);
  }
  return false;
}

bool TestConstruction::RequireContinuous(std::int32_t index, std::int32_t code) {
  return Require(KindOf(index) == VariableKind::Continuous, index, code);
}

bool TestConstruction::RequireCategorical(std::int32_t index, std::int32_t code) {
  return Require(IsCategorical(KindOf(index)), index, code);
}

TestConstruction::TestAndGroup TestConstruction::LookUpTestAndGroup(
    const TestAndGroupCodes& codes) {
  const std::int32_t variable = LookUpVariable("variableName", codes.noVariable, codes.unknown);
  Require(KindOf(variable) == VariableKind::Continuous, variable, codes.notContinuous,
          codes.tellsUnfit);
  const std::int32_t group = LookUpVariable("groupVariableName", codes.noGroup, codes.unknown);
  Require(IsCategorical(KindOf(group)), group, codes.notCategorical, codes.tellsUnfit);
  return {variable, group};
}

void TestConstruction::PutTestAndGroup(const TestAndGroup& variables) {
  Put("groupVariableIndex", variables.group);
  Put("variableIndex", variables.variable);
}

VariableKind TestConstruction::KindOf(std::int32_t index) const {
  const IQDVariable* variable = planner.GetVariables().GetVarAt(index);
  return variable == nullptr ? VariableKind::None : variable->GetType();
}

const QDCategoryList* TestConstruction::CategoriesOf(std::int32_t index) const {
  const IQDVariable* variable = planner.GetVariables().GetVarAt(index);
  return variable == nullptr ? nullptr : variable->GetCategories();
}

std::string TestConstruction::ReadText(std::string_view key, std::string absent) const {
  static_cast<void>(Read(key, absent));
  return absent;
}

bool TestConstruction::ReadFlag(std::string_view key) const {
  bool flag = false;
  static_cast<void>(Read(key, flag));
  return flag;
}

bool TestConstruction::Copy(std::string_view key) {
  const QDSetting* setting = entry.FindSetting(key);
  if (setting == nullptr) return false;
  settings->AddNewSetting(*setting);
  return true;
}

void TestConstruction::HandOver(NPARTest& test) const {
  if (status.IsOK()) return;
  test.AddMessage(NPARMessage{status, MessageKind::Error, parameters, {}});
}
