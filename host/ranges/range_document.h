#pragma once

#include "host/ranges/range_piece.h"
#include "host/render/result_model.h"
#include "host/request/analysis_documents.h"

namespace npar_host {

/// The results of a request of which all pieces were summed, as those of a run are told; without
/// what sums do not hold: distributions of values, medians, box plots. UsageError for a test of two
/// groups where the field has another number of them.
[[nodiscard]] ResultDocument DocumentOf(const RangePiece& whole, const AnalysisRequest& request);

}  // namespace npar_host
