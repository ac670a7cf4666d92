#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// Tables of a test's comparisons as markup; each is empty where the test has none. `id` is unique
/// in the page and begins the tables' ids.

/// Pairs of samples: all figures of each, or of more than an eye can trace the few that tell
/// whether they differ, folded.
[[nodiscard]] std::string PairwiseTable(const ResultDocument& document, const ResultTest& test,
                                        const std::string& id);
/// Homogeneous subsets: samples in rows, subsets in columns; many subsets make several tables.
[[nodiscard]] std::string SubsetsTables(const ResultDocument& document, const ResultTest& test,
                                        const std::string& id);

}  // namespace npar_host
