#pragma once

#include "support/entry_run.h"

// Runs of a continuous variable "x" between the groups of "g", with a weight "n".

using Sample = std::vector<double>;
using Samples = std::vector<Sample>;

/// Two samples without ties.
inline const Sample kUntiedFirst{1.1, 2.2, 3.7, 5.4};
inline const Sample kUntiedSecond{0.4, 2.9, 6.3, 7.8, 9.1};
/// Two samples with ties inside and between them, on either side of zero.
inline const Sample kTiedFirst{-2, -1, 0, 0, 1, 3, 3.5, 4, 7};
inline const Sample kTiedSecond{-1.5, 0, 1, 2, 3, 5, 6, 6, 8, 9};
/// Three samples that rise.
inline const Samples kRising{{1, 2, 2, 3, 5}, {4, 5, 6, 6, 8, 9}, {7, 10, 11, 12}};

/// `count` values from `start` upward, one apart.
[[nodiscard]] inline Sample Ascending(double start, int count) {
  Sample sample;
  for (int i = 0; i < count; ++i) sample.push_back(start + i);
  return sample;
}

/// "x", a group variable "g" with these texts and a weight "n".
[[nodiscard]] inline QDVarList GroupedVariables(const Texts& categories, bool isOrdinal = false) {
  return VariableListBuilder()
      .Continuous("x")
      .Nominal("g", categories, isOrdinal)
      .Weight("n")
      .Build();
}

/// The same with the texts a, b, c, ...
[[nodiscard]] inline QDVarList GroupedVariables(std::size_t categories = 2) {
  Texts texts;
  for (std::size_t i = 0; i < categories; ++i) texts.emplace_back(1, static_cast<char>('a' + i));
  return GroupedVariables(texts);
}

/// Rows {x, group, 1}: the first sample is group 0, the next one group 1, and so on.
[[nodiscard]] inline Rows GroupedRows(const Samples& samples) {
  Rows rows;
  for (std::size_t group = 0; group < samples.size(); ++group) {
    for (const double x : samples[group]) rows.push_back({x, static_cast<double>(group), 1.0});
  }
  return rows;
}

/// An entry on "x" between the groups of "g".
[[nodiscard]] inline TestSettings GroupedEntry() {
  return Entry("variableName", "x", "groupVariableName", "g");
}

/// As GroupedEntry, with a comparison of several groups.
[[nodiscard]] inline TestSettings ComparedEntry(const char* comparison = "none") {
  return GroupedEntry().Put("typeOfMultipleComparison", comparison);
}

/// As GroupedEntry, with two lists of values of the group variable.
template <typename Value>
[[nodiscard]] TestSettings ListedEntry(const std::vector<Value>& first,
                                       const std::vector<Value>& second) {
  return GroupedEntry().Put("userSpecifyGroupList", "true", "group1List", first, "group2List",
                            second);
}

/// Runs an entry on samples; their group variable has as many categories.
[[nodiscard]] inline AlgorithmElement RunOnSamples(const std::string& entryName,
                                                   const Samples& samples,
                                                   const TestSettings& entry = GroupedEntry()) {
  return RunEntry(GroupedVariables(samples.size()), GroupedRows(samples), entryName, entry);
}
