#pragma once

#include "kit/records/record_batch.h"

/// Gives every record of the iterator, from the first on, to `take(RecordBatch&)`: many at a time
/// where the iterator has them so, else one by one. False if there was none.
template <typename Take>
bool ForEachBlock(MultiPassRecordIter& records, Take take) {
  static_cast<void>(records.Reset());  // an empty source shows by having no record
  bool any = false;
  RecordBatch columns;
  const auto give = [&] {
    any = any || columns.Size() > 0;
    take(columns);
  };
  if (auto* columnBlocks = dynamic_cast<IColumnBlocks*>(&records)) {
    while (columnBlocks->NextColumns(columns)) give();
    return any;
  }
  if (auto* blocks = dynamic_cast<IRecordBlocks*>(&records)) {
    RecordBlock block;
    while (blocks->NextBlock(block)) {
      columns.LookAt(block);
      give();
    }
    return any;
  }
  while (records.HasNext()) {
    const Record* record = records.Next();
    if (record == nullptr) break;
    const double* row = record->Values();
    columns.LookAt({&row, 1});
    give();
  }
  return any;
}
