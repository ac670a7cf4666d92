#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/render/html/drawing.h"
#include "host/render/pairs.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Samples as nodes at their mean rank (median, successes), pairs as edges; those that differ at
/// the level are thick and solid, the others thin and dashed. Nothing without comparisons, and of
/// more pairs than an eye can trace.
[[nodiscard]] std::optional<Plot> PairwiseGraph(const ResultDocument& document,
                                                const ResultTest& test);

/// What the samples of a multiple comparison are ordered by: "Mean rank".
[[nodiscard]] std::string ComparedMeasure(const ResultTest& test);
/// The same inside a sentence: "mean rank".
[[nodiscard]] std::string ComparedMeasureWords(const ResultTest& test);
/// What each sample is placed by; its position where the document does not tell.
[[nodiscard]] std::vector<double> ComparedValues(const ResultComparison& comparison);
/// Are the pairs few enough to be drawn as lines?
[[nodiscard]] bool IsTraceable(const ResultComparison& comparison);
/// The first pairs that differ at the level, in words.
[[nodiscard]] std::string PairWords(const ResultDocument& document, const ResultTest& test,
                                    const std::vector<SamplePair>& pairs);

}  // namespace npar_host
