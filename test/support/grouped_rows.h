#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

/// Records of a continuous variable "x" at place 0 and the code of its group "g" at place 1: the
/// values of each group, in the order of the codes.
[[nodiscard]] inline Rows GroupedRows(const std::vector<std::vector<double>>& groups) {
  Rows rows;
  for (std::size_t code = 0; code < groups.size(); ++code) {
    for (const double value : groups[code]) {
      rows.push_back({value, static_cast<double>(code)});
    }
  }
  return rows;
}

/// The variables of such records with text categories.
[[nodiscard]] inline QDVarList GroupedVariables(const std::vector<std::string>& categories,
                                                bool isOrdinal = false) {
  return VariableListBuilder().Continuous("x").Nominal("g", categories, isOrdinal).Build();
}

/// The entry of a test of "x" between the groups "g".
[[nodiscard]] inline TestSettings GroupEntry(const std::string& comparison = "none") {
  TestSettings entry;
  entry.Put("variableName", "x").Put("groupVariableName", "g");
  entry.Put("typeOfMultipleComparison", comparison);
  return entry;
}
