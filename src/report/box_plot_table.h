#pragma once

#include "foundation/names.h"
#include "kit/box_plot.h"

/// Appends "Box" and "Outliers" of one group. `hasCaseIds`: the run has a case identifier, so the
/// outliers are named by it.
void AddBoxPlotTables(XMLElement& parent, const GroupBoxPlot& plot, bool hasCaseIds);
