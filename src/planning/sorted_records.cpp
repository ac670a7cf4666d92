#include "planning/sorted_records.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <new>
#include <type_traits>

#include "kit/contract/stage_progress.h"

namespace {

// So few that bytes don't count; leads would take longer than the records.
constexpr std::size_t kFewRecords = std::size_t{1} << 12;

/// What a view sorts: the values of a column, each with its tags, and the number of its record
/// where entries have room for it.
template <typename Entry>
class EntriesToSort {
 public:
  EntriesToSort(const KeptRecords& records, std::int32_t variable,
                const std::vector<SortedRecords::Tag>& tags) noexcept
      : records(records), column(records.Column(variable)), tags(tags) {}

  [[nodiscard]] std::size_t Count() const noexcept { return records.Count(); }
  [[nodiscard]] std::uint64_t FirstKey() const noexcept { return OrderedBits(column.ValueAt(0)); }
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
    const LargeArray<std::uint32_t> labels = MakeLargeArray<std::uint32_t>(KeptRecords::kBlockSize);
    ForEachBlock(begin, end, [&](std::size_t first, std::size_t size) {
      LabelRecords(first, size, labels.get());
      const double* values = column.Values(first, size, room.get());
      for (std::size_t i = 0; i < size; ++i) {
        const std::uint64_t key = OrderedBits(values[i]);
        take(key, Entry(key, labels[i]));
      }
    });
  }

 private:
  static constexpr bool kIsNumbered = std::is_same_v<Entry, NumberedKey>;

  template <typename Use>
  void ForEachBlock(std::size_t begin, std::size_t end, Use use) const {
    static_assert(RadixBuckets::kPiece % KeptRecords::kBlockSize == 0);
    for (std::size_t first = begin; first < end; first += KeptRecords::kBlockSize) {
      Interruption::Check();
      use(first, std::min(KeptRecords::kBlockSize, end - first));
    }
  }
  void LabelRecords(std::size_t first, std::size_t size, std::uint32_t* labels) const {
    for (std::size_t i = 0; i < size; ++i) {
      labels[i] = kIsNumbered ? static_cast<std::uint32_t>(first + i) : 0;
    }
    for (const SortedRecords::Tag& tag : tags) {
      const std::uint8_t* bytes = records.Column(tag.variable).Bytes(first);
      static_assert(KeptColumn::kMissingByte == 255);  // all bits of any tag
      for (std::size_t i = 0; i < size; ++i) labels[i] |= (bytes[i] & tag.mask) << tag.shift;
    }
  }

  const KeptRecords& records;
  const KeptColumn& column;
  const std::vector<SortedRecords::Tag>& tags;
};

}  // namespace

SortedRecords::SortedRecords(const KeptRecords& records, std::int32_t variable,
                             const std::vector<std::int32_t>& companions, TellSorted tell)
    : records(records),
      variable(variable),
      isNumbered(records.Count() < kFewRecords || !records.Column(variable).AreToldByKeys() ||
                 !PlanTags(companions, 0, TaggedKey::kTagBits)) {
  constexpr int kNumberBits = std::numeric_limits<std::uint32_t>::digits;
  if (records.Count() >= std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  if (!isNumbered) {
    tagged = SortEntries<TaggedKey>(EntriesToSort<TaggedKey>(records, variable, tags), tell);
    return;
  }
  const int used = static_cast<int>(std::bit_width(records.Count()));
  numberMask = static_cast<std::uint32_t>((std::uint64_t{1} << used) - 1);
  static_cast<void>(PlanTags(companions, used, kNumberBits));  // the others are looked up
  numbered =
      SortEntries<NumberedKey>(EntriesToSort<NumberedKey>(records, variable, tags), tell).entries;
}

bool SortedRecords::PlanTags(const std::vector<std::int32_t>& companions, int used, int end) {
  tags.clear();
  bool haveAll = true;
  for (const std::int32_t companion : companions) {
    if (companion == variable) continue;
    const KeptColumn& column = records.Column(companion);
    const int bits = std::max(static_cast<int>(std::bit_width(column.CodeCount())), 1);
    if (!column.IsNarrow() || used + bits > end) {
      haveAll = false;
      continue;
    }
    tags.push_back({companion, used, (std::uint32_t{1} << bits) - 1});
    used += bits;
  }
  return haveAll;
}

const SortedRecords::Tag* SortedRecords::FindTag(std::int32_t variable) const noexcept {
  const auto found = std::find_if(tags.begin(), tags.end(),
                                  [variable](const Tag& tag) { return tag.variable == variable; });
  return found == tags.end() ? nullptr : &*found;
}

template <typename Value>
void SortedRecords::ReadCodes(const Tag& tag, std::size_t first, std::size_t size,
                              Value* codes) const {
  if (isNumbered) {
    const NumberedKey* entries = numbered.get() + first;
    for (std::size_t i = 0; i < size; ++i) codes[i] = tag.CodeIn(entries[i].number);
  } else {
    const TaggedKey* entries = tagged.entries.get() + first;
    for (std::size_t i = 0; i < size; ++i) codes[i] = tag.CodeIn(entries[i].Tag());
  }
}

bool SortedRecords::DoNumberedKeysTell(std::size_t first, std::size_t size) const noexcept {
  // Not for zeros, whose sign is lost, and for what is no number.
  const std::uint64_t zero = OrderedBits(0.0);
  const std::uint64_t lowest = numbered[first].Key();
  const std::uint64_t highest = numbered[first + size - 1].Key();
  return records.Column(variable).AreToldByKeys() ||
         ((highest < zero || lowest > zero) &&
          highest <= OrderedBits(std::numeric_limits<double>::infinity()));
}

bool SortedRecords::ReadValues(std::size_t first, std::size_t size, double* values) const {
  if (isNumbered) {
    if (!DoNumberedKeysTell(first, size)) return false;
    const NumberedKey* entries = numbered.get() + first;
    for (std::size_t i = 0; i < size; ++i) values[i] = ValueOfOrderedBits(entries[i].Key());
    return true;
  }
  const TaggedKey* entries = tagged.entries.get() + first;
  auto lead = std::upper_bound(
      tagged.leads.begin(), tagged.leads.end(), first,
      [](std::size_t place, const KeyLead& candidate) { return place < candidate.end; });
  for (std::size_t i = 0; i < size; ++lead) {
    for (const std::size_t end = std::min(size, lead->end - first); i < end; ++i) {
      values[i] = ValueOfOrderedBits(lead->bits | entries[i].Key());
    }
  }
  return true;
}

void SortedRecords::ReadNumbers(std::size_t first, std::size_t size, std::uint32_t* numbers) const {
  if (isNumbered) {
    const NumberedKey* entries = numbered.get() + first;
    for (std::size_t i = 0; i < size; ++i) numbers[i] = entries[i].number & numberMask;
    return;
  }
  std::call_once(areNumbersFound, [this] {
    const KeptColumn& column = records.Column(variable);
    foundNumbers = AscendingOrder(records.Count(),
                                  [&column](std::size_t number) { return column.ValueAt(number); });
  });
  std::copy_n(foundNumbers.begin() + first, size, numbers);
}

template <typename Use>
void NPARSortedIterator::ForEachNumber(const KeptColumn& column, Use use) const {
  std::array<std::uint32_t, kRecordsAtOnce> numbers;
  order->ReadNumbers(First(), InHand(), numbers.data());
  for (std::size_t i = 0; i < InHand(); ++i) use(i, numbers[i]);
  const std::size_t next = First() + InHand();
  const std::size_t following = std::min(Count() - next, kRecordsAtOnce);
  order->ReadNumbers(next, following, numbers.data());
  for (std::size_t i = 0; i < following; ++i) column.Prefetch(numbers[i]);
}

void NPARSortedIterator::GatherColumn(std::int32_t variable, double* values) {
  if (variable == order->Variable() && order->ReadValues(First(), InHand(), values)) return;
  if (const SortedRecords::Tag* tag = order->FindTag(variable)) {
    return order->ReadCodes(*tag, First(), InHand(), values);
  }
  const KeptColumn& column = Column(variable);
  ForEachNumber(column,
                [&](std::size_t i, std::size_t number) { values[i] = column.ValueAt(number); });
}

bool NPARSortedIterator::GatherTruncated(std::int32_t variable, std::int32_t* values) {
  if (const SortedRecords::Tag* tag = order->FindTag(variable)) {
    order->ReadCodes(*tag, First(), InHand(), values);
    return true;
  }
  const KeptColumn& column = Column(variable);
  if (variable == order->Variable() || !column.IsNarrow()) return false;
  ForEachNumber(column, [&](std::size_t i, std::size_t number) {
    values[i] = KeptColumn::CodeOf(*column.Bytes(number));
  });
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
    view.iterator = std::make_unique<NPARSortedIterator>(
        *records,
        std::make_shared<const SortedRecords>(*records, variable, companions,
                                              TellsProgress() ? &StageProgress::Tell : nullptr));
  }
  return view.iterator.get();
}

void NPARSortManager::Release(std::int32_t variable) noexcept {
  if (IsInRecord(variable)) views[static_cast<std::size_t>(variable)].iterator.reset();
}
