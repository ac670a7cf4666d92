#include "tests/related/continuous_fields.h"

#include <string>
#include <vector>

void LookUpContinuousFields(TestConstruction& construction,
                            const catalogue::ContinuousFieldsCodes& codes, FieldCount count) {
  const std::vector<std::int32_t> variables =
      construction.LookUpList(codes.noVariables, codes.unknownVariable);
  construction.Put("variableIndex", variables);
  const bool isCountRight =
      count == FieldCount::Two ? variables.size() == 2 : variables.size() >= 2;
  if (!isCountRight) construction.Fail(codes.wrongCount);
  if (!construction.IsOK()) return;

  NPARPlanner& planner = construction.Planner();
  for (const std::int32_t index : variables) {
    const std::int32_t level = planner.GetVariableLevel(planner.GetVarInfo().GetName(index));
    if (level != static_cast<std::int32_t>(VariableKind::Continuous)) {
      construction.Fail(codes.notContinuous, std::to_string(index));
      return;
    }
    planner.RegisterSortedVariable(index);
  }
}
