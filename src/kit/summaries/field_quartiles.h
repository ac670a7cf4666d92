#pragma once

#include <cstdint>
#include <vector>

#include "kit/order/order_statistics.h"
#include "kit/records/record_batch.h"
#include "kit/records/record_weight.h"
#include "kit/summaries/quartiles.h"

/// Keeps the values of some fields as they come, for figures that need their order. Beyond
/// kMostUnits records, counted by their weights, it gives them up, so that it costs a long run
/// nothing.
class FieldQuartiles {
 public:
  static constexpr std::int64_t kMostUnits = 100000;

  FieldQuartiles() = default;
  /// Positions in the record. Throws std::bad_alloc, as does Take.
  explicit FieldQuartiles(std::vector<std::int32_t> fields)
      : fields(std::move(fields)), values(this->fields.size()) {}

  void Take(RecordBatch& batch, const RecordWeight& weight);
  /// After the last record, once.
  void Sort();

  [[nodiscard]] std::int64_t Count() const noexcept { return count; }
  /// Are there values, and not too many?
  [[nodiscard]] bool AreKept() const noexcept { return count > 0 && count <= kMostUnits; }
  [[nodiscard]] const std::vector<std::int32_t>& Fields() const noexcept { return fields; }
  /// The sorted values of the field at that place, where they are kept.
  [[nodiscard]] const WeightedValues& Of(std::size_t place) const noexcept { return values[place]; }

 private:
  std::vector<std::int32_t> fields;
  std::vector<WeightedValues> values;
  std::int64_t count = 0;
};
