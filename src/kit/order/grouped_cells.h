#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

/// Cells of one width that follow each other on the line of numbers; the first and the last one are
/// open. Of two values the higher one is never in a lower cell.
class ValueCells {
 public:
  static constexpr std::size_t kMost = 4095;

  /// At most kMost cells for values of which these are a sample without what is no number: the open
  /// cells hold few of them. Nothing where that makes cells too narrow for doubles.
  [[nodiscard]] static std::optional<ValueCells> Over(std::vector<double> sample,
                                                      std::size_t count);

  [[nodiscard]] std::size_t Count() const noexcept { return static_cast<std::size_t>(last) + 1; }
  [[nodiscard]] std::int32_t CellOf(double x) const noexcept {
    const double at = (x - low) * perUnit;
    const double fromFirst = at > 0.0 ? at : 0.0;
    return static_cast<std::int32_t>(fromFirst < last ? fromFirst : last);
  }
  /// Of each of some values.
  void Find(const double* values, std::size_t count, std::uint16_t* found) const noexcept;
  /// A number inside a cell.
  [[nodiscard]] double MiddleOf(std::size_t cell) const noexcept {
    return low + (static_cast<double>(cell) + 0.5) / perUnit;
  }

 private:
  ValueCells(double low, double perUnit, double last) noexcept
      : low(low), perUnit(perUnit), last(last) {}

  double low;
  double perUnit;
  double last;  // whole
};

/// What a reader looks at in the ascending order of some groups' values.
struct WantedPlaces {
  /// The values up to a bound and the next one; those from a bound on, and before them the last
  /// ones, as far as a step of more than `step` leads from one to the next.
  struct Tails {
    double upTo;
    double from;
    double step;
  };
  struct OfGroup {
    std::vector<std::int64_t> ranks;  ///< of units, from 1
    std::optional<Tails> tails;
  };
  std::vector<OfGroup> groups;
  std::vector<std::int64_t> ranks;  ///< among the units of all groups
  std::vector<double> values;       ///< where values of all groups are told apart

  [[nodiscard]] bool AreNone() const noexcept;
};

/// Finds the values at wanted places of an order without the order (selection; D. E. Knuth, The Art
/// of Computer Programming 3, 5.3.3, on selecting in general).
///
/// Values are counted by cell and group. The counts tell in which cell each wanted place is; only
/// the values of such cells, and of those at either end of a group, need to be put in order, since
/// of the others the number is all that counts.
class GroupedCells {
 public:
  /// Throws std::bad_alloc.
  GroupedCells(const ValueCells& cells, std::size_t groupCount, bool isWeighted);

  /// Of a value that is to be left out.
  [[nodiscard]] std::uint16_t NoCell() const noexcept {
    return static_cast<std::uint16_t>(cells.Count());
  }
  /// Where values stand in the table, by their cells and groups: left out where their group is not
  /// one from 0 on.
  void Find(const std::uint16_t* cellOf, const std::int32_t* groups, std::size_t count,
            std::uint32_t* places) const noexcept;
  void Count(const std::uint32_t* places, std::size_t count) noexcept;
  /// False for a weight that is no whole number from 1 on: then the counts are of no use.
  bool CountWeighted(const std::uint32_t* places, const double* weights,
                     std::size_t count) noexcept;
  /// What another one with the same cells has counted.
  void Add(const GroupedCells& other) noexcept;

  [[nodiscard]] const ValueCells& Cells() const noexcept { return cells; }
  [[nodiscard]] std::size_t GroupCount() const noexcept { return groupCount; }
  [[nodiscard]] std::int32_t GroupAt(std::uint32_t place) const noexcept {
    return static_cast<std::int32_t>(place >> shift);
  }
  [[nodiscard]] std::uint32_t RecordsAt(std::size_t cell, std::size_t group) const noexcept {
    return records[PlaceOf(cell, group)];
  }
  [[nodiscard]] std::int64_t UnitsAt(std::size_t cell, std::size_t group) const noexcept {
    const std::size_t place = PlaceOf(cell, group);
    return units.empty() ? std::int64_t{records[place]} : units[place];
  }
  /// Of all groups.
  [[nodiscard]] std::int64_t TotalUnits() const noexcept;

  /// Chooses the cells that hold wanted places; none where none are wanted.
  void Choose(const WantedPlaces& wanted);
  /// By place: is it chosen?
  [[nodiscard]] const std::uint8_t* Chosen() const noexcept { return chosen.data(); }
  [[nodiscard]] bool IsChosen(std::size_t cell, std::size_t group) const noexcept {
    return chosen[PlaceOf(cell, group)] != 0;
  }
  [[nodiscard]] std::size_t ChosenRecords() const noexcept;
  /// The lowest of the cells that were chosen for the upper tail of a group.
  [[nodiscard]] std::size_t UpperTailOf(std::size_t group) const noexcept {
    return upperTails[group];
  }

 private:
  [[nodiscard]] std::size_t PlaceOf(std::size_t cell, std::size_t group) const noexcept {
    return (group << shift) + cell;
  }
  void Choose(std::size_t cell, std::size_t group) noexcept { chosen[PlaceOf(cell, group)] = 1; }
  void ChooseCell(std::size_t cell) noexcept;
  void ChooseRankOfAll(std::int64_t rank) noexcept;
  void ChooseRank(std::size_t group, std::int64_t rank) noexcept;
  void ChooseEnds(std::size_t group) noexcept;
  void ChooseTails(std::size_t group, const WantedPlaces::Tails& tails) noexcept;

  ValueCells cells;
  std::size_t groupCount;
  int shift;  // the cells of a group, with one for what is left out, take a power of two
  // By group, then by cell; a group more for values of none.
  std::vector<std::uint32_t> records;
  std::vector<std::int64_t> units;   // likewise; empty where each record is one
  std::vector<std::uint8_t> chosen;  // likewise
  std::vector<std::size_t> upperTails;
};
