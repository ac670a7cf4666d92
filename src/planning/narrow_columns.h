#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/large_array.h"
#include "planning/record_iterators.h"

/// A copy of a variable whose values are whole numbers from 0 to 254 or the missing category: one
/// byte a record.
class NarrowColumn {
 public:
  /// False, and no column, where a value does not fit. Throws std::bad_alloc.
  bool Copy(const InitialDataReader& reader, std::int32_t variable);
  [[nodiscard]] double ValueAt(std::size_t number) const noexcept {
    const std::uint8_t byte = bytes[number];
    return byte == kMissing ? QDMV::gMissingCategory : static_cast<double>(byte);
  }

  void Prefetch(std::size_t number) const noexcept { __builtin_prefetch(&bytes[number]); }

 private:
  static constexpr std::uint8_t kMissing = 255;
  LargeArray<std::uint8_t> bytes;
};

/// The narrow columns of a run. A walk in the order of another variable meets the records at
/// random: a group code then costs a line of memory where it stands in the row, while the column
/// as a whole stays in the processor's cache.
class NarrowColumns {
 public:
  /// The reader is not taken over.
  explicit NarrowColumns(const InitialDataReader* reader);
  /// Null for a variable that does not fit, and where the records themselves are few enough for
  /// the cache. Throws std::bad_alloc.
  [[nodiscard]] const NarrowColumn* Find(std::int32_t variable);

 private:
  enum class State : std::uint8_t { Unknown, Narrow, Wide };
  struct Entry {
    State state = State::Unknown;
    NarrowColumn column;
  };

  const InitialDataReader* reader;
  std::vector<Entry> entries;  // by variable; none where the rows will do
};
