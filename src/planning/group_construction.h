#pragma once

#include <cstdint>

#include "catalogue/shared_codes.h"
#include "planning/test_construction.h"

/// Asks for what is read and shown of the variables, of each that fits: also where another problem
/// of the entry fails the test, so that the document lists its fields.
inline void RegisterTestAndGroup(TestConstruction& construction,
                                 TestConstruction::TestAndGroup variables) {
  NPARPlanner& planner = construction.Planner();
  if (construction.KindOf(variables.variable) == VariableKind::Continuous) {
    planner.RegisterSortedVariable(variables.variable);
  }
  if (TestConstruction::IsCategorical(construction.KindOf(variables.group))) {
    planner.RegisterGroupVariable(variables.group);
  }
}

/// The variables of a test of several groups in no order: found, checked, put and asked for.
inline TestConstruction::TestAndGroup LookUpSeveralGroups(
    TestConstruction& construction, const catalogue::SeveralGroupsCodes& codes) {
  const auto variables = construction.LookUpTestAndGroup(
      {codes.unknownVariable, codes.unknownVariable, codes.unknownVariable, codes.notContinuous,
       codes.notCategorical, false});
  construction.PutTestAndGroup(variables);
  RegisterTestAndGroup(construction, variables);
  return variables;
}

/// Makes a k-sample test and gives it to the planner, which drives it over the records ascending by
/// the test variable.
template <typename Test>
std::unique_ptr<NPARTest> AddGroupTest(TestConstruction& construction,
                                       TestConstruction::TestAndGroup variables) {
  NPARPlanner& planner = construction.Planner();
  if (planner.GetCaseIdIndex() >= 0) {
    construction.Put("caseIdVariableIndex", planner.GetCaseIdIndex());
  }
  if (construction.IsOK()) {
    construction.Put("numberOfCategories", construction.CategoriesOf(variables.group)->Size());
  }
  construction.SortBy(variables.variable);
  return construction.Make<Test>();
}
