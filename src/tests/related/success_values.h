#pragma once

#include "planning/test_construction.h"

/// Puts the entry's values of success under `key` as those of fields like that variable: numbers as
/// "successCategoryListNum", else texts as "successCategoryListStr". Fails without one.
void PutSuccessValues(TestConstruction& construction, const char* key, const IQDVariable& variable,
                      std::int32_t noValueCode);
