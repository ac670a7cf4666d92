#pragma once

#include <cstdint>
#include <optional>

#include "kit/fits/fitted_distribution.h"
#include "kit/summaries/moments.h"
#include "ranges/bytes.h"
#include "ranges/units.h"

/// What a distribution is fitted to, of one stretch of a sorted sample: those of neighbouring
/// stretches join.
class FittedSums {
 public:
  /// A value and how much it weighs.
  struct Cell {
    double value = QDMV::gMissingValue;
    std::int64_t weight = 0;

    friend bool operator==(const Cell&, const Cell&) = default;
  };

  /// Takes units that follow, of values that the distribution can take and of others.
  void Take(const FittedDistribution& wanted, const Units& units);
  /// Takes the stretch that follows.
  void Append(const FittedSums& next);

  /// Units of values that the distribution can take.
  [[nodiscard]] std::int64_t Count() const noexcept { return count; }
  /// Units of others.
  [[nodiscard]] std::int64_t Excluded() const noexcept { return excluded; }
  /// The smallest and the largest value that the distribution can take; no weight without one.
  [[nodiscard]] const Cell& First() const noexcept { return first; }
  [[nodiscard]] const Cell& Last() const noexcept { return last; }
  /// The first value that no count is, of a Poisson distribution, and the weight of one record.
  [[nodiscard]] const std::optional<Cell>& NoCount() const noexcept { return noCount; }
  /// The distribution with its estimates; nothing where there is nothing to fit it to.
  [[nodiscard]] std::optional<FittedDistribution> Fit(FittedDistribution wanted) const;

  void Write(ByteWriter& write) const;
  /// False for what can't have been written so.
  [[nodiscard]] bool Read(ByteReader& read);

 private:
  template <typename See>
  void Visit(See& see) {
    see(count);
    see(excluded);
    for (Cell* cell : {&first, &last}) {
      see(cell->value);
      see(cell->weight);
    }
    moments.Visit(see);
  }
  void TakeEnds(const Units& units);

  std::int64_t count = 0;
  std::int64_t excluded = 0;
  Cell first;
  Cell last;
  std::optional<Cell> noCount;
  Moments moments;
};
