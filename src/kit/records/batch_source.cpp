#include "kit/records/batch_source.h"

#include <algorithm>

IteratorBatches::IteratorBatches(RecordIterator& records)
    : records(records),
      multiPass(dynamic_cast<MultiPassRecordIter*>(&records)),
      blocks(dynamic_cast<IRecordBlocks*>(&records)) {
  auto* source = dynamic_cast<IRecordColumns*>(&records);
  if (source != nullptr && source->HasColumns()) columns = std::make_unique<ColumnBatch>(*source);
}

int IteratorBatches::Reset() {
  if (columns != nullptr) {
    width = columns->Width();
    columns->StartOver();
    return records.GetState();
  }
  rest = {};
  handedOut = 0;
  return multiPass == nullptr ? records.GetState() : multiPass->Reset();
}

RecordBatch* IteratorBatches::NextBatch() {
  if (columns != nullptr) return columns->Advance() ? columns.get() : nullptr;
  while (rest.count == 0) {
    if (blocks != nullptr ? ReadBlock() : CopyRecords()) continue;
    count = handedOut;
    return nullptr;
  }
  const std::size_t size = std::min(rest.count, kRecordsAtOnce);
  batch.LookAt({rest.rows, size});
  rest = {rest.rows + size, rest.count - size};
  handedOut += size;
  return &batch;
}

RecordBatch* IteratorBatches::NextLargeBatch() {
  if (columns == nullptr) return NextBatch();
  return columns->Advance(kRecordsAtLarge) ? columns.get() : nullptr;
}

bool IteratorBatches::ReadBlock() {
  width = blocks->GetRecordWidth();
  return blocks->NextBlock(rest);
}

bool IteratorBatches::CopyRecords() {
  // A record is good until the next one.
  std::size_t copied = 0;
  while (copied < kRecordsAtOnce && records.HasNext()) {
    const Record* record = records.Next();
    if (record == nullptr) break;
    if (copiedRows.empty()) {
      width = record->Size();
      const auto size = static_cast<std::size_t>(width);
      copies.resize(kRecordsAtOnce * size);
      for (std::size_t i = 0; i < kRecordsAtOnce; ++i) copiedRows.push_back(&copies[i * size]);
    }
    std::copy_n(record->Values(), width, &copies[copied++ * static_cast<std::size_t>(width)]);
  }
  rest = {copiedRows.data(), copied};
  return copied > 0;
}
