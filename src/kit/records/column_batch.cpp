#include "kit/records/column_batch.h"

#include <algorithm>

void ColumnBatch::StartOver() noexcept {
  first = next = 0;
  isBroken = false;
  for (Part& part : parts) part = {};
  StartAnew(0);
}

bool ColumnBatch::Advance(std::size_t most) {
  first = next;
  std::size_t count = isBroken ? 0 : std::min(From(0, first).count, most);
  for (std::int32_t variable = 1; count > kRecordsAtOnce && variable < Width(); ++variable) {
    const ColumnPart part = From(variable, first);
    if (part.isLasting) count = std::min(count, part.count);
  }
  next = first + count;
  StartAnew(count);
  return count > 0;
}

bool ColumnBatch::IsLasting(std::int32_t variable) const {
  const Part& part = parts[static_cast<std::size_t>(variable)];
  return part.column.isLasting && part.first <= first && next <= part.first + part.column.count;
}

const double* ColumnBatch::FindColumn(std::int32_t variable) {
  const ColumnPart part = From(variable, first);
  return part.count >= Size() ? part.values : nullptr;
}

void ColumnBatch::GatherColumn(std::int32_t variable, double* values) {
  for (std::size_t record = first; record < next;) {
    const ColumnPart part = From(variable, record);
    // The values of records that broke off are never told, but read until the batch is through.
    if (part.count == 0) {
      isBroken = true;
      std::fill(values, values + (next - record), QDMV::gMissingValue);
      return;
    }
    const std::size_t count = std::min(part.count, next - record);
    values = std::copy_n(part.values, count, values);
    record += count;
  }
}

ColumnPart ColumnBatch::From(std::int32_t variable, std::size_t record) {
  Part& part = parts[static_cast<std::size_t>(variable)];
  if (record < part.first || record >= part.first + part.column.count) {
    part = {{}, record};
    isBroken = !source.GetPart(variable, record, part.column) || isBroken;
  }
  const std::size_t passed = record - part.first;
  if (part.column.count == 0) return {};
  return {part.column.values + passed, part.column.count - passed, part.column.isLasting};
}
