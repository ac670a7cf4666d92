#include "host/arrow/column_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "host/arrow/decimal.h"
#include "host/arrow/dictionary_reader.h"
#include "host/data/input_error.h"
#include "host/data/xml_text.h"

namespace npar_host {
namespace {

using Layout = ArrowType::Layout;

/// Calls `visit` with a value of the C++ type of an integer or float layout.
template <class Visit>
void VisitNumber(Layout layout, const Visit& visit) {
  switch (layout) {
    case Layout::Int8:
      return visit(std::int8_t{});
    case Layout::UInt8:
      return visit(std::uint8_t{});
    case Layout::Int16:
      return visit(std::int16_t{});
    case Layout::UInt16:
      return visit(std::uint16_t{});
    case Layout::Int32:
      return visit(std::int32_t{});
    case Layout::UInt32:
      return visit(std::uint32_t{});
    case Layout::Int64:
      return visit(std::int64_t{});
    case Layout::UInt64:
      return visit(std::uint64_t{});
    case Layout::Float32:
      return visit(float{});
    default:
      return visit(double{});
  }
}

/// IEEE 754 binary16: 1 bit of sign, 5 of exponent, 10 of fraction.
double HalfValue(std::uint16_t bits) {
  constexpr int kBias = 15;
  constexpr int kFractionBits = 10;
  constexpr int kLastExponent = 31;
  const int exponent = bits >> kFractionBits & kLastExponent;
  const int fraction = bits & ((1 << kFractionBits) - 1);
  double value = 0.0;
  if (exponent == kLastExponent) {
    value = fraction == 0 ? std::numeric_limits<double>::infinity()
                          : std::numeric_limits<double>::quiet_NaN();
  } else {
    const int significand = exponent == 0 ? fraction : fraction + (1 << kFractionBits);
    value = std::ldexp(significand, std::max(exponent, 1) - kBias - kFractionBits);
  }
  return (bits >> 15U) != 0 ? -value : value;
}

/// The quotient of whole numbers, rounded to nearest as far as that is a matter of the seconds.
double Divided(std::int64_t value, std::int64_t divisor) {
  const std::int64_t whole = value / divisor;
  return static_cast<double>(whole) +
         static_cast<double>(value % divisor) / static_cast<double>(divisor);
}

class ArrayReader : public ColumnReader {
 public:
  ArrayReader(ColumnLabel label, const ArrowType& type)
      : ColumnReader(std::move(label)), type(type) {}

  void Open(const ArrowArray& array, std::int64_t first, std::int64_t count,
            const Validity& whole) override {
    view.emplace(array, type, first, count, label);
    wholeRecords = whole;
  }

 protected:
  [[nodiscard]] bool HasNulls() const { return view->HasNulls() || wholeRecords.bits != nullptr; }
  [[nodiscard]] bool IsNull(std::size_t record) const {
    return view->IsNull(record) || !wholeRecords.IsSet(record);
  }
  void MarkMissing(std::size_t first, std::size_t count, double* cells) const {
    if (!HasNulls()) return;
    for (std::size_t i = 0; i < count; ++i) {
      if (IsNull(first + i)) cells[i] = kMissingNumber;
    }
  }

  ArrowType type;
  std::optional<ArrayView> view;

 private:
  Validity wholeRecords;
};

class NumberReader final : public ArrayReader {
 public:
  using ArrayReader::ArrayReader;

  void Read(std::size_t first, std::size_t count, double* cells) override {
    if (type.layout == Layout::Null) {
      std::fill_n(cells, count, kMissingNumber);
      return;
    }
    if (type.layout == Layout::Decimal) {
      ReadDecimals(first, count, cells);
    } else if (type.layout == Layout::Float16) {
      ReadEach<std::uint16_t>(first, count, cells, HalfValue);
    } else {
      ReadNumbers(first, count, cells);
    }
    MarkMissing(first, count, cells);
  }

  [[nodiscard]] const double* Doubles() const override {
    const char* const bytes = view->Bytes(sizeof(double));
    const bool isAligned = reinterpret_cast<std::uintptr_t>(bytes) % alignof(double) == 0;
    if (type.layout != Layout::Float64 || HasNulls() || !isAligned) return nullptr;
    return reinterpret_cast<const double*>(bytes);
  }

 private:
  /// Arrays of foreign memory may lie at any address.
  template <class Value, class Convert>
  void ReadEach(std::size_t first, std::size_t count, double* cells, const Convert& convert) const {
    const char* const bytes = view->Bytes(sizeof(Value)) + first * sizeof(Value);
    for (std::size_t i = 0; i < count; ++i) {
      Value value;
      std::memcpy(&value, bytes + i * sizeof(Value), sizeof value);
      cells[i] = convert(value);
    }
  }

  void ReadDecimals(std::size_t first, std::size_t count, double* cells) const {
    const std::size_t width = type.width / 8;
    const char* const bytes = view->Bytes(width) + first * width;
    for (std::size_t i = 0; i < count; ++i) {
      cells[i] = DecimalValue(bytes + i * width, width, type.scale);
    }
  }

  void ReadNumbers(std::size_t first, std::size_t count, double* cells) const {
    VisitNumber(type.layout, [&]<class Value>(Value) {
      if constexpr (sizeof(Value) == sizeof(std::int64_t) && !std::is_floating_point_v<Value>) {
        if (type.divisor == 1) RequireExact<Value>(first, count);
      }
      if constexpr (std::is_integral_v<Value> && std::is_signed_v<Value>) {
        if (type.divisor != 1) {
          ReadEach<Value>(first, count, cells,
                          [&](Value value) { return Divided(value, type.divisor); });
          return;
        }
      }
      ReadEach<Value>(first, count, cells, [](Value value) { return static_cast<double>(value); });
    });
  }

  /// Whole numbers above 2^53 are only in part doubles.
  template <class Value>
  void RequireExact(std::size_t first, std::size_t count) const {
    constexpr Value kLast = Value{1} << 53;
    const char* const bytes = view->Bytes(sizeof(Value)) + first * sizeof(Value);
    for (std::size_t i = 0; i < count; ++i) {
      Value value;
      std::memcpy(&value, bytes + i * sizeof(Value), sizeof value);
      const bool isPlain =
          value <= kLast && (!std::is_signed_v<Value> || value >= Value{0} - kLast);
      if (isPlain || IsNull(first + i) || IsExact(value)) continue;
      label.Fail(PlaceOf(first + i) + " is " + std::to_string(value) +
                 ", which no double holds exactly; give the column as texts if its values are "
                 "names, or as floats if they may be rounded");
    }
  }

  template <class Value>
  static bool IsExact(Value value) {
    // Rounded up it may lie above all values of the type, where a conversion back has no meaning.
    const auto rounded = static_cast<double>(value);
    constexpr double kBeyond = std::is_signed_v<Value> ? 0x1p63 : 0x1p64;
    return rounded < kBeyond && static_cast<Value>(rounded) == value;
  }
};

class TextReader final : public ArrayReader {
 public:
  TextReader(ColumnLabel label, const ArrowType& type, TextPool& pool)
      : ArrayReader(std::move(label), type), pool(pool) {}

  void Read(std::size_t first, std::size_t count, double* cells) override {
    for (std::size_t i = 0; i < count; ++i) {
      cells[i] = IsNull(first + i) ? kMissingCode : CodeOf(first + i);
    }
  }

  std::optional<std::string> TextOf(std::size_t record) override {
    if (IsNull(record)) return std::nullopt;
    RequireText(ValueOf(record), record);
    return std::string(ValueOf(record));
  }

 private:
  [[nodiscard]] std::string_view ValueOf(std::size_t record) const {
    if (type.layout == Layout::Bits) return view->Bit(record) ? "true" : "false";
    return view->Text(record, label);
  }

  double CodeOf(std::size_t record) {
    bool isNew = false;
    const std::string_view text = ValueOf(record);
    const std::uint32_t code = pool.Add(text, isNew);
    if (isNew) RequireText(text, record);
    return code;
  }

  void RequireText(std::string_view text, std::size_t record) const {
    const char* const fault = XmlTextFault(text);
    if (fault != nullptr) label.Fail(PlaceOf(record) + ": " + fault);
  }

  TextPool& pool;
};

ArrowType RequireType(const ArrowSchema& schema, const ColumnLabel& label) {
  const std::optional<ArrowType> type =
      ParseArrowType(schema.format == nullptr ? "" : schema.format);
  if (type) return *type;
  label.Fail(
      "values of this type are no numbers and no texts; convert the column, or name another");
}

std::unique_ptr<ColumnReader> MakeArrayReader(const ArrowSchema& schema, const ColumnLabel& label,
                                              Column& column) {
  const ArrowType type = RequireType(schema, label);
  column.isText = type.IsTextInCells();
  if (column.isText) return std::make_unique<TextReader>(label, type, column.texts);
  return std::make_unique<NumberReader>(label, type);
}

ColumnLabel LabelOf(const ArrowSchema& schema, const std::string& name) {
  const ArrowSchema& values = schema.dictionary == nullptr ? schema : *schema.dictionary;
  std::string type = ArrowTypeName(values.format == nullptr ? "" : values.format);
  if (&values != &schema) type = "dictionary of " + type;
  return {name, type};
}

}  // namespace

std::optional<std::string> ColumnReader::TextOf(std::size_t record) {
  double cell = 0.0;
  Read(record, 1, &cell);
  if (cell == kMissingNumber || std::isnan(cell)) return std::nullopt;
  std::array<char, 32> text;  // the shortest that reads back as the same double
  const auto [end, ignored] = std::to_chars(text.data(), text.data() + text.size(), cell + 0.0);
  return std::string(text.data(), end);
}

std::unique_ptr<ColumnReader> MakeColumnReader(const ArrowSchema& schema, Column& column) {
  const ColumnLabel label = LabelOf(schema, column.name);
  if (schema.dictionary == nullptr) return MakeArrayReader(schema, label, column);
  const ArrowType indices = RequireType(schema, label);
  if (!indices.IsInteger() || indices.storage != Storage::Infer || indices.divisor != 1) {
    label.Fail("the indices of a dictionary are to be integers");
  }
  if (schema.dictionary->dictionary != nullptr) {
    label.Fail("the entries of a dictionary can't have a dictionary themselves");
  }
  const bool isOrdered = (schema.flags & ARROW_FLAG_DICTIONARY_ORDERED) != 0;
  std::unique_ptr<ColumnReader> entries = MakeArrayReader(*schema.dictionary, label, column);
  return MakeDictionaryReader(label, indices, std::move(entries), column.isText, isOrdered);
}

ArrowType ValueTypeOf(const ArrowSchema& schema, const std::string& name) {
  const ArrowSchema& values = schema.dictionary == nullptr ? schema : *schema.dictionary;
  return RequireType(values, LabelOf(schema, name));
}

}  // namespace npar_host
