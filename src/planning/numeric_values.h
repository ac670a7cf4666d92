#pragma once

#include <string_view>
#include <vector>

#include "planning/test_construction.h"

/// The entry's list of values of a numeric variable: numbers, or the dates and times that the
/// variable's numbers stand for. Empty where it is absent or holds anything else.
[[nodiscard]] std::vector<double> ReadNumericValues(const TestConstruction& construction,
                                                    std::string_view key,
                                                    const IQDVariable& variable);
