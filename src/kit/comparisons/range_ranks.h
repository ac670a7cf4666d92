#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/ranks/column_ranks.h"
#include "kit/records/batch_source.h"
#include "kit/records/record_weight.h"

/// What the ranks within every range of neighbouring fields sum up to, from one walk over the
/// records, ranked as a whole: values tie in a range as they do in the whole record.
///
/// The rank of a field within a range is 1, a half for each other field, and half of its sides: 1
/// for a field of the range below it, -1 for one above. So the sides of all pairs of fields, summed
/// over the records, give the rank sums within all ranges, in memory of the square of the number of
/// fields. Sums of ranks are exact up to 2^62.
class RangeRanks {
 public:
  RangeRanks() = default;
  /// At most 2^14 fields. Throws std::bad_alloc.
  explicit RangeRanks(std::size_t fieldCount);

  /// Takes the columns of some records, one for each field. Throws std::bad_alloc.
  void Add(const std::vector<const double*>& columns, RecordBatch& batch,
           const RecordWeight& weight);
  /// Once, after the last record; then come the readers.
  void Finish();

  /// The sum of the ranks that the field at `place` has within the range.
  [[nodiscard]] double RankSum(const SampleRange& range, std::size_t place) const noexcept {
    const std::int64_t sides = SidesBefore(range.last + 1)[place] - SidesBefore(range.first)[place];
    const auto others = static_cast<std::int64_t>(range.Size() - 1);
    return static_cast<double>((others + 2) * totalWeight + sides) * 0.5;
  }

 private:
  /// Twice a rank, which a processor takes several of at once.
  using Step = std::int16_t;

  template <typename WeightAt>
  void CountPairs(std::size_t count, WeightAt weightAt);
  [[nodiscard]] const std::int64_t* SidesBefore(std::size_t place) const noexcept {
    return sides.data() + place * fieldCount;
  }

  std::size_t fieldCount = 0;
  std::int64_t totalWeight = 0;
  ColumnRanks ranks;
  std::vector<std::array<Step, kRecordsAtOnce>> steps;  // of the records in hand, by field
  /// Row b + 1, column a: the sides of a against b; in the end, row b: against all fields before b.
  std::vector<std::int64_t> sides;
};
