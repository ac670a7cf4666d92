#pragma once

#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/groups/group_tally.h"
#include "kit/summaries/box_plot.h"

/// Appends "Box" and "Outliers" of one group. `hasCaseIds`: the run has a case identifier, so the
/// outliers are named by it.
void AddBoxPlotTables(XMLElement& parent, const GroupBoxPlot& plot, bool hasCaseIds);

/// Appends "BoxPlotInfo" with a table for each group with data; `meanRanks` by their places, empty
/// for a test without.
void AddBoxPlotInfo(XMLElement& algorithm, const GroupTally& tally, std::int64_t groupCount,
                    const std::vector<double>& meanRanks = {});
