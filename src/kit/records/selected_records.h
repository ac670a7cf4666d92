#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/records/record_batch.h"

/// Some of the records in hand, by columns as all of them are.
class SelectedRecords final : private ColumnSource {
 public:
  /// Those whose byte in `leftOut` is 0. Good until either the records or the selection change;
  /// nothing is taken over. Throws std::bad_alloc.
  RecordBatch& Select(RecordBatch& records, const std::vector<std::uint8_t>& leftOut);

 private:
  const double* FindColumn(std::int32_t variable) override;
  void GatherColumn(std::int32_t variable, double* values) override;
  bool GatherTruncated(std::int32_t variable, std::int32_t* values) override;
  const double* const* FindRows() override;

  RecordBatch* all = nullptr;
  std::vector<std::size_t> places;  // among all
  std::vector<const double*> rows;
  RecordBatch columns;
};
