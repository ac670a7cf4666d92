#include "planning/record_iterators.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "kit/allocation.h"

namespace {

constexpr std::int32_t kNoRecordKept = 220003;    // the source delivered no record that was kept
constexpr std::int32_t kNoSource = 220005;        // there is no source
constexpr std::int32_t kWeightTooLarge = 220026;  // a weight above kLargestWeight, or no number
constexpr double kLargestWeight = 2147483647.0;

}  // namespace

InitialDataReader::InitialDataReader(std::int32_t blockSize, RecordIterator* source,
                                     bool skipMissing, std::vector<std::int32_t> variableList,
                                     const QDVarList* variables)
    : blockShift(
          static_cast<int>(std::bit_width(static_cast<std::uint32_t>(std::max(blockSize, 1) - 1)))),
      source(source),
      skipMissing(skipMissing),
      variableList(std::move(variableList)),
      variables(variables) {}

QDStatus InitialDataReader::Read() {
  if (source == nullptr) return QDStatus(kNoSource);
  return GuardAllocation(kNoMemory, [this] {
    if (auto* multiPass = dynamic_cast<MultiPassRecordIter*>(source)) {
      static_cast<void>(multiPass->Reset());  // a source that stands nowhere has no record
    }
    auto* blockSource = dynamic_cast<IRecordBlocks*>(source);
    const QDStatus status = blockSource != nullptr ? ReadBlocks(*blockSource) : ReadRecords();
    if (status.IsOK() && count == 0) return QDStatus(kNoRecordKept);
    return status;
  });
}

QDStatus InitialDataReader::ReadBlocks(IRecordBlocks& blockSource) {
  Prepare(blockSource.GetRecordWidth());
  RecordBlock block;
  const bool keepsAll = marks.empty() && weightIndex < 0;
  while (blockSource.NextBlock(block)) {
    if (keepsAll) {
      KeepAll(block);
      continue;
    }
    for (std::size_t i = 0; i < block.count; ++i) {
      const QDStatus status = Keep(block.rows[i]);
      if (status.IsError()) return status;
    }
  }
  return QDStatus();
}

QDStatus InitialDataReader::ReadRecords() {
  bool isFirst = true;
  while (source->HasNext()) {
    const Record* record = source->Next();
    if (record == nullptr) break;
    if (isFirst) Prepare(record->Size());
    isFirst = false;
    const QDStatus status = Keep(record->Values());
    if (status.IsError()) return status;
  }
  return QDStatus();
}

void InitialDataReader::Prepare(int recordWidth) {
  width = recordWidth;
  weightIndex = variables->GetFreqWeightVariable();
  if (weightIndex >= width) weightIndex = -1;
  if (!skipMissing) return;
  for (const std::int32_t index : variableList) {
    const IQDVariable* variable = variables->GetVarAt(index);
    if (variable == nullptr || index >= width) continue;
    // Kind Other goes with the categories here, though a pass over the records takes it with the
    // continuous variables: hosts rely on it.
    const bool isContinuous = variable->GetType() == VariableKind::Continuous;
    marks.push_back({index, isContinuous ? QDMV::gMissingValue : QDMV::gMissingCategory});
  }
}

QDStatus InitialDataReader::Keep(const double* row) {
  if (weightIndex >= 0 && !(row[weightIndex] <= kLargestWeight)) return QDStatus(kWeightTooLarge);
  if (IsAnyMissing(row, marks)) return QDStatus();
  if (count == capacity) AddBlocks();
  std::copy_n(row, width, Place(count));
  ++count;
  return QDStatus();
}

void InitialDataReader::KeepAll(const RecordBlock& block) {
  for (std::size_t i = 0; i < block.count;) {
    if (count == capacity) AddBlocks();
    // Rows that lie side by side, as most do, are copied as one.
    const std::int64_t room = BlockSize() - (count & (BlockSize() - 1));
    const std::size_t end = std::min(block.count, i + static_cast<std::size_t>(room));
    std::size_t next = i + 1;
    while (next < end && block.rows[next] == block.rows[next - 1] + width) ++next;
    std::copy_n(block.rows[i], (next - i) * static_cast<std::size_t>(width), Place(count));
    count += static_cast<std::int64_t>(next - i);
    i = next;
  }
}

void InitialDataReader::AddBlocks() {
  constexpr std::size_t kLargestPiece = std::size_t{4} << 20;  // doubles
  const std::size_t blockDoubles =
      static_cast<std::size_t>(BlockSize()) * static_cast<std::size_t>(width);
  const std::size_t mostBlocks = kLargestPiece / std::max<std::size_t>(blockDoubles, 1);
  const std::size_t added =
      std::clamp<std::size_t>(blocks.size(), 1, std::max<std::size_t>(mostBlocks, 1));
  pieces.push_back(MakeLargeArray<double>(added * blockDoubles));
  for (std::size_t i = 0; i < added; ++i) {
    blocks.push_back(pieces.back().get() + i * blockDoubles);
  }
  capacity += static_cast<std::int64_t>(added) * BlockSize();
}

NParMemoIterator::NParMemoIterator(const InitialDataReader* reader) : reader(reader) {
  static_cast<void>(Reset());
}

int NParMemoIterator::Reset() {
  if (state != 3) state = 0;
  MoveTo(0);
  return state;
}

void NParMemoIterator::MoveTo(std::int64_t place) {
  const bool stands = reader != nullptr && place < reader->Count();
  index = stands ? place : -1;
}

bool NParMemoIterator::HasNext() { return index >= 0; }

int NParMemoIterator::GetRecordWidth() const { return reader == nullptr ? 0 : reader->Width(); }

const Record* NParMemoIterator::Next() {
  if (!HasNext()) return nullptr;
  if (current.Size() != reader->Width()) current = Record::View(nullptr, reader->Width());
  current.LookAt(reader->Row(index));
  MoveTo(index + 1);
  if (!HasNext()) state = 1;
  return &current;
}

bool NParMemoIterator::NextBlock(RecordBlock& block) {
  if (!HasNext()) return false;
  rows.clear();
  const std::int64_t size =
      std::min(static_cast<std::int64_t>(kRowsAtOnce), reader->Count() - index);
  for (std::int64_t i = 0; i < size; ++i) rows.push_back(reader->Row(index + i));
  MoveTo(index + size);
  if (!HasNext()) state = 1;
  block = {rows.data(), rows.size()};
  return true;
}

NParMemoIterator NParMemoIterator::Jump(std::int64_t places) const {
  NParMemoIterator further(reader);
  further.MoveTo(index < 0 ? std::numeric_limits<std::int64_t>::max() : index + places);
  if (!further.HasNext()) further.state = 1;
  return further;
}
