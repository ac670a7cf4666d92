#pragma once

#include <cstdint>

#include "planning/test_construction.h"

/// Two categorical fields of a test; -1 where there is none.
struct CategoryPair {
  std::int32_t first = -1;
  std::int32_t second = -1;
};

struct CategoryPairCodes {
  std::int32_t noVariableName;
  std::int32_t notTwoVariables;
  /// No such field (parameter: the name), or not categorical.
  std::int32_t unfitVariable;
};

/// Reads "variableName" of an entry and puts "variablePairFirstIndex" and
/// "variablePairSecondIndex".
CategoryPair ReadCategoryPair(TestConstruction& construction, const CategoryPairCodes& codes);
