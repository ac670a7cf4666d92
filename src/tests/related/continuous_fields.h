#pragma once

#include "catalogue/shared_codes.h"
#include "planning/test_construction.h"

/// How many fields a test takes.
enum class FieldCount { Two, TwoOrMore };

/// The continuous fields of the list "variableName": found, put as "variableIndex", counted,
/// checked, and registered with the planner up to the first one that does not fit.
void LookUpContinuousFields(TestConstruction& construction,
                            const catalogue::ContinuousFieldsCodes& codes, FieldCount count);
