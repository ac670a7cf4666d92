#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/data/reshape.h"

namespace npar_host {

/// "F=a<b<c" gives the categories the scores 1, 2, 3 in this order, "F=a=0,b=2.5" those that stand
/// there; F may be a range or a pattern. Throws UsageError for anything else.
[[nodiscard]] std::vector<Scoring> ParseScores(std::string_view text,
                                               const std::vector<std::string>& columns);

}  // namespace npar_host
