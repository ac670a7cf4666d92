#pragma once

#include <cstdint>
#include <vector>

#include "kit/contract/settings_reader.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"

/// Two categorical fields of a test; -1 where there is none.
struct CategoryPair {
  CategoryPair() = default;
  /// Reads "variablePairFirstIndex" and "variablePairSecondIndex" of a test's settings.
  explicit CategoryPair(const SettingsReader& settings);
  [[nodiscard]] Condition ConditionOf(const char* key) const;

  std::int32_t first = -1;
  std::int32_t second = -1;
};

struct CategoryPairCodes {
  std::int32_t noVariableName;
  std::int32_t notTwoVariables;
  /// No such field (parameter: the name), or not categorical.
  std::int32_t unfitVariable;
};

/// Reads "variableName" of an entry and puts the pair as the test's settings have it.
CategoryPair LookUpCategoryPair(TestConstruction& construction, const CategoryPairCodes& codes);
