#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "foundation/names.h"
#include "kit/order/large_array.h"
#include "kit/order/radix_sort.h"
#include "kit/records/sorted_data.h"
#include "planning/kept_records.h"
#include "planning/record_iterators.h"

/// The kept records ascending by a variable, equal values in record order.
///
/// An entry is a record's key and number, 12 bytes, or its key alone, 8 bytes, without the upper
/// bits that it shares with its neighbours. Bits that neither takes carry codes of narrow variables
/// along, so that a walk finds them where it is instead of all over the memory. Entries of 8 bytes
/// are enough where keys tell the values and codes all other variables that walks will read; a walk
/// that looks up another one nevertheless has the numbers found.
class SortedRecords {
 public:
  /// Where the code of a variable stands among such bits; the missing category is all of its bits.
  struct Tag {
    std::int32_t variable;
    int shift;
    std::uint32_t mask;
    [[nodiscard]] std::int32_t CodeIn(std::uint32_t label) const noexcept {
      const std::uint32_t code = label >> shift & mask;
      return code == mask ? kMissingCode : static_cast<std::int32_t>(code);
    }
  };
  static constexpr auto kMissingCode = static_cast<std::int32_t>(QDMV::gMissingCategory);

  /// Sorts the records, which are not taken over. `companions`: the other variables that walks
  /// will read. Throws std::bad_alloc where memory runs out, and for more records than an order
  /// numbers.
  SortedRecords(const KeptRecords& records, std::int32_t variable,
                const std::vector<std::int32_t>& companions, TellSorted tell = nullptr);

  [[nodiscard]] std::int32_t Variable() const noexcept { return variable; }
  /// Null for a variable whose codes the entries don't carry.
  [[nodiscard]] const Tag* FindTag(std::int32_t variable) const noexcept;
  /// Of `size` places, at most kRecordsAtOnce: the codes of a tag.
  template <typename Value>
  void ReadCodes(const Tag& tag, std::size_t first, std::size_t size, Value* codes) const;
  /// The values of the variable; false where the entries don't tell them.
  [[nodiscard]] bool ReadValues(std::size_t first, std::size_t size, double* values) const;
  /// The numbers of the records. Throws std::bad_alloc.
  void ReadNumbers(std::size_t first, std::size_t size, std::uint32_t* numbers) const;

 private:
  /// Gives companions bits from `used` up to `end`; false where one is left out.
  bool PlanTags(const std::vector<std::int32_t>& companions, int used, int end);
  [[nodiscard]] bool DoNumberedKeysTell(std::size_t first, std::size_t size) const noexcept;

  const KeptRecords& records;
  std::int32_t variable;
  std::vector<Tag> tags;
  bool isNumbered;
  LargeArray<NumberedKey> numbered;  // OrderedBits of the value, number below the tags
  std::uint32_t numberMask = 0;
  SortedKeys<TaggedKey> tagged;
  mutable std::once_flag areNumbersFound;
  mutable RecordOrder foundNumbers;
};

/// Walks the kept records in such an order.
class NPARSortedIterator final : public KeptWalk {
 public:
  /// The records are not taken over.
  NPARSortedIterator(const KeptRecords& records, std::shared_ptr<const SortedRecords> order)
      : KeptWalk(records), order(std::move(order)) {}
  /// Another walk over the same order.
  [[nodiscard]] std::unique_ptr<NPARSortedIterator> AnotherView() const {
    return std::make_unique<NPARSortedIterator>(*this);
  }
  NPARSortedIterator(const NPARSortedIterator& other)
      : KeptWalk(other.Records()), order(other.order) {}

 private:
  void GatherColumn(std::int32_t variable, double* values) override;
  bool GatherTruncated(std::int32_t variable, std::int32_t* values) override;
  /// use(number) for each record in hand; meanwhile the column's values of those that come next are
  /// sought.
  template <typename Use>
  void ForEachNumber(const KeptColumn& column, Use use) const;

  std::shared_ptr<const SortedRecords> order;
};

/// The sorted views of a run. A view is sorted when it is first asked for and then kept.
class NPARSortManager final : public ISortedData {
 public:
  /// The reader is not taken over.
  explicit NPARSortManager(const InitialDataReader* reader);

  /// False for a variable outside the record. A variable is taken once.
  bool AddSortVariable(std::int32_t variable);
  /// Before the first view: a variable that sorted walks will read beside the one of their order.
  void AddCompanion(std::int32_t variable);
  /// Throws std::bad_alloc where memory runs out, and for more records than an order numbers.
  BatchSource* GetSortedIterator(std::int32_t variable) override;
  /// Is the view of a variable sorted already?
  [[nodiscard]] bool IsSorted(std::int32_t variable) const noexcept {
    return IsInRecord(variable) && views[static_cast<std::size_t>(variable)].iterator != nullptr;
  }
  /// Do sorts take so long that they tell how far they are?
  [[nodiscard]] bool TellsProgress() const noexcept {
    return records->Count() >= RadixBuckets::kPiece;
  }
  /// Gives back the memory of a view; asked for again, it is sorted again.
  void Release(std::int32_t variable) noexcept;

 private:
  struct View {
    bool isWanted = false;
    std::unique_ptr<NPARSortedIterator> iterator;
  };
  [[nodiscard]] bool IsInRecord(std::int32_t variable) const noexcept {
    return variable >= 0 && static_cast<std::size_t>(variable) < views.size();
  }

  const KeptRecords* records;
  std::vector<std::int32_t> companions;
  std::vector<View> views;
};
