#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/data/model.h"

namespace npar_host {

/// How the values of an Arrow column lie in memory, and what they mean.
struct ArrowType {
  enum class Layout {
    Null,
    Bits,
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float16,
    Float32,
    Float64,
    Decimal,
    Text,       // offsets of 32 bits
    LargeText,  // of 64 bits
    TextView
  };

  Layout layout = Layout::Null;
  Storage storage = Storage::Infer;  ///< Date, Time or Timestamp for moments
  std::int64_t divisor = 1;          ///< of integers: how many make one day or second
  unsigned width = 0;                ///< of a decimal, in bits
  int scale = 0;                     ///< of a decimal: digits behind the point

  [[nodiscard]] bool IsText() const {
    return layout == Layout::Text || layout == Layout::LargeText || layout == Layout::TextView;
  }
  /// Do the cells of a dataset hold it as texts?
  [[nodiscard]] bool IsTextInCells() const { return IsText() || layout == Layout::Bits; }
  [[nodiscard]] bool IsInteger() const {
    return layout >= Layout::Int8 && layout <= Layout::UInt64;
  }
};

/// The type of a format string of the Arrow C data interface; nothing for one that holds neither
/// numbers nor texts nor truth values, and for what is no format.
[[nodiscard]] std::optional<ArrowType> ParseArrowType(std::string_view format);

/// What a person calls the type of a format string: "int64", "timestamp", "list".
[[nodiscard]] std::string ArrowTypeName(std::string_view format);

}  // namespace npar_host
