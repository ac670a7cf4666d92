#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "foundation/names.h"
#include "kit/records/record_batch.h"

/// A variable of the record and the value that is a missing one there.
struct MissingMark {
  std::int32_t variable;
  double value;
  bool operator==(const MissingMark&) const = default;
};

/// The value that is a missing one of a kind of variable; empty for a kind that has none.
[[nodiscard]] std::optional<double> MissingValueOf(VariableKind kind) noexcept;

/// The records of a batch in which nothing is missing at some places.
class CompleteRecords {
 public:
  /// The batch itself where nothing is missing. Good until either changes; nothing is taken over.
  /// Throws std::bad_alloc.
  RecordBatch& Select(RecordBatch& batch, const std::vector<MissingMark>& marks);

 private:
  std::vector<std::uint8_t> isIncomplete;  // by record in hand
  SelectedRecords selected;
};
