#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "kit/ranks/ties.h"

/// The number of runs in two groups of units merged in ascending order.
///
/// Ties make a block: the order of the units inside it is open, so that there is a smallest and a
/// largest possible number of runs, over all orders inside all blocks. A record of weight w is w
/// units; one of weight 0 is none.
class MergedRuns {
 public:
  /// The next value in ascending order; the group is 0 or 1.
  void Add(double x, std::size_t group, std::int64_t weight) noexcept {
    if (blocks.Begins(x)) CloseBlock();
    block[group] += weight;
  }
  /// Ends the last block; once, after the last value.
  void Finish() noexcept { CloseBlock(); }

  [[nodiscard]] std::int64_t Minimum() const noexcept;
  [[nodiscard]] std::int64_t Maximum() const noexcept;
  /// Blocks that hold units of both groups.
  [[nodiscard]] std::int64_t InterGroupTies() const noexcept { return interGroupTies; }

 private:
  using PerGroup = std::array<std::int64_t, 2>;

  void CloseBlock() noexcept;
  void CloseBlockOfOne(std::size_t group) noexcept;
  void CloseBlockOfBoth() noexcept;

  TieRuns blocks;
  PerGroup block{0, 0};  // units of each group in the open block
  // The best number of runs so far by the group of the last unit.
  PerGroup fewest{0, 0};
  PerGroup most{0, 0};
  bool hasUnits = false;
  std::int64_t interGroupTies = 0;
};
