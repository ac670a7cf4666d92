#include "tests/one_sample/two_class_construction.h"

#include "catalogue/settings.h"
#include "kit/groups/category_selection.h"

namespace keys = catalogue::settings;

TwoClassEntry ReadTwoClasses(TestConstruction& construction,
                             const catalogue::TwoClassCodes& codes) {
  NPARPlanner& planner = construction.Planner();
  TwoClassEntry entry;
  entry.variable =
      construction.LookUpVariable("variableName", codes.noVariable, codes.unknownVariable);
  if (entry.variable < 0) return entry;
  construction.Put("variableIndex", entry.variable);
  const VariableKind kind = construction.KindOf(entry.variable);
  if (TestConstruction::IsCategorical(kind)) {
    planner.RegisterStatistic(entry.variable, Statistic::Frequencies);
  } else if (kind == VariableKind::Continuous) {
    planner.RegisterSortedVariable(entry.variable);
  }
  if (construction.Read(keys::kCategoryClasses.key, entry.formation)) {
    construction.Put("classFormation", entry.formation);
    if (entry.formation != "givenCategoryList") return entry;
    construction.Read(keys::kGivenCategories.key, entry.givenTexts);
    if (entry.givenTexts.empty()) {
      construction.Fail(codes.noCategoryList);
    } else {
      construction.Put("originalGivenCategoryList", entry.givenTexts);
    }
  } else if (construction.Read(keys::kMidPointClasses.key, entry.formation)) {
    construction.Put("classFormation", "givenCutPoint");
    double cutPoint = 0.0;
    if (entry.formation != "givenCutPoint") return entry;
    if (construction.Read(keys::kGivenCutPoint.key, cutPoint)) {
      construction.Put("givenCutPoint", cutPoint);
    } else {
      construction.Fail(codes.noCutPoint);
    }
  }
  return entry;
}

void CheckTwoClasses(TestConstruction& construction, const catalogue::TwoClassCodes& codes,
                     const TwoClassEntry& entry) {
  if (!construction.IsOK()) return;
  const VariableKind kind = construction.KindOf(entry.variable);
  const bool isContinuous = kind == VariableKind::Continuous;
  if (!isContinuous && !TestConstruction::IsCategorical(kind)) {
    construction.Fail(codes.unknownMeasure);
    return;
  }
  construction.Put("measureLevel", static_cast<double>(kind));
  const bool isCutPoint = entry.formation == "givenCutPoint" || entry.formation == "sampleMidPoint";
  if (isContinuous != isCutPoint) {
    construction.Fail(isContinuous ? codes.cutPointWanted : codes.categoriesWanted);
    return;
  }
  if (isContinuous || entry.givenTexts.empty()) return;
  const IQDVariable& variable = *construction.Planner().GetVariables().GetVarAt(entry.variable);
  const CategorySelection selection = SelectCategories(variable, entry.givenTexts);
  construction.Put("notUsedCategoryList", selection.otherCodes);
  construction.Put("notGivenOriginalCategoryList", selection.otherTexts);
  construction.Put("givenCategoryList", selection.codes);
}
