#include "planning/pass_feed.h"

#include <algorithm>

#include "kit/contract/allocation.h"

namespace {

/// The value that is a missing one of a kind of variable; false for a kind that has none.
bool FindMark(const IQDVariable* variable, double& mark) {
  switch (variable == nullptr ? VariableKind::None : variable->GetType()) {
    case VariableKind::Continuous:
    case VariableKind::Other:
      mark = QDMV::gMissingValue;
      return true;
    case VariableKind::NumericCategory:
    case VariableKind::StringCategory:
      mark = QDMV::gMissingCategory;
      return true;
    case VariableKind::None:
      break;
  }
  return false;
}

}  // namespace

void PassFeed::AddTest(NPARTest* test, const std::vector<std::int64_t>& required) {
  members.push_back({.test = test, .required = required, .marks = {}});
}

QDStatus PassFeed::Walk(RecordIterator& records, CancelPair& cancelPair) {
  if (auto* blocks = dynamic_cast<IColumnBlocks*>(&records))
    return WalkColumns(*blocks, cancelPair);
  if (auto* blocks = dynamic_cast<IRecordBlocks*>(&records)) return WalkBlocks(*blocks, cancelPair);
  return WalkRecords(records, cancelPair);
}

std::vector<NPARTest*> PassFeed::AliveTests() const {
  std::vector<NPARTest*> tests;
  for (const Member& member : members) tests.push_back(member.test);
  return tests;
}

void PassFeed::Prepare(int recordWidth, const IColumnBlocks* columnSource) {
  width = recordWidth;
  const auto needs = [](const Member& member, int position) {
    return std::find(member.required.begin(), member.required.end(), position) !=
           member.required.end();
  };
  for (int position = 0; position < width; ++position) {
    double mark = 0.0;
    if (!FindMark(variables->GetVarAt(position), mark)) continue;
    if (columnSource != nullptr && !columnSource->HoldsMark(position, mark)) continue;
    bool isNeeded = false;
    for (Member& member : members) {
      if (analysisMissing && !member.required.empty() && !needs(member, position)) continue;
      member.marks.push_back({position, mark});
      isNeeded = true;
    }
    if (isNeeded) marks.push_back({position, mark});
  }
  CompareNeeds();
}

void PassFeed::CompareNeeds() {
  const Member* before = nullptr;
  for (Member& member : members) {
    member.needsSameAsBefore = before != nullptr && member.marks == before->marks;
    before = &member;
  }
}

QDStatus PassFeed::WalkColumns(IColumnBlocks& blocks, CancelPair& cancelPair) {
  Prepare(blocks.GetRecordWidth(), &blocks);
  RecordBatch batch;
  while (!members.empty() && !cancelPair.Check() && blocks.NextColumns(batch)) {
    const QDStatus status = Deliver(batch);
    if (!status.IsOK()) return status;
  }
  return QDStatus();
}

QDStatus PassFeed::WalkBlocks(IRecordBlocks& blocks, CancelPair& cancelPair) {
  Prepare(blocks.GetRecordWidth());
  RecordBatch batch;
  RecordBlock block;
  while (!members.empty() && blocks.NextBlock(block)) {
    while (block.count > 0) {
      if (cancelPair.Check()) return QDStatus();
      const RecordBlock part{block.rows, std::min(block.count, kRecordsAtOnce)};
      batch.LookAt(part);
      const QDStatus status = Deliver(batch);
      if (!status.IsOK()) return status;
      block = {block.rows + part.count, block.count - part.count};
    }
  }
  return QDStatus();
}

QDStatus PassFeed::WalkRecords(RecordIterator& records, CancelPair& cancelPair) {
  RecordBatch batch;
  bool isFirst = true;
  while (!members.empty() && records.HasNext()) {
    if (cancelPair.Check()) break;
    const Record* record = records.Next();
    if (record == nullptr) break;
    if (isFirst) Prepare(record->Size());
    isFirst = false;
    const double* row = record->Values();
    batch.LookAt({&row, 1});
    const QDStatus status = Deliver(batch);
    if (!status.IsOK()) return status;
  }
  return QDStatus();
}

QDStatus PassFeed::Deliver(RecordBatch& batch) {
  batch.SetNumber(++deliveries);
  const bool isAnyMissing = IsAnyMissing(batch, marks);
  bool hasAnyFailed = false;
  RecordBatch* complete = &batch;
  for (Member& member : members) {
    if (isAnyMissing && !member.needsSameAsBefore) complete = &KeepComplete(batch, member.marks);
    const QDStatus answer = DeliverTo(member, *complete);
    if (answer.GetErrorCode() == kMemoryExhausted) return answer;
    if (answer.IsError()) member.hasFailed = hasAnyFailed = true;
  }
  if (hasAnyFailed) {
    std::erase_if(members, [](const Member& member) { return member.hasFailed; });
    CompareNeeds();
  }
  return QDStatus();
}

RecordBatch& PassFeed::KeepComplete(RecordBatch& batch, const std::vector<MissingMark>& needed) {
  isIncomplete.assign(batch.Size(), 0);
  for (const MissingMark& place : needed) {
    const double* values = batch.Of(place.position);
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      isIncomplete[i] |= static_cast<std::uint8_t>(values[i] == place.mark);
    }
  }
  return completeRecords.Select(batch, isIncomplete);
}

QDStatus PassFeed::DeliverTo(const Member& member, RecordBatch& batch) const {
  return member.test->ProcessBatch(batch);
}
