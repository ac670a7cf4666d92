#include "kit/order/grouped_cells.h"

#include <bit>
#include <cmath>

std::optional<ValueCells> ValueCells::Over(std::vector<double> sample, std::size_t count) {
  constexpr std::size_t kShareOutside = 512;  // one in so many lies beyond either end
  constexpr double kNarrowest = 0x1p-40;      // over the largest value
  if (sample.empty() || count < 2 || count > kMost) return std::nullopt;
  std::sort(sample.begin(), sample.end());
  const std::size_t outside = sample.size() / kShareOutside;
  const double low = sample[outside];
  const double high = sample[sample.size() - 1 - outside];
  const double width = (high - low) / static_cast<double>(count);
  const double largest = std::max(std::fabs(low), std::fabs(high));
  // Not for infinities either.
  if (!(width > kNarrowest * largest && width < std::numeric_limits<double>::infinity())) {
    return std::nullopt;
  }
  if (!std::isnormal(1.0 / width)) return std::nullopt;
  return ValueCells(low, 1.0 / width, static_cast<double>(count - 1));
}

void ValueCells::Find(const double* values, std::size_t count,
                      std::uint16_t* found) const noexcept {
  const ValueCells cells = *this;  // in registers, with which several values go at a time
  for (std::size_t i = 0; i < count; ++i) {
    found[i] = static_cast<std::uint16_t>(cells.CellOf(values[i]));
  }
}

bool WantedPlaces::AreNone() const noexcept {
  return ranks.empty() && values.empty() &&
         std::all_of(groups.begin(), groups.end(),
                     [](const OfGroup& group) { return group.ranks.empty() && !group.tails; });
}

GroupedCells::GroupedCells(const ValueCells& cells, std::size_t groupCount, bool isWeighted)
    : cells(cells),
      groupCount(groupCount),
      shift(std::countr_zero(std::bit_ceil(cells.Count() + 1))),
      records((groupCount + 1) << shift),
      units(isWeighted ? records.size() : 0),
      chosen(records.size()),
      upperTails(groupCount) {}

void GroupedCells::Find(const std::uint16_t* cellOf, const std::int32_t* groups, std::size_t count,
                        std::uint32_t* places) const noexcept {
  const auto none = static_cast<std::int32_t>(groupCount);
  const int up = shift;
  for (std::size_t i = 0; i < count; ++i) {
    const std::int32_t group = groups[i];
    const bool isGroup = (group >= 0) & (group < none);
    places[i] = static_cast<std::uint32_t>(((isGroup ? group : none) << up) + cellOf[i]);
  }
}

void GroupedCells::Count(const std::uint32_t* places, std::size_t count) noexcept {
  std::uint32_t* table = records.data();
  for (std::size_t i = 0; i < count; ++i) ++table[places[i]];
}

bool GroupedCells::CountWeighted(const std::uint32_t* places, const double* weights,
                                 std::size_t count) noexcept {
  const auto isUnits = [](double weight) { return weight >= 1.0 && weight == std::floor(weight); };
  if (!std::all_of(weights, weights + count, isUnits)) return false;
  Count(places, count);
  for (std::size_t i = 0; i < count; ++i) units[places[i]] += static_cast<std::int64_t>(weights[i]);
  return true;
}

void GroupedCells::Add(const GroupedCells& other) noexcept {
  for (std::size_t i = 0; i < records.size(); ++i) records[i] += other.records[i];
  for (std::size_t i = 0; i < units.size(); ++i) units[i] += other.units[i];
}

std::int64_t GroupedCells::TotalUnits() const noexcept {
  std::int64_t total = 0;
  for (std::size_t cell = 0; cell < cells.Count(); ++cell) {
    for (std::size_t group = 0; group < groupCount; ++group) total += UnitsAt(cell, group);
  }
  return total;
}

void GroupedCells::Choose(const WantedPlaces& wanted) {
  std::fill(chosen.begin(), chosen.end(), std::uint8_t{0});
  if (wanted.AreNone()) return;
  for (const double x : wanted.values) ChooseCell(static_cast<std::size_t>(cells.CellOf(x)));
  for (const std::int64_t rank : wanted.ranks) ChooseRankOfAll(rank);
  for (std::size_t group = 0; group < groupCount; ++group) {
    ChooseEnds(group);
    if (group >= wanted.groups.size()) continue;
    for (const std::int64_t rank : wanted.groups[group].ranks) ChooseRank(group, rank);
    if (wanted.groups[group].tails) ChooseTails(group, *wanted.groups[group].tails);
  }
}

std::size_t GroupedCells::ChosenRecords() const noexcept {
  std::size_t count = 0;
  for (std::size_t cell = 0; cell < cells.Count(); ++cell) {
    for (std::size_t group = 0; group < groupCount; ++group) {
      if (IsChosen(cell, group)) count += RecordsAt(cell, group);
    }
  }
  return count;
}

void GroupedCells::ChooseCell(std::size_t cell) noexcept {
  for (std::size_t group = 0; group < groupCount; ++group) Choose(cell, group);
}

void GroupedCells::ChooseRankOfAll(std::int64_t rank) noexcept {
  std::int64_t upTo = 0;
  for (std::size_t cell = 0; cell < cells.Count(); ++cell) {
    const std::int64_t before = upTo;
    for (std::size_t group = 0; group < groupCount; ++group) upTo += UnitsAt(cell, group);
    if (before < rank && rank <= upTo) return ChooseCell(cell);
  }
}

void GroupedCells::ChooseRank(std::size_t group, std::int64_t rank) noexcept {
  std::int64_t upTo = 0;
  for (std::size_t cell = 0; cell < cells.Count(); ++cell) {
    const std::int64_t before = upTo;
    upTo += UnitsAt(cell, group);
    if (before < rank && rank <= upTo) return Choose(cell, group);
  }
}

void GroupedCells::ChooseEnds(std::size_t group) noexcept {
  std::size_t lowest = 0;
  while (lowest < cells.Count() && RecordsAt(lowest, group) == 0) ++lowest;
  if (lowest == cells.Count()) return;
  std::size_t highest = cells.Count() - 1;
  while (RecordsAt(highest, group) == 0) --highest;
  Choose(lowest, group);
  Choose(highest, group);
}

void GroupedCells::ChooseTails(std::size_t group, const WantedPlaces::Tails& tails) noexcept {
  const auto low = static_cast<std::size_t>(cells.CellOf(tails.upTo));
  for (std::size_t cell = 0; cell <= low; ++cell) Choose(cell, group);
  for (std::size_t cell = low + 1; cell < cells.Count(); ++cell) {
    if (RecordsAt(cell, group) == 0) continue;
    Choose(cell, group);
    break;
  }
  // Two cells with values below the bound's own are sure to hold a step unless all lie close.
  constexpr int kCellsBelow = 2;
  std::size_t lowest = static_cast<std::size_t>(cells.CellOf(tails.from));
  for (std::size_t cell = lowest; cell < cells.Count(); ++cell) Choose(cell, group);
  for (int below = 0; below < kCellsBelow && lowest > 0;) {
    --lowest;
    if (RecordsAt(lowest, group) == 0) continue;
    Choose(lowest, group);
    ++below;
  }
  upperTails[group] = lowest;
}
