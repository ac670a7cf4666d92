#include "host/render/pairs.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace npar_host {
namespace {

constexpr std::size_t kPositionColumns = 2;
constexpr std::size_t kMostListed = 2000;

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

std::vector<SamplePair> Pairs(const ResultComparison& comparison) {
  const std::size_t column = ContentColumn(comparison, "AdjSig");
  const TextRows& rows = comparison.content.rows;
  std::vector<SamplePair> pairs;
  pairs.reserve(rows.size());
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const TextRows::Row cells = rows[row];
    if (cells.size() < kPositionColumns) continue;
    const auto first = Position(comparison, cells[0]);
    const auto second = Position(comparison, cells[1]);
    if (!first || !second) continue;
    const auto p = column < cells.size() ? FigureNumber(cells[column]) : std::nullopt;
    pairs.push_back({row, *first, *second, p.value_or(NAN)});
  }
  return pairs;
}

std::vector<SamplePair> ListedPairs(const ResultComparison& comparison) {
  std::vector<SamplePair> pairs = Pairs(comparison);
  if (pairs.size() <= kMostListed) return pairs;
  const auto rank = [](const SamplePair& pair) {
    return std::pair(std::isnan(pair.adjusted) ? 2.0 : pair.adjusted, pair.row);
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
