#pragma once

#include <string>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// What the data show that a reader of the test should know and the component does not say:
/// parameters that come from the same data, groups too small for an asymptotic significance, groups
/// whose spreads differ so much that a test of ranks is none of medians.
[[nodiscard]] std::vector<std::string> ReadingNotes(const ResultDocument& document,
                                                    const ResultTest& test);

}  // namespace npar_host
