#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/order/large_array.h"
#include "kit/order/radix_sort.h"
#include "kit/records/sorted_data.h"
#include "planning/kept_records.h"
#include "planning/record_iterators.h"

/// The kept records ascending by a variable, equal values in record order: 12 bytes a record.
///
/// Bits that no record number needs carry codes of narrow variables along, so that a walk finds
/// them where it is instead of all over the memory.
struct SortedRecords {
  /// Where the code of a variable stands in the upper bits of NumberedKey::number; the missing
  /// category is all of its bits.
  struct Tag {
    std::int32_t variable;
    int shift;
    std::uint32_t mask;
    [[nodiscard]] std::int32_t CodeIn(std::uint32_t number) const noexcept {
      const std::uint32_t code = number >> shift & mask;
      return code == mask ? kMissingCode : static_cast<std::int32_t>(code);
    }
  };
  static constexpr auto kMissingCode = static_cast<std::int32_t>(QDMV::gMissingCategory);

  std::int32_t variable = -1;
  LargeArray<NumberedKey> entries;  // OrderedBits of the value, number of the record below its tags
  std::size_t count = 0;
  std::uint32_t numberMask = ~std::uint32_t{0};
  std::vector<Tag> tags;

  [[nodiscard]] std::size_t NumberAt(std::size_t place) const noexcept {
    return entries[place].number & numberMask;
  }
};

/// Walks the kept records in such an order.
class NPARSortedIterator final : public KeptWalk {
 public:
  /// The records are not taken over.
  NPARSortedIterator(const KeptRecords& records, SortedRecords order);
  /// Another walk over the same order.
  [[nodiscard]] std::unique_ptr<NPARSortedIterator> AnotherView() const {
    return std::make_unique<NPARSortedIterator>(*this);
  }
  NPARSortedIterator(const NPARSortedIterator& other)
      : KeptWalk(other.Records()), shared(other.shared), order(*shared) {}

 private:
  void GatherColumn(std::int32_t variable, double* values) override;
  bool GatherTruncated(std::int32_t variable, std::int32_t* values) override;
  [[nodiscard]] bool DoKeysTellValues() const noexcept;
  [[nodiscard]] const SortedRecords::Tag* FindTag(std::int32_t variable) const noexcept;
  void PrefetchFollowing(const KeptColumn& column) const noexcept;

  std::shared_ptr<const SortedRecords> shared;
  const SortedRecords& order;
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

  [[nodiscard]] SortedRecords Sort(std::int32_t variable) const;
  void PlanTags(SortedRecords& order) const;

  const KeptRecords* records;
  std::vector<std::int32_t> companions;
  std::vector<View> views;
};
