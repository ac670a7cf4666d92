#include "planning/record_iterators.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

#include "kit/contract/allocation.h"

namespace {

constexpr std::int32_t kNoRecordKept = 220003;    // the source delivered no record that was kept
constexpr std::int32_t kNoSource = 220005;        // there is no source
constexpr std::int32_t kWeightTooLarge = 220026;  // a weight above kLargestWeight, or no number
constexpr double kLargestWeight = 2147483647.0;

}  // namespace

InitialDataReader::InitialDataReader(std::int32_t blockSize, RecordIterator* source,
                                     bool skipMissing, std::vector<std::int32_t> variableList,
                                     const QDVarList* variables)
    : records(
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
    if (status.IsOK() && Count() == 0) return QDStatus(kNoRecordKept);
    return status;
  });
}

QDStatus InitialDataReader::ReadBlocks(IRecordBlocks& blockSource) {
  Prepare(blockSource.GetRecordWidth());
  RecordBlock block;
  while (blockSource.NextBlock(block)) {
    const QDStatus status = Keep(block);
    if (status.IsError()) return status;
  }
  return QDStatus();
}

QDStatus InitialDataReader::ReadRecords() {
  // A record is good until the next one, so some are copied before they are kept together.
  RowBuffer copies;
  const double* const* rows = nullptr;
  std::size_t copied = 0;
  while (source->HasNext()) {
    const Record* record = source->Next();
    if (record == nullptr) break;
    if (rows == nullptr) {
      Prepare(record->Size());
      rows = copies.Prepare(kRecordsAtOnce, records.Width());
    }
    std::copy_n(record->Values(), records.Width(), copies.Row(copied));
    if (++copied < kRecordsAtOnce) continue;
    const QDStatus status = Keep({rows, std::exchange(copied, 0)});
    if (status.IsError()) return status;
  }
  return Keep({rows, copied});
}

void InitialDataReader::Prepare(int recordWidth) {
  records.SetWidth(recordWidth);
  weightIndex = variables->GetFreqWeightVariable();
  if (weightIndex >= recordWidth) weightIndex = -1;
  if (!skipMissing) return;
  for (const std::int32_t index : variableList) {
    const IQDVariable* variable = variables->GetVarAt(index);
    if (variable == nullptr || index >= recordWidth) continue;
    // Kind Other goes with the categories here, though a pass over the records takes it with the
    // continuous variables: hosts rely on it.
    const bool isContinuous = variable->GetType() == VariableKind::Continuous;
    marks.push_back({index, isContinuous ? QDMV::gMissingValue : QDMV::gMissingCategory});
  }
}

QDStatus InitialDataReader::Keep(const RecordBlock& block) {
  if (marks.empty() && weightIndex < 0) {
    records.Append(block);
    return QDStatus();
  }
  QDStatus status;
  keptRows.clear();
  for (std::size_t i = 0; i < block.count; ++i) {
    const double* row = block.rows[i];
    if (weightIndex >= 0 && !(row[weightIndex] <= kLargestWeight)) {
      status = QDStatus(kWeightTooLarge);
      break;
    }
    if (!IsAnyMissing(row, marks)) keptRows.push_back(row);
  }
  records.Append({keptRows.data(), keptRows.size()});
  return status;
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

int NParMemoIterator::GetRecordWidth() const {
  return reader == nullptr ? 0 : reader->Records().Width();
}

bool NParMemoIterator::HoldsMark(std::int32_t variable, double mark) const {
  return reader->Records().Column(variable).Holds(mark);
}

const Record* NParMemoIterator::Next() {
  if (!Advance(1)) return nullptr;
  if (current.Size() != GetRecordWidth()) current = Record::View(nullptr, GetRecordWidth());
  current.LookAt(FindRows()[0]);
  return &current;
}

bool NParMemoIterator::Advance(std::size_t count) {
  if (!HasNext()) return false;
  const KeptRecords& records = reader->Records();
  first = static_cast<std::size_t>(index);
  const std::size_t blockEnd = (first | (records.BlockSize() - 1)) + 1;
  size = std::min({count, blockEnd - first, records.Count() - first});
  MoveTo(index + static_cast<std::int64_t>(size));
  if (!HasNext()) state = 1;
  return true;
}

bool NParMemoIterator::NextBlock(RecordBlock& block) {
  if (!Advance(kRecordsAtOnce)) return false;
  block = {FindRows(), size};
  return true;
}

bool NParMemoIterator::NextColumns(RecordBatch& batch) {
  if (!Advance(kRecordsAtOnce)) return false;
  batch.LookAt(*this, size);
  return true;
}

const double* NParMemoIterator::FindColumn(std::int32_t variable) {
  const KeptColumn& column = reader->Records().Column(variable);
  return column.IsNarrow() ? nullptr : column.Doubles(first);
}

void NParMemoIterator::GatherColumn(std::int32_t variable, double* values) {
  const std::uint8_t* bytes = reader->Records().Column(variable).Bytes(first);
  for (std::size_t i = 0; i < size; ++i) values[i] = KeptColumn::ValueOf(bytes[i]);
}

bool NParMemoIterator::GatherTruncated(std::int32_t variable, std::int32_t* values) {
  const KeptColumn& column = reader->Records().Column(variable);
  if (!column.IsNarrow()) return false;
  const std::uint8_t* bytes = column.Bytes(first);
  for (std::size_t i = 0; i < size; ++i) values[i] = KeptColumn::CodeOf(bytes[i]);
  return true;
}

const double* const* NParMemoIterator::FindRows() {
  const double* const* found = rows.Prepare(size, GetRecordWidth());
  for (std::size_t i = 0; i < size; ++i) reader->Records().CopyRow(first + i, rows.Row(i));
  return found;
}

NParMemoIterator NParMemoIterator::Jump(std::int64_t places) const {
  NParMemoIterator further(reader);
  further.MoveTo(index < 0 ? std::numeric_limits<std::int64_t>::max() : index + places);
  if (!further.HasNext()) further.state = 1;
  return further;
}
