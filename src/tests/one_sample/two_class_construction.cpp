#include "tests/one_sample/two_class_construction.h"

#include <string>
#include <vector>

#include "kit/category_selection.h"

void ReadTwoClasses(TestConstruction& construction, const TwoClassCodes& codes) {
  NPARPlanner& planner = construction.Planner();

  const std::int32_t index =
      construction.LookUpVariable("variableName", codes.noVariableName, codes.unknownVariable);
  if (index < 0) return;
  construction.Put("variableIndex", index);
  const VariableKind kind = construction.KindOf(index);
  const bool isContinuous = kind == VariableKind::Continuous;
  const bool isCategorical = TestConstruction::IsCategorical(kind);
  if (isCategorical) planner.RegisterStatistic(index, Statistic::Frequencies);
  if (isContinuous) planner.RegisterSortedVariable(index);

  std::string formation = "getFromData";
  std::vector<std::string> givenTexts;
  if (construction.Read("catVarClassFormation", formation)) {
    construction.Put("classFormation", formation);
    if (formation == "givenCategoryList") {
      static_cast<void>(construction.Read("givenCategoryList", givenTexts));
      if (givenTexts.empty()) {
        construction.Fail(codes.noCategoryList);
        return;
      }
      construction.Put("originalGivenCategoryList", givenTexts);
    }
  } else if (construction.Read("contVarClassFormation", formation)) {
    construction.Put("classFormation", "givenCutPoint");
    if (double cutPoint = 0.0; formation == "givenCutPoint") {
      if (!construction.Read("givenCutPoint", cutPoint)) {
        construction.Fail(codes.noCutPoint);
        return;
      }
      construction.Put("givenCutPoint", cutPoint);
    }
  }

  if (!isContinuous && !isCategorical) {
    construction.Fail(codes.unknownLevel);
    return;
  }
  construction.Put("measureLevel", static_cast<double>(kind));
  const bool isCutPoint = formation == "givenCutPoint" || formation == "sampleMidPoint";
  if (isContinuous && !isCutPoint) construction.Fail(codes.cutPointWanted);
  if (isCategorical && isCutPoint) construction.Fail(codes.categoriesWanted);
  if (construction.IsOK() && isCategorical && !givenTexts.empty()) {
    const CategorySelection selection =
        SelectCategories(*planner.GetVariables().GetVarAt(index), givenTexts);
    construction.Put("notUsedCategoryList", selection.otherCodes);
    construction.Put("notGivenOriginalCategoryList", selection.otherTexts);
    construction.Put("givenCategoryList", selection.codes);
  }
}
