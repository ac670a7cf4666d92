#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/shared_codes.h"
#include "planning/test_construction.h"

/// Errors of the entry of a two-group test.
struct TwoGroupEntryCodes {
  TwoGroupEntryCodes(const catalogue::TwoGroupCodes& codes)
      : variables{codes.noVariable, codes.noGroup, codes.unknownVariable, codes.notContinuous,
                  codes.notCategorical},
        emptyList(codes.noGroupValues) {}
  TwoGroupEntryCodes(const TestConstruction::TestAndGroupCodes& variables, std::int32_t emptyList,
                     std::int32_t notTwoCategories)
      : variables(variables), emptyList(emptyList), notTwoCategories(notTwoCategories) {}

  TestConstruction::TestAndGroupCodes variables;
  std::int32_t emptyList;             ///< lists are announced and one is empty or absent
  std::int32_t notTwoCategories = 0;  ///< default groups without exactly two categories; 0: the
                                      ///< test looks for itself
};

/// Finds the variables and the groups of an entry and puts what TwoGroups reads.
///
/// Without "userSpecifyGroupList", the groups are the categories 0 and 1, the one of the lower
/// value first unless the group variable is ordinal. With it, "group1List" and "group2List" hold
/// values of the group variable; a value that is no category is put as -1.
TestConstruction::TestAndGroup ResolveTwoGroups(TestConstruction& construction,
                                                const TwoGroupEntryCodes& codes);

/// Makes the test, asks for what it reads of its variables and gives it to the planner, which
/// drives it over the records ascending by the test variable.
template <typename Test>
std::unique_ptr<NPARTest> AddTwoGroupTest(TestConstruction& construction,
                                          TestConstruction::TestAndGroup variables) {
  NPARPlanner& planner = construction.Planner();
  if (construction.IsOK()) {
    planner.RegisterGroupVariable(variables.group);
    planner.RegisterSortedVariable(variables.variable);
  }
  construction.SortBy(variables.variable);
  return construction.Make<Test>();
}
