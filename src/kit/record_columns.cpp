#include "kit/record_columns.h"

void RecordColumns::Gather(std::size_t variable) {
  if (variable >= columns.size()) columns.resize(variable + 1);
  Column& column = columns[variable];
  if (column.values.size() < block.count) column.values.resize(block.count);
  double* values = column.values.data();
  for (std::size_t i = 0; i < block.count; ++i) values[i] = block.rows[i][variable];
  column.serial = serial;
}
