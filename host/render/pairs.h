#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// A pair of samples, by their positions in the comparison.
struct SamplePair {
  std::size_t row = 0;  // of the comparison's content
  std::size_t first = 0;
  std::size_t second = 0;
  double significance = 1.0;  // that it is judged by; not a number where the document has none
};

/// The column of the comparison's content, or its number of columns without such a column.
[[nodiscard]] std::size_t ContentColumn(const ResultComparison& comparison, std::string_view name);

/// "Pairwise comparisons: significances are two-sided, adjusted ones after Holm".
[[nodiscard]] std::string PairwiseCaption(const ResultComparison& comparison);
/// What tells whether a pair differs: "significance after Holm".
[[nodiscard]] std::string JudgedBy(const ResultComparison& comparison);
/// What stands above a column of the content: "Std. statistic", "Holm sig.".
[[nodiscard]] std::string PairLabel(const ResultComparison& comparison, std::string_view column);
/// The text of the pair in that column of the content. Under "AdjSig" stands the adjusted
/// significance that pairs are judged by.
[[nodiscard]] std::string PairCell(const ResultComparison& comparison, const SamplePair& pair,
                                   std::size_t column);

/// What stands above the subsets of a stepwise comparison.
inline constexpr const char* kSubsetsCaption =
    "Homogeneous subsets: samples in one column do not differ; adjusted significances after Ryan, "
    "Einot and Gabriel";

/// Rows of the comparison whose positions exist.
[[nodiscard]] std::vector<SamplePair> Pairs(const ResultComparison& comparison);

/// The pairs that a page lists, in the document's order: all, or of too many to be read the most
/// significant.
[[nodiscard]] std::vector<SamplePair> ListedPairs(const ResultComparison& comparison);
/// Says how many pairs are not listed and where they are; empty where all are.
[[nodiscard]] std::string UnlistedPairs(const ResultComparison& comparison);

}  // namespace npar_host
