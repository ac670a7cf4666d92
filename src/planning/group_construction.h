#pragma once

#include <cstdint>

#include "planning/test_construction.h"

/// Makes a k-sample test, asks for what it reads of its variables and gives it to the planner,
/// which drives it over the records ascending by the test variable.
template <typename Test>
std::unique_ptr<NPARTest> AddGroupTest(TestConstruction& construction,
                                       TestConstruction::TestAndGroup variables) {
  NPARPlanner& planner = construction.Planner();
  if (planner.GetCaseIdIndex() >= 0) {
    construction.Put("caseIdVariableIndex", planner.GetCaseIdIndex());
  }
  if (construction.IsOK()) {
    planner.RegisterGroupVariable(variables.group);
    planner.RegisterSortedVariable(variables.variable);
    construction.Put("numberOfCategories", construction.CategoriesOf(variables.group)->Size());
  }
  construction.SortBy(variables.variable);
  return construction.Make<Test>();
}
