#pragma once

#include "planning/test_construction.h"

/// Puts the entry's values of success under `key` as those of fields of that kind: numbers as
/// "successCategoryListNum", else texts as "successCategoryListStr". Fails without one.
void PutSuccessValues(TestConstruction& construction, const char* key, VariableKind kind,
                      std::int32_t noValueCode);
