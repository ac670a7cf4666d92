#pragma once

#include <cstddef>

#include "host/render/result_model.h"
#include "host/render/text_layout.h"

namespace npar_host {

/// The pairwise comparisons of a test as a table, the stepwise ones as homogeneous subsets: samples
/// in their order, one column for each subset. Nothing where the test has none.
void WriteComparisons(TextPage& page, const ResultDocument& document, const ResultTest& test,
                      std::size_t indent);

}  // namespace npar_host
