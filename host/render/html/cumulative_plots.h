#pragma once

#include <optional>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Distribution functions of the Kolmogorov-Smirnov tests, as far as the document's bins tell them.

/// Those of two groups with their greatest distance; nothing for other tests.
[[nodiscard]] std::optional<Plot> TwoSampleFunctions(const ResultDocument& document,
                                                     const ResultTest& test);
/// That of a field beside the hypothesised one; nothing for other tests.
[[nodiscard]] std::optional<Plot> OneSampleFunctions(const ResultDocument& document,
                                                     const ResultTest& test);

}  // namespace npar_host
