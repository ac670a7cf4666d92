#include "planning/sorted_records.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace {

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

NPARSortedIterator::NPARSortedIterator(const InitialDataReader* reader,
                                       NarrowColumns* narrowColumns, SortedRecords order)
    : reader(reader),
      narrowColumns(narrowColumns),
      order(std::move(order)),
      current(Record::View(nullptr, reader->Width())) {}

int NPARSortedIterator::Reset() {
  position = 0;
  followingRows.clear();
  return GetState();
}

const Record* NPARSortedIterator::Next() {
  constexpr std::size_t kAhead = 16;
  if (!HasNext()) return nullptr;
  if (order.count - position > kAhead) {
    Prefetch(reader->Row(order.entries[position + kAhead].number), reader->Width());
  }
  current.LookAt(reader->Row(order.entries[position].number));
  ++position;
  return &current;
}

bool NPARSortedIterator::Advance() {
  first = position;
  position = std::min(first + kRowsAtOnce, order.count);
  return first < position;
}

bool NPARSortedIterator::NextBlock(RecordBlock& block) {
  if (!Advance()) return false;
  block = {FindRows(), position - first};
  return true;
}

bool NPARSortedIterator::NextColumns(RecordColumns& columns) {
  if (!Advance()) return false;
  columns.LookAt(*this, position - first);
  return true;
}

const double* const* NPARSortedIterator::FindRows() {
  if (followingRows.empty() || followingFirst != first) FetchRows(followingRows, first);
  std::swap(rows, followingRows);
  followingFirst = position;
  FetchRows(followingRows, followingFirst);
  return rows.data();
}

void NPARSortedIterator::FetchRows(std::vector<const double*>& rowList, std::size_t begin) const {
  rowList.clear();
  const std::size_t end = std::min(begin + kRowsAtOnce, order.count);
  for (std::size_t place = begin; place < end; ++place) {
    rowList.push_back(reader->Row(order.entries[place].number));
    Prefetch(rowList.back(), reader->Width());
  }
}

bool NPARSortedIterator::DoKeysTellValues() const noexcept {
  // Not for zeros, whose sign is lost, and for what is no number.
  const std::uint64_t zero = OrderedBits(0.0);
  const std::uint64_t lowest = order.entries[first].Key();
  const std::uint64_t highest = order.entries[position - 1].Key();
  return (highest < zero || lowest > zero) &&
         highest <= OrderedBits(std::numeric_limits<double>::infinity());
}

bool NPARSortedIterator::GatherColumn(std::int32_t variable, double* values) {
  const NumberedKey* entries = order.entries.get() + first;
  const std::size_t count = position - first;
  if (variable == order.variable) {
    if (!DoKeysTellValues()) return false;
    for (std::size_t i = 0; i < count; ++i) values[i] = ValueOfOrderedBits(entries[i].Key());
    return true;
  }
  const NarrowColumn* column = narrowColumns->Find(variable);
  if (column == nullptr) return false;
  for (std::size_t i = 0; i < count; ++i) values[i] = column->ValueAt(entries[i].number);
  const std::size_t following = std::min(order.count - position, kRowsAtOnce);
  for (std::size_t i = 0; i < following; ++i) column->Prefetch(entries[count + i].number);
  return true;
}

NPARSortManager::NPARSortManager(const InitialDataReader* reader)
    : reader(reader), narrowColumns(reader), views(static_cast<std::size_t>(reader->Width())) {}

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
    if (reader->Count() >= std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    const auto count = static_cast<std::size_t>(reader->Count());
    SortedRecords order{variable,
                        SortedEntries<NumberedKey>(
                            count,
                            [this, variable](std::size_t number) {
                              const double* row = reader->Row(static_cast<std::int64_t>(number));
                              return NumberedKey(OrderedBits(row[variable]), number);
                            }),
                        count};
    view.iterator = std::make_unique<NPARSortedIterator>(reader, &narrowColumns, std::move(order));
  }
  return view.iterator.get();
}

void NPARSortManager::Release(std::int32_t variable) noexcept {
  if (IsInRecord(variable)) views[static_cast<std::size_t>(variable)].iterator.reset();
}
