#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/names.h"
#include "kit/order/interruption.h"
#include "kit/order/large_array.h"
#include "kit/order/value_codes.h"
#include "kit/records/batch_source.h"

/// Values in blocks of a power of two, which never move: of its own, or lent ones.
template <typename Value>
class BlockList {
 public:
  explicit BlockList(int blockShift) noexcept : shift(blockShift) {}

  [[nodiscard]] std::size_t BlockSize() const noexcept { return std::size_t{1} << shift; }
  /// Of a value for which there is room; those up to the end of its block stand behind it.
  [[nodiscard]] Value* Place(std::size_t number) const noexcept {
    return blocks[number >> shift] + (number & (BlockSize() - 1));
  }
  [[nodiscard]] std::size_t Capacity() const noexcept { return blocks.size() << shift; }
  /// Throws std::bad_alloc.
  void Reserve(std::size_t count) {
    while (Capacity() < count) blocks.push_back(MakeBlock());
  }
  /// Puts values of one block behind the `number` that there are. Lasting ones stay where they are
  /// while those of their block stand side by side. Throws std::bad_alloc.
  void Put(std::size_t number, const Value* values, std::size_t count, bool areLasting) {
    const std::size_t before = number & (BlockSize() - 1);
    if (before == 0) {
      isLastLent = areLasting;
      // What is lent is never written to.
      blocks.push_back(areLasting ? const_cast<Value*>(values) : MakeBlock());
    } else if (isLastLent && !(areLasting && blocks.back() + before == values)) {
      Value* const own = MakeBlock();
      std::copy_n(blocks.back(), before, own);
      blocks.back() = own;
      isLastLent = false;
    }
    if (!isLastLent) std::copy_n(values, count, blocks.back() + before);
  }

 private:
  /// Memory is taken for as many blocks as it was before, up to a limit.
  Value* MakeBlock() {
    if (spare == 0) {
      constexpr std::size_t kLargestPiece = (std::size_t{32} << 20) / sizeof(Value);
      const std::size_t most = std::max(kLargestPiece >> shift, std::size_t{1});
      spare = std::clamp(made, std::size_t{1}, most);
      pieces.push_back(MakeLargeArray<Value>(spare << shift));
      nextSpare = pieces.back().get();
    }
    --spare;
    ++made;
    return std::exchange(nextSpare, nextSpare + BlockSize());
  }

  int shift;
  std::vector<Value*> blocks;
  bool isLastLent = false;
  std::vector<LargeArray<Value>> pieces;
  Value* nextSpare = nullptr;
  std::size_t spare = 0;  // blocks
  std::size_t made = 0;
};

/// One variable of the kept records: a byte each while all its values are whole numbers from 0 to
/// 254 or the missing category, as group codes are; else a code of two bytes while there are few
/// values; else a double each.
class KeptColumn {
 public:
  /// The byte of the missing category.
  static constexpr std::uint8_t kMissingByte = 255;

  explicit KeptColumn(int blockShift) noexcept
      : bytes(blockShift), codes(blockShift), doubles(blockShift) {}

  /// Puts some values behind the `kept` ones that there are. Those that last as long as the run
  /// need not be copied. Throws std::bad_alloc.
  void Append(std::size_t kept, const double* values, std::size_t count, bool areLasting);

  [[nodiscard]] bool IsNarrow() const noexcept { return shape == Shape::Bytes; }
  [[nodiscard]] bool IsWide() const noexcept { return shape == Shape::Doubles; }
  /// Only of a narrow one. The bytes up to the end of the block stand behind it.
  [[nodiscard]] const std::uint8_t* Bytes(std::size_t number) const noexcept {
    return bytes.Place(number);
  }
  /// Only of a narrow one: one more than the largest of its bytes, that of the missing category
  /// apart.
  [[nodiscard]] unsigned CodeCount() const noexcept { return codeCount; }
  /// The values by code; null where they are not kept by codes.
  [[nodiscard]] const std::vector<double>* Table() const noexcept {
    return table == nullptr ? nullptr : &table->Values();
  }
  /// Only of one that has a table; as Bytes.
  [[nodiscard]] const std::uint16_t* Codes(std::size_t number) const noexcept {
    return codes.Place(number);
  }
  /// `count` values within a block: where they stand, or copied into `room`.
  [[nodiscard]] const double* Values(std::size_t first, std::size_t count, double* room) const;
  [[nodiscard]] static double ValueOf(std::uint8_t byte) noexcept {
    return byte == kMissingByte ? QDMV::gMissingCategory : static_cast<double>(byte);
  }
  /// The same as a code.
  [[nodiscard]] static std::int32_t CodeOf(std::uint8_t byte) noexcept {
    return byte == kMissingByte ? static_cast<std::int32_t>(QDMV::gMissingCategory) : byte;
  }
  [[nodiscard]] double ValueAt(std::size_t number) const noexcept {
    switch (shape) {
      case Shape::Bytes:
        return ValueOf(*bytes.Place(number));
      case Shape::Codes:
        return table->Value(*codes.Place(number));
      case Shape::Doubles:
        break;
    }
    return *doubles.Place(number);
  }
  /// Asks the processor for a value that will be wanted soon.
  void Prefetch(std::size_t number) const noexcept {
    switch (shape) {
      case Shape::Bytes:
        return __builtin_prefetch(bytes.Place(number));
      case Shape::Codes:
        return __builtin_prefetch(codes.Place(number));
      case Shape::Doubles:
        return __builtin_prefetch(doubles.Place(number));
    }
  }

  /// Is the mark of a missing value, of either kind, among the values?
  [[nodiscard]] bool Holds(double missingMark) const noexcept {
    return missingMark == QDMV::gMissingValue ? holdsMissingValue : holdsMissingCategory;
  }
  [[nodiscard]] bool HoldsNotANumber() const noexcept { return holdsNotANumber; }
  /// Do the OrderedBits of each value tell it to the last bit?
  [[nodiscard]] bool AreToldByKeys() const noexcept {
    return !holdsNotANumber && !holdsNegativeZero;
  }
  /// Bits in which the OrderedBits of two values may differ; the highest one tells how far apart
  /// the values lie.
  [[nodiscard]] std::uint64_t DifferingBits() const noexcept;

 private:
  enum class Shape : std::uint8_t { Bytes, Codes, Doubles };

  void Survey(const double* values, std::size_t count) noexcept;
  /// False, and nothing appended, where a value does not fit.
  [[nodiscard]] bool AppendBytes(std::size_t kept, const double* values, std::size_t count);
  /// False, and nothing appended, where there are too many values, or nearly all come once.
  [[nodiscard]] bool AppendCodes(std::size_t kept, const double* values, std::size_t count);
  void AppendDoubles(std::size_t kept, const double* values, std::size_t count, bool areLasting);
  /// The kept values go on in another shape.
  void StartCodes(std::size_t kept);
  void StartDoubles(std::size_t kept);
  template <typename Use>
  void ForEachBlock(std::size_t kept, Use use) const {
    for (std::size_t first = 0; first < kept; first += doubles.BlockSize()) {
      use(first, std::min(kept - first, doubles.BlockSize()));
    }
  }

  Shape shape = Shape::Bytes;
  std::uint8_t leastByte = kMissingByte;  // bounds of those that were written
  std::uint8_t codeCount = 0;
  BlockList<std::uint8_t> bytes;
  BlockList<std::uint16_t> codes;
  std::unique_ptr<ValueCodes> table;  // while the shape is Codes
  BlockList<double> doubles;
  bool holdsMissingValue = false;
  bool holdsMissingCategory = false;
  bool holdsNotANumber = false;
  bool holdsNegativeZero = false;
  // Of a column that is not narrow.
  std::uint64_t firstBits = 0;  // of negative zeros those of zero
  std::uint64_t differing = 0;  // from the first
};

/// The records of a run, variable by variable. A pass reads the few variables that its tests ask
/// for and nothing between them.
class KeptRecords {
 public:
  /// Records of a block stand side by side.
  static constexpr int kBlockShift = 11;
  static constexpr std::size_t kBlockSize = std::size_t{1} << kBlockShift;

  /// Before the first record.
  void SetWidth(int width) {
    for (int variable = 0; variable < width; ++variable) columns.emplace_back(kBlockShift);
  }
  /// Throws std::bad_alloc.
  void Append(RecordBatch& batch);

  [[nodiscard]] std::size_t Count() const noexcept { return count; }
  /// Doubles in a record.
  [[nodiscard]] int Width() const noexcept { return static_cast<int>(columns.size()); }
  [[nodiscard]] const KeptColumn& Column(std::int32_t variable) const noexcept {
    return columns[static_cast<std::size_t>(variable)];
  }

 private:
  std::size_t count = 0;
  std::vector<KeptColumn> columns;
};

/// A walk over all kept records in some order: by batches, and one by one as iterators go. The two
/// are not mixed between one Reset and the next.
class KeptWalk : public MultiPassRecordIter, public BatchSource, private RecordBatch {
 public:
  /// Stands at the first record; the records are not taken over.
  explicit KeptWalk(const KeptRecords& records);

  bool HasNext() final { return next < records.Count(); }
  const Record* Next() final;
  int GetState() const final { return next < records.Count() ? 0 : 1; }
  int Reset() final;
  RecordBatch* NextBatch() final {
    Interruption::Check();
    return Advance(kRecordsAtOnce) ? this : nullptr;
  }
  /// Takes up to so many records in hand, from a place in the order of the walk on.
  RecordBatch& LookAt(std::size_t place, std::size_t count) {
    next = place;
    static_cast<void>(Advance(count));
    return *this;
  }
  [[nodiscard]] int Width() const final { return records.Width(); }
  [[nodiscard]] std::size_t Count() const final { return records.Count(); }
  [[nodiscard]] bool MayHold(const MissingMark& mark) const final {
    return records.Column(mark.variable).Holds(mark.value);
  }

 protected:
  [[nodiscard]] const KeptColumn& Column(std::int32_t variable) const noexcept {
    return records.Column(variable);
  }
  [[nodiscard]] const KeptRecords& Records() const noexcept { return records; }
  /// The records in hand, numbered in the order of the walk, and those that come next.
  [[nodiscard]] std::size_t First() const noexcept { return first; }
  [[nodiscard]] std::size_t InHand() const noexcept { return next - first; }

 private:
  /// Takes up to `count` records in hand; false at the end.
  bool Advance(std::size_t count);

  const KeptRecords& records;
  Record current;
  std::size_t first = 0;
  std::size_t next = 0;
};
