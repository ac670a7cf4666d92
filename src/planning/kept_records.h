#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/order/large_array.h"

/// Values in blocks of a power of two, which never move.
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
    while (Capacity() < count) AddBlocks();
  }

 private:
  /// As many as there are, up to a limit.
  void AddBlocks() {
    constexpr std::size_t kLargestPiece = (std::size_t{32} << 20) / sizeof(Value);
    const std::size_t most = std::max(kLargestPiece >> shift, std::size_t{1});
    const std::size_t added = std::clamp(blocks.size(), std::size_t{1}, most);
    pieces.push_back(MakeLargeArray<Value>(added << shift));
    for (std::size_t i = 0; i < added; ++i) blocks.push_back(pieces.back().get() + (i << shift));
  }

  int shift;
  std::vector<Value*> blocks;
  std::vector<LargeArray<Value>> pieces;
};

/// One variable of the kept records: a byte each while all its values are whole numbers from 0 to
/// 254 or the missing category, as group codes are, else a double each.
class KeptColumn {
 public:
  /// The byte of the missing category.
  static constexpr std::uint8_t kMissingByte = 255;

  explicit KeptColumn(int blockShift) noexcept : bytes(blockShift), doubles(blockShift) {}

  /// Puts the values at a place of some rows, at most kRecordsAtOnce, behind the `kept` ones that
  /// there are. Throws std::bad_alloc.
  void Append(std::size_t kept, const double* const* rows, std::size_t place, std::size_t count);

  [[nodiscard]] bool IsNarrow() const noexcept { return isNarrow; }
  /// Only of a narrow one. The bytes up to the end of the block stand behind it.
  [[nodiscard]] const std::uint8_t* Bytes(std::size_t number) const noexcept {
    return bytes.Place(number);
  }
  /// Only of a narrow one: one more than the largest of its bytes, that of the missing category
  /// apart.
  [[nodiscard]] unsigned CodeCount() const noexcept { return codeCount; }
  /// Only of one that is not narrow; likewise.
  [[nodiscard]] const double* Doubles(std::size_t number) const noexcept {
    return doubles.Place(number);
  }
  [[nodiscard]] static double ValueOf(std::uint8_t byte) noexcept {
    return byte == kMissingByte ? QDMV::gMissingCategory : static_cast<double>(byte);
  }
  /// The same as a code.
  [[nodiscard]] static std::int32_t CodeOf(std::uint8_t byte) noexcept {
    return byte == kMissingByte ? static_cast<std::int32_t>(QDMV::gMissingCategory) : byte;
  }
  [[nodiscard]] double ValueAt(std::size_t number) const noexcept {
    return isNarrow ? ValueOf(*bytes.Place(number)) : *doubles.Place(number);
  }
  /// Asks the processor for a value that will be wanted soon.
  void Prefetch(std::size_t number) const noexcept {
    if (isNarrow) {
      __builtin_prefetch(bytes.Place(number));
    } else {
      __builtin_prefetch(doubles.Place(number));
    }
  }

  /// Is the mark of a missing value, of either kind, among the values?
  [[nodiscard]] bool Holds(double missingMark) const noexcept {
    return missingMark == QDMV::gMissingValue ? holdsMissingValue : holdsMissingCategory;
  }
  /// Bits in which the OrderedBits of two values may differ; the highest one tells how far apart
  /// the values lie.
  [[nodiscard]] std::uint64_t DifferingBits() const noexcept {
    return holdsNotANumber ? ~std::uint64_t{0} : differing;
  }

 private:
  void Survey(std::size_t kept, const double* values, std::size_t count) noexcept;
  /// False, and nothing appended, where a value does not fit.
  [[nodiscard]] bool AppendNarrow(std::size_t kept, const double* values, std::size_t count);
  void AppendWide(std::size_t kept, const double* const* rows, std::size_t place,
                  std::size_t count);
  void Widen(std::size_t kept);

  bool isNarrow = true;
  std::uint8_t codeCount = 0;
  BlockList<std::uint8_t> bytes;
  BlockList<double> doubles;
  bool holdsMissingValue = false;
  bool holdsMissingCategory = false;
  bool holdsNotANumber = false;
  std::uint64_t firstBits = 0;  // of negative zeros those of zero
  std::uint64_t differing = 0;  // from the first
};

/// Rows that are made of columns.
class RowBuffer {
 public:
  /// Room for some rows of a width, whose addresses are `count` ones at the result until the next
  /// call. Throws std::bad_alloc.
  const double* const* Prepare(std::size_t count, int width);
  [[nodiscard]] double* Row(std::size_t i) noexcept { return values.data() + i * rowWidth; }

 private:
  std::size_t rowWidth = 0;
  std::vector<double> values;
  std::vector<const double*> rows;
};

/// The records of a run, variable by variable. A pass reads the few variables that its tests ask
/// for and nothing between them.
class KeptRecords {
 public:
  /// Records of a block stand side by side: 2 to the power of `blockShift` of them.
  explicit KeptRecords(int blockShift) noexcept : blockShift(blockShift) {}

  /// Before the first record.
  void SetWidth(int width) {
    for (int variable = 0; variable < width; ++variable) columns.emplace_back(blockShift);
  }
  /// Throws std::bad_alloc.
  void Append(const RecordBlock& rows);

  [[nodiscard]] std::size_t Count() const noexcept { return count; }
  /// Doubles in a record.
  [[nodiscard]] int Width() const noexcept { return static_cast<int>(columns.size()); }
  [[nodiscard]] const KeptColumn& Column(std::int32_t variable) const noexcept {
    return columns[static_cast<std::size_t>(variable)];
  }
  [[nodiscard]] std::size_t BlockSize() const noexcept { return std::size_t{1} << blockShift; }
  void CopyRow(std::size_t number, double* row) const noexcept {
    for (const KeptColumn& column : columns) *row++ = column.ValueAt(number);
  }

 private:
  int blockShift;
  std::size_t count = 0;
  std::vector<KeptColumn> columns;
};
