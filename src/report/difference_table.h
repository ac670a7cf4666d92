#pragma once

#include "foundation/names.h"
#include "kit/groups/paired_differences.h"

/// "ContinuousDistribution" of paired differences: the counts on either side of zero and the
/// histogram.
void AddDifferenceTable(XMLElement& algorithm, const PairedDifferences& differences);
