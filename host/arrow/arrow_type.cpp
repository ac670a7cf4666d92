#include "host/arrow/arrow_type.h"

#include <charconv>
#include <system_error>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

using Layout = ArrowType::Layout;

constexpr std::int64_t kMilli = 1000;
constexpr std::int64_t kMicro = 1000000;
constexpr std::int64_t kNano = 1000000000;
constexpr std::int64_t kMillisOfDay = 86400 * kMilli;

struct Known {
  std::string_view format;  // one that ends in ':' has something behind it
  const char* name;
  std::optional<ArrowType> type;
};

constexpr ArrowType Moment(Layout layout, Storage storage, std::int64_t divisor) {
  return {.layout = layout, .storage = storage, .divisor = divisor};
}

constexpr Known kKnown[] = {
    {"n", "null", ArrowType{.layout = Layout::Null}},
    {"b", "bool", ArrowType{.layout = Layout::Bits}},
    {"c", "int8", ArrowType{.layout = Layout::Int8}},
    {"C", "uint8", ArrowType{.layout = Layout::UInt8}},
    {"s", "int16", ArrowType{.layout = Layout::Int16}},
    {"S", "uint16", ArrowType{.layout = Layout::UInt16}},
    {"i", "int32", ArrowType{.layout = Layout::Int32}},
    {"I", "uint32", ArrowType{.layout = Layout::UInt32}},
    {"l", "int64", ArrowType{.layout = Layout::Int64}},
    {"L", "uint64", ArrowType{.layout = Layout::UInt64}},
    {"e", "float16", ArrowType{.layout = Layout::Float16}},
    {"f", "float32", ArrowType{.layout = Layout::Float32}},
    {"g", "float64", ArrowType{.layout = Layout::Float64}},
    {"u", "utf8", ArrowType{.layout = Layout::Text}},
    {"U", "large utf8", ArrowType{.layout = Layout::LargeText}},
    {"vu", "utf8 view", ArrowType{.layout = Layout::TextView}},
    {"tdD", "date32", Moment(Layout::Int32, Storage::Date, 1)},
    {"tdm", "date64", Moment(Layout::Int64, Storage::Date, kMillisOfDay)},
    {"tts", "time32", Moment(Layout::Int32, Storage::Time, 1)},
    {"ttm", "time32", Moment(Layout::Int32, Storage::Time, kMilli)},
    {"ttu", "time64", Moment(Layout::Int64, Storage::Time, kMicro)},
    {"ttn", "time64", Moment(Layout::Int64, Storage::Time, kNano)},
    {"tss:", "timestamp", Moment(Layout::Int64, Storage::Timestamp, 1)},
    {"tsm:", "timestamp", Moment(Layout::Int64, Storage::Timestamp, kMilli)},
    {"tsu:", "timestamp", Moment(Layout::Int64, Storage::Timestamp, kMicro)},
    {"tsn:", "timestamp", Moment(Layout::Int64, Storage::Timestamp, kNano)},
    {"tDs", "duration", Moment(Layout::Int64, Storage::Infer, 1)},
    {"tDm", "duration", Moment(Layout::Int64, Storage::Infer, kMilli)},
    {"tDu", "duration", Moment(Layout::Int64, Storage::Infer, kMicro)},
    {"tDn", "duration", Moment(Layout::Int64, Storage::Infer, kNano)},
    {"d:", "decimal", std::nullopt},
    {"tiM", "interval", std::nullopt},
    {"tiD", "interval", std::nullopt},
    {"tin", "interval", std::nullopt},
    {"z", "binary", std::nullopt},
    {"Z", "large binary", std::nullopt},
    {"vz", "binary view", std::nullopt},
    {"w:", "fixed-size binary", std::nullopt},
    {"+l", "list", std::nullopt},
    {"+L", "large list", std::nullopt},
    {"+vl", "list view", std::nullopt},
    {"+vL", "large list view", std::nullopt},
    {"+w:", "fixed-size list", std::nullopt},
    {"+s", "struct", std::nullopt},
    {"+m", "map", std::nullopt},
    {"+r", "run-end encoded", std::nullopt},
    {"+ud:", "union", std::nullopt},
    {"+us:", "union", std::nullopt},
};

const Known* Find(std::string_view format) {
  for (const Known& known : kKnown) {
    const bool isOpen = known.format.ends_with(':');
    if (isOpen ? format.starts_with(known.format) : format == known.format) return &known;
  }
  return nullptr;
}

/// Takes a number and the comma behind it.
bool TakeNumber(std::string_view& text, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (text.starts_with(',')) text.remove_prefix(1);
  return true;
}

/// "precision,scale" or "precision,scale,bits".
std::optional<ArrowType> ParseDecimal(std::string_view text) {
  constexpr int kUsualWidth = 128;
  constexpr int kMostScale = 1000;  // far beyond what any width holds
  int precision = 0;
  int scale = 0;
  int width = kUsualWidth;
  if (!TakeNumber(text, precision) || !TakeNumber(text, scale)) return std::nullopt;
  if (!text.empty() && (!TakeNumber(text, width) || !text.empty())) return std::nullopt;
  const bool isKnown = width == 32 || width == 64 || width == 128 || width == 256;
  if (!isKnown || scale < -kMostScale || scale > kMostScale) return std::nullopt;
  return ArrowType{
      .layout = Layout::Decimal, .width = static_cast<unsigned>(width), .scale = scale};
}

}  // namespace

std::optional<ArrowType> ParseArrowType(std::string_view format) {
  constexpr std::string_view kDecimal = "d:";
  if (format.starts_with(kDecimal)) return ParseDecimal(format.substr(kDecimal.size()));
  const Known* const known = Find(format);
  return known == nullptr ? std::nullopt : known->type;
}

std::string ArrowTypeName(std::string_view format) {
  const Known* const known = Find(format);
  return known == nullptr ? "the unknown type " + Quoted(format) : known->name;
}

}  // namespace npar_host
