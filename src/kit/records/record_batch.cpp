#include "kit/records/record_batch.h"

template <typename Value>
RecordBatch::Column<Value>& RecordBatch::Renew(std::vector<Column<Value>>& list,
                                               std::size_t variable) const {
  if (variable >= list.size()) list.resize(variable + 1);
  list[variable].serial = serial;
  return list[variable];
}

template <typename Value>
Value* RecordBatch::MakeRoom(Column<Value>& column) const {
  if (column.own.size() < block.count) column.own.resize(block.count);
  column.values = column.own.data();
  return column.own.data();
}

void RecordBatch::Find(std::size_t variable) {
  Column<double>& column = Renew(columns, variable);
  const auto index = static_cast<std::int32_t>(variable);
  if (source != nullptr) {
    column.values = source->FindColumn(index);
    if (column.values == nullptr) source->GatherColumn(index, MakeRoom(column));
    return;
  }
  double* values = MakeRoom(column);
  for (std::size_t i = 0; i < block.count; ++i) values[i] = block.rows[i][variable];
}

void RecordBatch::FindTruncated(std::size_t variable) {
  const auto index = static_cast<std::int32_t>(variable);
  std::int32_t* wholes = MakeRoom(Renew(truncated, variable));
  if (source != nullptr && source->GatherTruncated(index, wholes)) return;
  const double* values = Of(index);
  for (std::size_t i = 0; i < block.count; ++i) wholes[i] = TruncateToInt32(values[i]);
}
