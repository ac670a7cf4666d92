#include "kit/records/selected_records.h"

RecordBatch& SelectedRecords::Select(RecordBatch& records,
                                     const std::vector<std::uint8_t>& leftOut) {
  all = &records;
  if (places.size() < records.Size()) places.resize(records.Size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < records.Size(); ++i) {
    places[count] = i;
    count += leftOut[i] == 0 ? 1 : 0;
  }
  columns.LookAt(*this, count);
  columns.SetNumber(records.Number());
  return columns;
}

const double* SelectedRecords::FindColumn(std::int32_t variable) {
  return columns.Size() == all->Size() ? all->Of(variable) : nullptr;
}

void SelectedRecords::GatherColumn(std::int32_t variable, double* values) {
  const double* from = all->Of(variable);
  for (std::size_t i = 0; i < columns.Size(); ++i) values[i] = from[places[i]];
}

bool SelectedRecords::GatherTruncated(std::int32_t variable, std::int32_t* values) {
  const std::int32_t* from = all->TruncatedOf(variable);
  for (std::size_t i = 0; i < columns.Size(); ++i) values[i] = from[places[i]];
  return true;
}

const double* const* SelectedRecords::FindRows() {
  const double* const* from = all->Rows().rows;
  rows.resize(columns.Size());
  for (std::size_t i = 0; i < columns.Size(); ++i) rows[i] = from[places[i]];
  return rows.data();
}
