#pragma once

#include <npar/analysis.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "host/arrow/arrow_type.h"

namespace npar_host {

/// A column as messages call it.
struct ColumnLabel {
  std::string name;
  std::string type;

  /// Throws InputError: "column "x" (int64): message".
  [[noreturn]] void Fail(const std::string& message) const;
};

/// Which of the records of an array have a value: a bit for each, set where it has one.
struct Validity {
  const std::uint8_t* bits = nullptr;  ///< null: all
  std::size_t offset = 0;              ///< of the first record

  [[nodiscard]] bool IsSet(std::size_t record) const {
    const std::size_t bit = offset + record;
    return bits == nullptr || (bits[bit / 8] >> (bit % 8) & 1U) != 0;
  }
};

/// Records of an array without children, once its shape is known to be that of its type. Lengths
/// and offsets are the producer's word: they are checked against each other. How large a buffer is
/// only its type and its last offset tell.
class ArrayView {
 public:
  /// `count` records from `first` on, counted from the array's own offset. InputError for an array
  /// that can't hold them.
  ArrayView(const ArrowArray& array, const ArrowType& type, std::int64_t first, std::int64_t count,
            const ColumnLabel& label);

  [[nodiscard]] std::size_t Size() const { return size; }
  [[nodiscard]] bool HasNulls() const {
    return layout == ArrowType::Layout::Null || validity.bits != nullptr;
  }
  [[nodiscard]] bool IsNull(std::size_t record) const {
    return layout == ArrowType::Layout::Null || !validity.IsSet(record);
  }

  /// The values of the buffer, whose size each is, from the first record on.
  [[nodiscard]] const char* Bytes(std::size_t width) const {
    return static_cast<const char*>(values) + offset * width;
  }
  /// The bit of a record in a buffer of bits.
  [[nodiscard]] bool Bit(std::size_t record) const {
    return Validity{static_cast<const std::uint8_t*>(values), offset}.IsSet(record);
  }
  /// Of an array of texts, where it has a value. InputError for one that lies outside.
  [[nodiscard]] std::string_view Text(std::size_t record, const ColumnLabel& label) const;

 private:
  void CheckOffsets(const ColumnLabel& label);
  [[nodiscard]] std::int64_t OffsetAt(std::size_t index) const;
  [[nodiscard]] std::string_view ViewedText(std::size_t record, const ColumnLabel& label) const;

  ArrowType::Layout layout;
  std::size_t offset;
  std::size_t size;
  Validity validity;
  const void* values = nullptr;
  // Of texts.
  const char* text = nullptr;
  std::int64_t firstByte = 0;
  std::int64_t lastByte = 0;
  const void* const* pieces = nullptr;  // of views, with their lengths
  const std::int64_t* lengths = nullptr;
  std::size_t pieceCount = 0;
};

/// Throws InputError for a length or an offset below 0, or too large to be counted with.
void CheckExtent(const ArrowArray& array, const ColumnLabel& label);

}  // namespace npar_host
