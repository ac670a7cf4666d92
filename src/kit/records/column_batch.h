#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/records/record_batch.h"

/// Records whose source hands out columns; only those that are asked for are had.
class ColumnBatch final : public RecordBatch {
 public:
  /// The source is not taken over. Throws std::bad_alloc.
  explicit ColumnBatch(IRecordColumns& source)
      : source(source), parts(static_cast<std::size_t>(source.GetRecordWidth())) {}

  [[nodiscard]] int Width() const noexcept { return static_cast<int>(parts.size()); }
  /// Back to before the first record.
  void StartOver() noexcept;
  /// The next records are in hand, as many as asked for as long as the first variable and those
  /// that last stand side by side; false at the end, and where the records broke off.
  bool Advance(std::size_t most = kRecordsAtOnce);
  [[nodiscard]] bool IsLasting(std::int32_t variable) const override;

 private:
  /// The part of a variable that was had last.
  struct Part {
    ColumnPart column;
    std::size_t first = 0;  // its first record
  };

  const double* FindColumn(std::int32_t variable) override;
  void GatherColumn(std::int32_t variable, double* values) override;
  /// The values from a record on that are had, or are had now; none where there are none.
  [[nodiscard]] ColumnPart From(std::int32_t variable, std::size_t record);

  IRecordColumns& source;
  std::vector<Part> parts;  // by variable
  std::size_t first = 0;    // of the records in hand
  std::size_t next = 0;
  bool isBroken = false;
};
