#include "kit/summaries/field_quartiles.h"

#include <cstddef>

void FieldQuartiles::Take(RecordBatch& batch, const RecordWeight& weight) {
  if (count > kMostUnits) return;
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t i = 0; i < batch.Size(); ++i) count += WeightOrNone(weightAt(i));
    if (count > kMostUnits) {
      values.clear();
      return;
    }
    for (std::size_t place = 0; place < fields.size(); ++place) {
      const double* column = batch.Of(fields[place]);
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        if (weightAt(i) > 0) values[place].Add(column[i], weightAt(i));
      }
    }
  });
}

void FieldQuartiles::Sort() {
  for (WeightedValues& field : values) field.Sort();
}
