#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/ranks/record_ranks.h"

/// Mid-ranks of the values of each record among themselves, as RecordRanks has them, for many
/// records at a time. Few fields are ranked by comparing whole columns.
class ColumnRanks {
 public:
  ColumnRanks() = default;
  /// For records of up to that many fields. Throws std::bad_alloc.
  explicit ColumnRanks(std::size_t mostFields);

  /// How many records fit.
  [[nodiscard]] std::size_t RecordsAtOnce() const noexcept { return recordsAtOnce; }
  /// Ranks `count` records, which stand at `first` in their columns.
  void Rank(const std::vector<const double*>& columns, std::size_t first,
            std::size_t count) noexcept;
  /// Twice the ranks of a field, less 2: 0, 1, ..., 2 k - 2 for k fields. By record.
  [[nodiscard]] const std::int32_t* StepsOf(std::size_t field) const noexcept {
    return steps.data() + field * recordsAtOnce;
  }

 private:
  /// Up to so many fields comparing each pair is quicker than sorting a record.
  static constexpr std::size_t kMostByComparison = 16;

  void CompareColumns(const std::vector<const double*>& columns, std::size_t first,
                      std::size_t count) noexcept;
  void RankRecord(const std::vector<const double*>& columns, std::size_t first,
                  std::size_t place) noexcept;

  std::size_t recordsAtOnce = 0;
  std::vector<std::int32_t> steps;  // by field, then by record
  std::vector<double> standing;     // likewise: fields below less fields above
  std::vector<double> unsettled;    // by record: pairs that comparing does not settle
  RecordRanks single;
};
