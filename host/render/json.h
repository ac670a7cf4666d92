#pragma once

#include "host/render/result_model.h"
#include "host/render/text_sink.h"

namespace npar_host {

/// The report as JSON (UTF-8, indented by two): schema/report.schema.json describes it,
/// docs/json.md shows it in use. Figures are numbers; one that is not finite is null and stands as
/// text under its key with "Text" added, a missing one is null.
void RenderJson(const ResultDocument& document, const TextSink& sink);

/// The tests of that report alone, an array, without the bins of their distributions.
void RenderTestsJson(const ResultDocument& document, const TextSink& sink);

/// Of each of these the name, kind, decision, significance and statistic alone.
void RenderFiguresJson(const ResultDocument& document, const TextSink& sink);

}  // namespace npar_host
