#pragma once

#include <string_view>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// The adjustment of that name, "bonferroni", "holm" or "bh"; None for any other.
[[nodiscard]] Adjustment FindAdjustment(std::string_view name);
/// What a report calls it: "Holm"; empty for None.
[[nodiscard]] std::string_view AdjustmentTitle(Adjustment adjustment);

/// Bonferroni and Holm hold the chance of any false rejection (Holm, Scandinavian Journal of
/// Statistics 6, 1979), Benjamini and Hochberg the share of false ones (Journal of the Royal
/// Statistical Society B 57, 1995). None leaves them as they are.
[[nodiscard]] std::vector<double> Adjusted(const std::vector<double>& significances,
                                           Adjustment adjustment);

/// The significances of the rows of a pairwise comparison, adjusted over all its pairs; not a
/// number where the document has none. Those after Bonferroni are the document's own.
[[nodiscard]] std::vector<double> AdjustedPairs(const ResultComparison& comparison,
                                                Adjustment adjustment);

/// Gives each test of the document its significance adjusted over all of them. Decisions stay as
/// the document has them.
void AdjustOverTests(ResultDocument& document, Adjustment adjustment);
/// Makes the pairs of each comparison be judged by significances so adjusted.
void AdjustPairs(ResultDocument& document, Adjustment adjustment);

}  // namespace npar_host
