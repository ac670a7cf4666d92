#include "tests/one_sample/two_class_construction.h"

#include <string>
#include <vector>

#include "kit/category_selection.h"

void ReadTwoClasses(TestConstruction& construction, const TwoClassCodes& codes) {
  const QDSettings& entry = construction.Entry();
  QDSettings& settings = construction.Settings();
  NPARPlanner& planner = construction.Planner();

  std::string name;
  if (!entry.GetSettingValByName("variableName", name)) {
    construction.Fail(codes.noVariableName);
    return;
  }
  const std::int32_t index = planner.GetVariables().FindVariable(name);
  if (index < 0) {
    construction.Fail(codes.unknownVariable, name);
    return;
  }
  settings.AddNewSetting("variableIndex", index, "");
  const VariableKind kind = construction.KindOf(index);
  const bool isContinuous = kind == VariableKind::Continuous;
  const bool isCategorical = TestConstruction::IsCategorical(kind);
  if (isCategorical) planner.RegisterStatistic(index, Statistic::Frequencies);
  if (isContinuous) planner.RegisterSortedVariable(index);

  std::string formation = "getFromData";
  std::vector<std::string> givenTexts;
  if (entry.GetSettingValByName("catVarClassFormation", formation)) {
    settings.AddNewSetting("classFormation", formation, "");
    if (formation == "givenCategoryList") {
      static_cast<void>(entry.GetSettingValByName("givenCategoryList", givenTexts));
      if (givenTexts.empty()) {
        construction.Fail(codes.noCategoryList);
        return;
      }
      settings.AddNewSetting("originalGivenCategoryList", givenTexts, "");
    }
  } else if (entry.GetSettingValByName("contVarClassFormation", formation)) {
    settings.AddNewSetting("classFormation", "givenCutPoint", "");
    double cutPoint = 0.0;
    if (formation == "givenCutPoint") {
      if (!entry.GetSettingValByName("givenCutPoint", cutPoint)) {
        construction.Fail(codes.noCutPoint);
        return;
      }
      settings.AddNewSetting("givenCutPoint", cutPoint, "");
    }
  }

  if (!isContinuous && !isCategorical) {
    construction.Fail(codes.unknownLevel);
    return;
  }
  settings.AddNewSetting("measureLevel", static_cast<double>(kind), "");
  const bool isCutPoint = formation == "givenCutPoint" || formation == "sampleMidPoint";
  if (isContinuous && !isCutPoint) construction.Fail(codes.cutPointWanted);
  if (isCategorical && isCutPoint) construction.Fail(codes.categoriesWanted);
  if (construction.IsOK() && isCategorical && !givenTexts.empty()) {
    const CategorySelection selection =
        SelectCategories(*planner.GetVariables().GetVarAt(index), givenTexts);
    settings.AddNewSetting("notUsedCategoryList", selection.otherCodes, "");
    settings.AddNewSetting("notGivenOriginalCategoryList", selection.otherTexts, "");
    settings.AddNewSetting("givenCategoryList", selection.codes, "");
  }
}
