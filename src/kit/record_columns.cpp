#include "kit/record_columns.h"

template <typename Value>
Value* RecordColumns::Renew(std::vector<Column<Value>>& list, std::size_t variable) {
  if (variable >= list.size()) list.resize(variable + 1);
  Column<Value>& column = list[variable];
  if (column.values.size() < block.count) column.values.resize(block.count);
  column.serial = serial;
  return column.values.data();
}

void RecordColumns::Gather(std::size_t variable) {
  double* values = Renew(columns, variable);
  if (source != nullptr && source->GatherColumn(static_cast<std::int32_t>(variable), values))
    return;
  const double* const* rows = Rows().rows;
  for (std::size_t i = 0; i < block.count; ++i) values[i] = rows[i][variable];
}

void RecordColumns::Truncate(std::size_t variable, const double* values) {
  std::int32_t* wholes = Renew(truncated, variable);
  for (std::size_t i = 0; i < block.count; ++i) wholes[i] = TruncateToInt32(values[i]);
}
