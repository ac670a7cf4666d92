#pragma once

#include <string_view>

#include "foundation/names.h"
#include "kit/comparisons/multiple_comparisons.h"

/// Appends the table "PairwiseResult" or "StepwiseResult" of a comparison that has run; nothing
/// otherwise, nor for no pair. `pairwiseValues`, unless empty, stands in the place of the samples'
/// measures, ";"-joined.
void WriteComparison(XMLElement& algorithm, const MultipleComparison& comparison,
                     std::string_view pairwiseValues = {});
