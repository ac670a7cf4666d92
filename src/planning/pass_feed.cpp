#include "planning/pass_feed.h"

#include <algorithm>

#include "kit/allocation.h"
#include "planning/record_iterators.h"

namespace {

constexpr std::size_t kWordBits = 64;

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
  members.push_back({test, required, {}});
}

QDStatus PassFeed::Walk(RecordIterator& records, CancelPair& cancelPair) {
  if (auto* blocks = dynamic_cast<IRecordBlocks*>(&records)) return WalkBlocks(*blocks, cancelPair);
  return WalkRecords(records, cancelPair);
}

std::vector<NPARTest*> PassFeed::AliveTests() const {
  std::vector<NPARTest*> tests;
  for (const Member& member : members) tests.push_back(member.test);
  return tests;
}

void PassFeed::Prepare(int width) {
  const auto blocksAll = [this](const Member& member) {
    return !analysisMissing || member.required.empty();
  };
  const bool needsAll = std::any_of(members.begin(), members.end(), blocksAll);
  const auto needs = [](const Member& member, int position) {
    return std::find(member.required.begin(), member.required.end(), position) !=
           member.required.end();
  };
  for (int position = 0; position < width; ++position) {
    const bool isNeeded =
        needsAll || std::any_of(members.begin(), members.end(),
                                [&](const Member& member) { return needs(member, position); });
    double mark = 0.0;
    if (isNeeded && FindMark(variables->GetVarAt(position), mark)) {
      marks.push_back({position, mark});
    }
  }
  missing.resize((marks.size() + kWordBits - 1) / kWordBits);
  for (Member& member : members) {
    member.blocking.resize(missing.size());
    for (std::size_t i = 0; i < marks.size(); ++i) {
      if (blocksAll(member) || needs(member, marks[i].position)) {
        member.blocking[i / kWordBits] |= std::uint64_t{1} << (i % kWordBits);
      }
    }
  }
}

QDStatus PassFeed::WalkBlocks(IRecordBlocks& blocks, CancelPair& cancelPair) {
  const int width = blocks.GetRecordWidth();
  Prepare(width);
  Record record = Record::View(nullptr, width);
  RecordBlock block;
  while (!members.empty() && blocks.NextBlock(block)) {
    for (std::size_t i = 0; i < block.count; ++i) {
      if (i % kRowsAtOnce == 0 && cancelPair.Check()) return QDStatus();
      record.LookAt(block.rows[i]);
      const QDStatus status = Deliver(record);
      if (!status.IsOK()) return status;
    }
  }
  return QDStatus();
}

QDStatus PassFeed::WalkRecords(RecordIterator& records, CancelPair& cancelPair) {
  bool isFirst = true;
  while (!members.empty() && records.HasNext()) {
    if (cancelPair.Check()) break;
    const Record* record = records.Next();
    if (record == nullptr) break;
    if (isFirst) Prepare(record->Size());
    isFirst = false;
    const QDStatus status = Deliver(*record);
    if (!status.IsOK()) return status;
  }
  return QDStatus();
}

QDStatus PassFeed::Deliver(const Record& record) {
  const bool isAnyMissing = IsAnyMissing(record.Values(), marks);
  if (isAnyMissing && !analysisMissing) return QDStatus();
  if (isAnyMissing) FindMissing(record.Values());
  for (std::size_t i = 0; i < members.size();) {
    if (isAnyMissing && IsHeldOff(members[i])) {
      ++i;
      continue;
    }
    const QDStatus answer = members[i].test->ProcessRecord(record);
    if (answer.GetErrorCode() == kMemoryExhausted) return answer;
    if (answer.IsError()) {
      members.erase(members.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      ++i;
    }
  }
  return QDStatus();
}

void PassFeed::FindMissing(const double* row) {
  std::fill(missing.begin(), missing.end(), 0);
  for (std::size_t i = 0; i < marks.size(); ++i) {
    if (row[marks[i].position] == marks[i].mark) {
      missing[i / kWordBits] |= std::uint64_t{1} << (i % kWordBits);
    }
  }
}

bool PassFeed::IsHeldOff(const Member& member) const noexcept {
  for (std::size_t word = 0; word < missing.size(); ++word) {
    if ((missing[word] & member.blocking[word]) != 0) return true;
  }
  return false;
}
