#include "planning/record_iterators.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "kit/allocation.h"
#include "kit/radix_sort.h"

namespace {

constexpr std::int32_t kNoRecordKept = 220003;    // the source delivered no record that was kept
constexpr std::int32_t kNoSource = 220005;        // there is no source
constexpr std::int32_t kWeightTooLarge = 220026;  // a weight above kLargestWeight, or no number
constexpr double kLargestWeight = 2147483647.0;

constexpr std::size_t kCacheLine = 64;  // bytes

/// Asks the processor for the start of a row: two lines hold 16 variables, and the rest follows in
/// address order, which the processor foresees by itself.
void Prefetch(const double* row, int width) noexcept {
  __builtin_prefetch(row);
  if (static_cast<std::size_t>(width) * sizeof(double) > kCacheLine) {
    __builtin_prefetch(row + kCacheLine / sizeof(double));
  }
}

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
  while (blockSource.NextBlock(block)) {
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
  while (HasNext() && rows.size() < kRowsAtOnce) {
    rows.push_back(reader->Row(index));
    MoveTo(index + 1);
  }
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

NPARSortedIterator::NPARSortedIterator(const InitialDataReader* reader, RecordOrder order)
    : reader(reader), order(std::move(order)), current(Record::View(nullptr, reader->Width())) {}

int NPARSortedIterator::Reset() {
  position = 0;
  followingRows.clear();
  return GetState();
}

const Record* NPARSortedIterator::Next() {
  constexpr std::size_t kAhead = 16;
  if (!HasNext()) return nullptr;
  if (order.size() - position > kAhead) {
    Prefetch(reader->Row(order[position + kAhead]), reader->Width());
  }
  current.LookAt(reader->Row(order[position]));
  ++position;
  return &current;
}

bool NPARSortedIterator::NextBlock(RecordBlock& block) {
  const auto fill = [this](std::vector<const double*>& batch, std::size_t first) {
    batch.clear();
    const std::size_t last = std::min(first + kRowsAtOnce, order.size());
    for (std::size_t place = first; place < last; ++place) {
      batch.push_back(reader->Row(order[place]));
      Prefetch(batch.back(), reader->Width());
    }
  };
  if (!HasNext()) return false;
  if (followingRows.empty()) fill(followingRows, position);
  std::swap(rows, followingRows);
  position += rows.size();
  fill(followingRows, position);
  block = {rows.data(), rows.size()};
  return true;
}

NPARSortManager::NPARSortManager(const InitialDataReader* reader)
    : reader(reader), views(static_cast<std::size_t>(reader->Width())) {}

bool NPARSortManager::AddSortVariable(std::int32_t variable) {
  if (!IsInRecord(variable)) return false;
  views[static_cast<std::size_t>(variable)].isWanted = true;
  return true;
}

MultiPassRecordIter* NPARSortManager::GetSortedIterator(std::int32_t variable) {
  if (!IsInRecord(variable)) return nullptr;
  View& view = views[static_cast<std::size_t>(variable)];
  if (!view.isWanted) return nullptr;
  if (view.iterator == nullptr) {
    const std::int64_t count = reader->Count();
    if (count >= std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    view.iterator = std::make_unique<NPARSortedIterator>(
        reader,
        AscendingOrder(static_cast<std::size_t>(count), [this, variable](std::size_t number) {
          return reader->Row(static_cast<std::int64_t>(number))[variable];
        }));
  }
  return view.iterator.get();
}
