#include "planning/sorted_records.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <new>
#include <utility>

#include "kit/contract/stage_progress.h"

namespace {

/// What a view sorts: the values of a column, each with the number of its record and its tags.
class EntriesToSort {
 public:
  EntriesToSort(const KeptRecords& records, const SortedRecords& order) noexcept
      : records(records), order(order), column(records.Column(order.variable)) {}

  [[nodiscard]] std::size_t Count() const noexcept { return order.count; }
  [[nodiscard]] std::uint64_t DifferingBits() const noexcept { return column.DifferingBits(); }
  template <typename Take>
  void ForEachKey(std::size_t begin, std::size_t end, Take take) const {
    const LargeArray<double> room = MakeLargeArray<double>(KeptRecords::kBlockSize);
    ForEachBlock(begin, end, [&](std::size_t first, std::size_t size) {
      const double* values = column.Values(first, size, room.get());
      for (std::size_t i = 0; i < size; ++i) take(OrderedBits(values[i]));
    });
  }
  template <typename Take>
  void ForEachEntry(std::size_t begin, std::size_t end, Take take) const {
    const LargeArray<double> room = MakeLargeArray<double>(KeptRecords::kBlockSize);
    const LargeArray<std::uint32_t> numbers =
        MakeLargeArray<std::uint32_t>(KeptRecords::kBlockSize);
    ForEachBlock(begin, end, [&](std::size_t first, std::size_t size) {
      NumberRecords(first, size, numbers.get());
      const double* values = column.Values(first, size, room.get());
      for (std::size_t i = 0; i < size; ++i) take(NumberedKey(OrderedBits(values[i]), numbers[i]));
    });
  }

 private:
  template <typename Use>
  void ForEachBlock(std::size_t begin, std::size_t end, Use use) const {
    static_assert(RadixBuckets::kPiece % KeptRecords::kBlockSize == 0);
    for (std::size_t first = begin; first < end; first += KeptRecords::kBlockSize) {
      Interruption::Check();
      use(first, std::min(KeptRecords::kBlockSize, end - first));
    }
  }
  void NumberRecords(std::size_t first, std::size_t size, std::uint32_t* numbers) const {
    for (std::size_t i = 0; i < size; ++i) numbers[i] = static_cast<std::uint32_t>(first + i);
    for (const SortedRecords::Tag& tag : order.tags) {
      const std::uint8_t* bytes = records.Column(tag.variable).Bytes(first);
      static_assert(KeptColumn::kMissingByte == 255);  // all bits of any tag
      for (std::size_t i = 0; i < size; ++i) numbers[i] |= (bytes[i] & tag.mask) << tag.shift;
    }
  }

  const KeptRecords& records;
  const SortedRecords& order;
  const KeptColumn& column;
};

}  // namespace

NPARSortedIterator::NPARSortedIterator(const KeptRecords& records, SortedRecords order)
    : KeptWalk(records),
      shared(std::make_shared<const SortedRecords>(std::move(order))),
      order(*shared) {}

bool NPARSortedIterator::DoKeysTellValues() const noexcept {
  // Not for zeros, whose sign is lost, and for what is no number.
  const std::uint64_t zero = OrderedBits(0.0);
  const std::uint64_t lowest = order.entries[First()].Key();
  const std::uint64_t highest = order.entries[First() + InHand() - 1].Key();
  return (highest < zero || lowest > zero) &&
         highest <= OrderedBits(std::numeric_limits<double>::infinity());
}

const SortedRecords::Tag* NPARSortedIterator::FindTag(std::int32_t variable) const noexcept {
  const auto found =
      std::find_if(order.tags.begin(), order.tags.end(),
                   [variable](const SortedRecords::Tag& tag) { return tag.variable == variable; });
  return found == order.tags.end() ? nullptr : &*found;
}

void NPARSortedIterator::PrefetchFollowing(const KeptColumn& column) const noexcept {
  const std::size_t next = First() + InHand();
  const std::size_t end = std::min(order.count, next + kRecordsAtOnce);
  for (std::size_t place = next; place < end; ++place) column.Prefetch(order.NumberAt(place));
}

void NPARSortedIterator::GatherColumn(std::int32_t variable, double* values) {
  const NumberedKey* entries = order.entries.get() + First();
  const std::size_t count = InHand();
  if (variable == order.variable && DoKeysTellValues()) {
    for (std::size_t i = 0; i < count; ++i) values[i] = ValueOfOrderedBits(entries[i].Key());
    return;
  }
  if (const SortedRecords::Tag* tag = FindTag(variable)) {
    for (std::size_t i = 0; i < count; ++i) values[i] = tag->CodeIn(entries[i].number);
    return;
  }
  const KeptColumn& column = Column(variable);
  for (std::size_t i = 0; i < count; ++i) values[i] = column.ValueAt(order.NumberAt(First() + i));
  PrefetchFollowing(column);
}

bool NPARSortedIterator::GatherTruncated(std::int32_t variable, std::int32_t* values) {
  const NumberedKey* entries = order.entries.get() + First();
  const std::size_t count = InHand();
  if (const SortedRecords::Tag* tag = FindTag(variable)) {
    for (std::size_t i = 0; i < count; ++i) values[i] = tag->CodeIn(entries[i].number);
    return true;
  }
  const KeptColumn& column = Column(variable);
  if (variable == order.variable || !column.IsNarrow()) return false;
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = KeptColumn::CodeOf(*column.Bytes(order.NumberAt(First() + i)));
  }
  PrefetchFollowing(column);
  return true;
}

NPARSortManager::NPARSortManager(const InitialDataReader* reader)
    : records(&reader->Records()), views(static_cast<std::size_t>(records->Width())) {}

bool NPARSortManager::AddSortVariable(std::int32_t variable) {
  if (!IsInRecord(variable)) return false;
  views[static_cast<std::size_t>(variable)].isWanted = true;
  return true;
}

void NPARSortManager::AddCompanion(std::int32_t variable) {
  if (!IsInRecord(variable)) return;
  if (std::find(companions.begin(), companions.end(), variable) == companions.end()) {
    companions.push_back(variable);
  }
}

BatchSource* NPARSortManager::GetSortedIterator(std::int32_t variable) {
  if (!IsInRecord(variable)) return nullptr;
  View& view = views[static_cast<std::size_t>(variable)];
  if (!view.isWanted) return nullptr;
  if (view.iterator == nullptr) {
    view.iterator = std::make_unique<NPARSortedIterator>(*records, Sort(variable));
  }
  return view.iterator.get();
}

SortedRecords NPARSortManager::Sort(std::int32_t variable) const {
  if (records->Count() >= std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  SortedRecords order;
  order.variable = variable;
  order.count = records->Count();
  PlanTags(order);
  order.entries = SortEntries<NumberedKey>(EntriesToSort(*records, order),
                                           TellsProgress() ? &StageProgress::Tell : nullptr);
  return order;
}

void NPARSortManager::PlanTags(SortedRecords& order) const {
  constexpr int kBits = std::numeric_limits<std::uint32_t>::digits;
  int used = static_cast<int>(std::bit_width(order.count));
  order.numberMask = static_cast<std::uint32_t>((std::uint64_t{1} << used) - 1);
  for (const std::int32_t companion : companions) {
    const KeptColumn& column = records->Column(companion);
    if (companion == order.variable || !column.IsNarrow()) continue;
    const int bits = std::max(static_cast<int>(std::bit_width(column.CodeCount())), 1);
    if (used + bits > kBits) continue;
    order.tags.push_back({companion, used, (std::uint32_t{1} << bits) - 1});
    used += bits;
  }
}

void NPARSortManager::Release(std::int32_t variable) noexcept {
  if (IsInRecord(variable)) views[static_cast<std::size_t>(variable)].iterator.reset();
}
