#pragma once

#include <string>
#include <vector>

#include "support/algorithm_element.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

using Sample = std::vector<double>;

/// `count` values from `start` upward, one apart.
[[nodiscard]] inline Sample Ascending(double start, int count) {
  Sample sample;
  for (int i = 0; i < count; ++i) sample.push_back(start + i);
  return sample;
}

/// The variables of a run between groups: "x", a group variable "g" with the texts a, b, c, ... and
/// a weight "n".
[[nodiscard]] inline QDVarList GroupedVariables(std::size_t categories = 2) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < categories; ++i) texts.emplace_back(1, static_cast<char>('a' + i));
  return VariableListBuilder().Continuous("x").Nominal("g", texts).Weight("n").Build();
}

/// Rows {x, group, 1}: the first list is group 0, the next one group 1, and so on.
[[nodiscard]] inline Rows GroupedRows(const std::vector<Sample>& samples) {
  Rows rows;
  for (std::size_t group = 0; group < samples.size(); ++group) {
    for (const double x : samples[group]) rows.push_back({x, static_cast<double>(group), 1.0});
  }
  return rows;
}

/// An entry on "x" between the groups of "g".
[[nodiscard]] inline TestSettings GroupedEntry() {
  TestSettings entry;
  entry.Put("variableName", "x").Put("groupVariableName", "g");
  return entry;
}

/// As GroupedEntry, with two lists of values of the group variable.
template <typename Value>
[[nodiscard]] TestSettings ListedEntry(const std::vector<Value>& first,
                                       const std::vector<Value>& second) {
  TestSettings entry = GroupedEntry();
  entry.Put("userSpecifyGroupList", "true");
  entry.Put("group1List", first).Put("group2List", second);
  return entry;
}

/// Runs an entry of the default groups on two samples.
[[nodiscard]] inline AlgorithmElement RunOnSamples(const std::string& entryName,
                                                   const Sample& first, const Sample& second) {
  return RunEntry(GroupedVariables(), GroupedRows({first, second}), entryName,
                  GroupedEntry().Get());
}
