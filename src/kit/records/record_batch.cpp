#include "kit/records/record_batch.h"

template <typename Value>
std::vector<std::int32_t> RecordBatch::FoundIn(const std::vector<Column<Value>>& list) const {
  std::vector<std::int32_t> found;
  for (std::size_t variable = 0; variable < list.size(); ++variable) {
    if (list[variable].serial == serial) found.push_back(static_cast<std::int32_t>(variable));
  }
  return found;
}
template std::vector<std::int32_t> RecordBatch::FoundIn(const std::vector<Column<double>>&) const;
template std::vector<std::int32_t> RecordBatch::FoundIn(
    const std::vector<Column<std::int32_t>>&) const;

template <typename Value>
RecordBatch::Column<Value>& RecordBatch::Renew(std::vector<Column<Value>>& list,
                                               std::size_t variable) const {
  if (variable >= list.size()) list.resize(variable + 1);
  list[variable].serial = serial;
  return list[variable];
}

template <typename Value>
Value* RecordBatch::MakeRoom(Column<Value>& column) const {
  if (column.own.size() < size) column.own.resize(size);
  column.values = column.own.data();
  return column.own.data();
}

void RecordBatch::Find(std::size_t variable) {
  Column<double>& column = Renew(columns, variable);
  const auto index = static_cast<std::int32_t>(variable);
  column.values = FindColumn(index);
  if (column.values == nullptr) GatherColumn(index, MakeRoom(column));
}

void RecordBatch::FindTruncated(std::size_t variable) {
  const auto index = static_cast<std::int32_t>(variable);
  std::int32_t* wholes = MakeRoom(Renew(truncated, variable));
  if (GatherTruncated(index, wholes)) return;
  const double* values = Of(index);
  for (std::size_t i = 0; i < size; ++i) wholes[i] = TruncateToInt32(values[i]);
}

RecordBatch& SelectedRecords::Select(RecordBatch& records,
                                     const std::vector<std::uint8_t>& leftOut) {
  all = &records;
  if (places.size() < records.Size()) places.resize(records.Size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < records.Size(); ++i) {
    places[count] = i;
    count += leftOut[i] == 0 ? 1 : 0;
  }
  StartAnew(count);
  return *this;
}

const std::int32_t* SelectedRecords::Counts() {
  const std::int32_t* from = all->Counts();
  if (from == nullptr || Size() == all->Size()) return from;
  counts.resize(Size());
  for (std::size_t i = 0; i < Size(); ++i) counts[i] = from[places[i]];
  return counts.data();
}

const double* SelectedRecords::FindColumn(std::int32_t variable) {
  return Size() == all->Size() ? all->Of(variable) : nullptr;
}

void SelectedRecords::GatherColumn(std::int32_t variable, double* values) {
  const double* from = all->Of(variable);
  for (std::size_t i = 0; i < Size(); ++i) values[i] = from[places[i]];
}

bool SelectedRecords::GatherTruncated(std::int32_t variable, std::int32_t* values) {
  const std::int32_t* from = all->TruncatedOf(variable);
  for (std::size_t i = 0; i < Size(); ++i) values[i] = from[places[i]];
  return true;
}
