#pragma once

#include <cstdint>

#include "planning/test_construction.h"

/// How many fields a test takes.
enum class FieldCount { Two, TwoOrMore };

struct ContinuousFieldsCodes {
  std::int32_t noVariableName;   ///< the entry names no fields
  std::int32_t unknownVariable;  ///< parameter: the name
  std::int32_t wrongCount;
  std::int32_t notContinuous;  ///< parameter: the variable's index
};

/// The continuous fields of the list "variableName": found, put as "variableIndex", counted,
/// checked, and registered with the planner up to the first one that does not fit.
void LookUpContinuousFields(TestConstruction& construction, const ContinuousFieldsCodes& codes,
                            FieldCount count);
