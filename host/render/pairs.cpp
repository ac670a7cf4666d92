#include "host/render/pairs.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/data/number.h"
#include "host/render/adjustment.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kPositionColumns = 2;
constexpr std::size_t kMostListed = 2000;
constexpr std::string_view kAdjusted = "AdjSig";

// That of the column of adjusted significances: the document's own where pairs are not judged by
// it.
Adjustment ShownAdjustment(const ResultComparison& comparison) {
  const bool isOwn = comparison.adjustment == Adjustment::None;
  return isOwn ? Adjustment::Bonferroni : comparison.adjustment;
}

std::optional<std::size_t> Position(const ResultComparison& comparison, std::string_view cell) {
  const auto number = FigureNumber(cell);
  if (!number || !(*number >= 0.0 && *number < static_cast<double>(comparison.order.size()))) {
    return std::nullopt;
  }
  return static_cast<std::size_t>(*number);
}

}  // namespace

std::size_t ContentColumn(const ResultComparison& comparison, std::string_view name) {
  const auto& names = comparison.content.columnNames;
  return static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
}

std::string PairwiseCaption(const ResultComparison& comparison) {
  return "Pairwise comparisons: significances are two-sided, adjusted ones after " +
         std::string(AdjustmentTitle(ShownAdjustment(comparison)));
}

std::string JudgedBy(const ResultComparison& comparison) {
  if (comparison.adjustment == Adjustment::None) return "significance that is not adjusted";
  return "significance after " + std::string(AdjustmentTitle(comparison.adjustment));
}

std::string PairLabel(const ResultComparison& comparison, std::string_view column) {
  if (column != kAdjusted) return TableLabel(column);
  const Adjustment shown = ShownAdjustment(comparison);
  return std::string(shown == Adjustment::BenjaminiHochberg ? "BH" : AdjustmentTitle(shown)) +
         " sig.";
}

std::string PairCell(const ResultComparison& comparison, const SamplePair& pair,
                     std::size_t column) {
  const bool isRecomputed = comparison.adjustment == Adjustment::Holm ||
                            comparison.adjustment == Adjustment::BenjaminiHochberg;
  if (isRecomputed && comparison.content.columnNames[column] == kAdjusted) {
    return std::isnan(pair.significance) ? "" : NumberText(pair.significance);
  }
  const TextRows::Row cells = comparison.content.rows[pair.row];
  return column < cells.size() ? std::string(cells[column]) : "";
}

std::vector<SamplePair> Pairs(const ResultComparison& comparison) {
  const std::vector<double> significances = AdjustedPairs(comparison, comparison.adjustment);
  const TextRows& rows = comparison.content.rows;
  std::vector<SamplePair> pairs;
  pairs.reserve(rows.size());
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const TextRows::Row cells = rows[row];
    if (cells.size() < kPositionColumns) continue;
    const auto first = Position(comparison, cells[0]);
    const auto second = Position(comparison, cells[1]);
    if (!first || !second) continue;
    pairs.push_back({row, *first, *second, significances[row]});
  }
  return pairs;
}

std::vector<SamplePair> ListedPairs(const ResultComparison& comparison) {
  std::vector<SamplePair> pairs = Pairs(comparison);
  if (pairs.size() <= kMostListed) return pairs;
  const auto rank = [](const SamplePair& pair) {
    return std::pair(std::isnan(pair.significance) ? 2.0 : pair.significance, pair.row);
  };
  std::ranges::nth_element(pairs, pairs.begin() + kMostListed, {}, rank);
  pairs.resize(kMostListed);
  std::ranges::sort(pairs, {}, &SamplePair::row);
  return pairs;
}

std::string UnlistedPairs(const ResultComparison& comparison) {
  const std::size_t count = comparison.content.rows.size();
  if (count <= kMostListed) return {};
  return "Of " + std::to_string(count) + " pairs, the " + std::to_string(kMostListed) +
         " most significant are listed; the result document and its report as JSON have all.";
}

}  // namespace npar_host
