#pragma once

#include "foundation/names.h"

/// Gives every record of the iterator, from the first on, to `take(const RecordBlock&)`: by whole
/// blocks where the iterator has them, else one by one. False if there was none.
template <typename TakeBlock>
bool ForEachBlock(MultiPassRecordIter& records, TakeBlock take) {
  static_cast<void>(records.Reset());  // an empty source shows by having no record
  bool any = false;
  if (auto* blocks = dynamic_cast<IRecordBlocks*>(&records)) {
    RecordBlock block;
    while (blocks->NextBlock(block)) {
      any = any || block.count > 0;
      take(block);
    }
    return any;
  }
  while (records.HasNext()) {
    const Record* record = records.Next();
    if (record == nullptr) break;
    const double* row = record->Values();
    take(RecordBlock{&row, 1});
    any = true;
  }
  return any;
}
