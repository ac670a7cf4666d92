#include "host/arrow/import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "host/data/input_error.h"
#include "host/data/number.h"
#include "support/arrow_data.h"

namespace {

using namespace npar_host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

using Records = std::vector<std::optional<std::string>>;

/// What came of a stream, which outlives it.
struct Imported {
  std::unique_ptr<ArrowStreamOfData> stream;
  ArrowCells cells;
};

Imported Import(std::vector<ArrowData> columns, const ArrowCut& cut = {}) {
  std::vector<std::string> names;
  for (const ArrowData& column : columns) names.push_back(column.name);
  auto stream = std::make_unique<ArrowStreamOfData>(std::move(columns), cut);
  ArrowTable table;
  table.TakeStream(*stream->Stream());
  ArrowCells cells = ImportColumns(table, names, [] {});
  return {std::move(stream), std::move(cells)};
}

/// The cells of a column, "?" for a missing one.
std::vector<std::string> CellsOf(const ArrowCells& cells, std::size_t index = 0) {
  const Column& column = cells.data.columns[index];
  std::vector<std::string> texts;
  for (std::size_t record = 0; record < cells.data.records; ++record) {
    const double cell = column.Cell(record);
    const bool isMissing = column.IsMissing(cell);
    texts.push_back(isMissing       ? "?"
                    : column.isText ? std::string(column.texts[static_cast<std::size_t>(cell)])
                                    : NumberText(cell));
  }
  return texts;
}

Records WithNull(Records records) {
  records.emplace_back(std::nullopt);
  return records;
}

/// A decimal of that many bytes: lower 64 bits, and what fills the others.
std::string DecimalBytes(std::int64_t low, std::size_t bytes, std::int64_t high = 0) {
  std::string value(bytes, low < 0 ? '\xFF' : '\0');
  std::memcpy(value.data(), &low, std::min(bytes, sizeof low));
  if (high != 0) std::memcpy(value.data() + sizeof low, &high, sizeof high);
  return value;
}

struct TypeCase {
  const char* format;
  Records records;  // one that is null is added
  std::vector<std::string> cells;
  Storage storage = Storage::Infer;
};

std::vector<TypeCase> TypeCases() {
  const std::string longText = "longer than what fits a view";
  return {
      {"c", BytesOf<std::int8_t>({-128, 127}), {"-128", "127"}},
      {"C", BytesOf<std::uint8_t>({0, 255}), {"0", "255"}},
      {"s", BytesOf<std::int16_t>({-32768, 2}), {"-32768", "2"}},
      {"S", BytesOf<std::uint16_t>({65535, 2}), {"65535", "2"}},
      {"i", BytesOf<std::int32_t>({-2147483647, 2}), {"-2147483647", "2"}},
      {"I", BytesOf<std::uint32_t>({4294967295U, 2}), {"4294967295", "2"}},
      // 2^53, and 2^62, which a double holds too.
      {"l",
       BytesOf<std::int64_t>({-9007199254740992, std::int64_t{1} << 62}),
       {"-9.00719925474099e+15", "4.61168601842739e+18"}},
      {"L", BytesOf<std::uint64_t>({std::uint64_t{1} << 63, 7}), {"9.22337203685478e+18", "7"}},
      // 1, -2, the least above 0 (2^-24), infinity, not a number.
      {"e",
       BytesOf<std::uint16_t>({0x3C00, 0xC000, 0x0001, 0x7C00, 0x7E00}),
       {"1", "-2", "5.96046447753906e-08", "inf", "?"}},
      {"f", BytesOf<float>({0.5F, -3.0F}), {"0.5", "-3"}},
      {"g",
       BytesOf<double>({0.1, std::numeric_limits<double>::quiet_NaN(), -1e300}),
       {"0.1", "?", "-1e+300"}},
      {"b", {"1", "0", "1"}, {"true", "false", "true"}},
      {"d:9,2,32", {DecimalBytes(12345, 4), DecimalBytes(-1, 4)}, {"123.45", "-0.01"}},
      {"d:18,-3,64", {DecimalBytes(12, 8), DecimalBytes(-5, 8)}, {"12000", "-5000"}},
      // -(2^64) and 5 * 2^64, by 10^20.
      {"d:38,20",
       {DecimalBytes(0, 16, -1), DecimalBytes(0, 16, 5)},
       {"-0.184467440737096", "0.922337203685478"}},
      {"d:76,0,256",
       {DecimalBytes(-7, 32), DecimalBytes(1, 32, 1)},
       {"-7", "1.84467440737096e+19"}},
      {"tdD", BytesOf<std::int32_t>({19782, -1}), {"19782", "-1"}, Storage::Date},
      {"tdm", BytesOf<std::int64_t>({86400000, -86400000}), {"1", "-1"}, Storage::Date},
      {"tts", BytesOf<std::int32_t>({3600, 1}), {"3600", "1"}, Storage::Time},
      {"ttm", BytesOf<std::int32_t>({1500, 1}), {"1.5", "0.001"}, Storage::Time},
      {"ttu", BytesOf<std::int64_t>({1500000, 1}), {"1.5", "1e-06"}, Storage::Time},
      {"ttn", BytesOf<std::int64_t>({1500000000, 1}), {"1.5", "1e-09"}, Storage::Time},
      {"tss:", BytesOf<std::int64_t>({-1, 2}), {"-1", "2"}, Storage::Timestamp},
      {"tsm:", BytesOf<std::int64_t>({-1, 2000}), {"-0.001", "2"}, Storage::Timestamp},
      {"tsu:Europe/Oslo", BytesOf<std::int64_t>({5, 0}), {"5e-06", "0"}, Storage::Timestamp},
      {"tsn:UTC",
       BytesOf<std::int64_t>({1700000000500000000, -1}),
       {"1700000000.5", "-1e-09"},
       Storage::Timestamp},
      {"tDm", BytesOf<std::int64_t>({2500, 0}), {"2.5", "0"}},
      {"u", {"a", "", "ä"}, {"a", "", "ä"}},
      {"U", {"a", longText}, {"a", longText}},
      {"vu", {longText, "twelve bytes", "b"}, {longText, "twelve bytes", "b"}},
      {"n", {}, {}},
  };
}

TEST(ArrowImportTest, DoublesThatAllAreValuesAreNotCopied) {
  const std::vector<double> numbers(10000, 1.5);
  ArrowStreamOfData stream({{"x", "g", BytesOf(numbers)}}, {{10}, 2});
  const auto* const array = static_cast<const double*>(stream.ColumnOf(1, 0).buffers[1]);
  {
    ArrowTable table;
    table.TakeStream(*stream.Stream());
    const ArrowCells cells = ImportColumns(table, {"x"}, [] {});
    EXPECT_EQ(cells.data.columns[0].numbers.From(10).data(), array + 2);
    EXPECT_EQ(stream.Held(), 2) << "the schema, and the long batch behind the cells";
  }
  EXPECT_EQ(stream.Held(), 0);
}

// Records, whole, in batches and behind others, are the same.
TEST(ArrowImportTest, EachTypeGivesItsCellsHoweverItIsCut) {
  for (TypeCase row : TypeCases()) {
    row.cells.emplace_back("?");
    for (const ArrowCut& cut :
         {ArrowCut{}, ArrowCut{{1, 0}}, ArrowCut{{}, 3}, ArrowCut{{1}, 9, 2}}) {
      SCOPED_TRACE(std::string(row.format) + ", offsets " + std::to_string(cut.arrayOffset));
      const Imported imported = Import({{"x", row.format, WithNull(row.records)}}, cut);
      EXPECT_EQ(CellsOf(imported.cells), row.cells);
      EXPECT_EQ(imported.cells.fields[0].storage, row.storage);
    }
  }
}

TEST(ArrowImportTest, DictionariesGiveWhatTheirIndicesMeanInEachWidth) {
  const auto entries =
      std::make_shared<ArrowData>(ArrowData{"", "u", {"unused", "b", std::nullopt, "a"}});
  const std::vector<std::pair<const char*, Records>> indices = {
      {"c", BytesOf<std::int8_t>({3, 1, 2, 1})},  {"C", BytesOf<std::uint8_t>({3, 1, 2, 1})},
      {"s", BytesOf<std::int16_t>({3, 1, 2, 1})}, {"S", BytesOf<std::uint16_t>({3, 1, 2, 1})},
      {"i", BytesOf<std::int32_t>({3, 1, 2, 1})}, {"I", BytesOf<std::uint32_t>({3, 1, 2, 1})},
      {"l", BytesOf<std::int64_t>({3, 1, 2, 1})}, {"L", BytesOf<std::uint64_t>({3, 1, 2, 1})},
  };
  for (const auto& [format, records] : indices) {
    SCOPED_TRACE(format);
    const Imported imported = Import({{"x", format, WithNull(records), entries}}, {{2}, 1, 1});
    EXPECT_THAT(CellsOf(imported.cells), ElementsAre("a", "b", "?", "b", "?"));
    EXPECT_EQ(imported.cells.data.columns[0].texts.Size(), 2)
        << "an entry without a record is no text";
    EXPECT_TRUE(imported.cells.fields[0].isDictionary);
  }
}

TEST(ArrowImportTest, AnOrderedDictionaryTellsItsOrderAndWhatIsUsed) {
  const auto entries =
      std::make_shared<ArrowData>(ArrowData{"", "g", BytesOf<double>({2.5, 0.1, 1.0})});
  const Imported imported =
      Import({{"x", "c", BytesOf<std::int8_t>({2, 0, 2}), entries, true}}, {{1}});
  EXPECT_THAT(CellsOf(imported.cells), ElementsAre("1", "2.5", "1"));
  EXPECT_THAT(imported.cells.fields[0].order.entries, ElementsAre("2.5", "0.1", "1"));
  EXPECT_THAT(imported.cells.fields[0].order.isUsed, ElementsAre(true, false, true));
}

TEST(ArrowImportTest, MissingAndInfiniteCellsAreCounted) {
  const double none = std::numeric_limits<double>::quiet_NaN();
  const double most = std::numeric_limits<double>::infinity();
  const Imported imported =
      Import({{"x", "g", WithNull(BytesOf<double>({none, most, -most, 1.0, none}))}});
  const Column& column = imported.cells.data.columns[0];
  EXPECT_THAT(column.missing, ElementsAre(1, 2)) << "nulls, not-a-numbers";
  EXPECT_EQ(column.infinite, 2);
}

struct RefusedCase {
  const char* catches;
  ArrowData column;
  const char* message;
};

TEST(ArrowImportTest, WhatCannotBeReadIsRefusedWithColumnAndType) {
  const auto texts = std::make_shared<ArrowData>(ArrowData{"", "u", {"a", "b"}});
  const auto nested =
      std::make_shared<ArrowData>(ArrowData{"", "c", BytesOf<std::int8_t>({0}), texts});
  const RefusedCase rows[] = {
      {"a type", {"x", "z", {"a"}}, R"(column "x" (binary))"},
      {"a nested type", {"x", "+l", {"a"}}, "(list)"},
      {"no type", {"x", "?", {"a"}}, R"(the unknown type "?")"},
      {"a decimal of another width", {"x", "d:3,1,16", {"ab"}}, "(decimal)"},
      {"2^53 + 1",
       {"x", "l", BytesOf<std::int64_t>({0, 9007199254740993})},
       "record 2 is 9007199254740993, which no double holds exactly"},
      {"the largest, whose double lies beyond",
       {"x", "L", BytesOf<std::uint64_t>({~std::uint64_t{0}})},
       "record 1 is 18446744073709551615"},
      {"an index behind the last",
       {"x", "c", BytesOf<std::int8_t>({0, 2}), texts},
       "record 2 has the index 2, but the dictionary has 2 entries"},
      {"an index below 0", {"x", "l", BytesOf<std::int64_t>({-1}), texts}, "the index -1"},
      {"indices that are no integers",
       {"x", "g", BytesOf<double>({0.0}), texts},
       "are to be integers"},
      {"entries that have entries", {"x", "c", BytesOf<std::int8_t>({0}), nested}, "themselves"},
      {"no UTF-8", {"x", "u", {"a", "\xFF"}}, R"(column "x" (utf8): record 2: )"},
  };
  for (const RefusedCase& row : rows) {
    SCOPED_TRACE(row.catches);
    EXPECT_THAT(
        [&] { Import({row.column}, {{1}}); },
        ThrowsMessage<InputError>(AllOf(HasSubstr("column \"x\" ("), HasSubstr(row.message))));
  }
}

TEST(ArrowImportTest, TwoColumnsOfOneNameAreRefusedWhereTheNameIsAsked) {
  const ArrowData column{"x", "g", BytesOf<double>({1.0})};
  EXPECT_THAT(
      [&] {
        Import({column, column});
      },
      ThrowsMessage<InputError>(HasSubstr(R"(two columns are called "x")")));
}

TEST(ArrowImportTest, OrdersOfTwoBatchesThatDifferAreRefused) {
  ArrowStreamOfData stream({{"x", "c", BytesOf<std::int8_t>({0, 0}),
                             std::make_shared<ArrowData>(ArrowData{"", "u", {"a", "b"}}), true}},
                           {{1}});
  ArrowArray& second = *stream.ColumnOf(1, 0).dictionary;
  const char swapped[] = "ba";
  second.buffers[2] = swapped;
  ArrowTable table;
  table.TakeStream(*stream.Stream());
  EXPECT_THAT([&] { static_cast<void>(ImportColumns(table, {"x"}, [] {})); },
              ThrowsMessage<InputError>(HasSubstr("different orders")));
}

struct SpoiltCase {
  const char* catches;
  const char* format;
  void (*spoil)(ArrowArray& array);
};

template <class Value>
void Put(ArrowArray& array, std::size_t buffer, std::size_t index, Value value) {
  auto* const bytes = static_cast<char*>(const_cast<void*>(array.buffers[buffer]));
  std::memcpy(bytes + index * sizeof value, &value, sizeof value);
}

TEST(ArrowImportTest, ArraysThatContradictThemselvesAreRefused) {
  const SpoiltCase rows[] = {
      {"a length below 0", "u", [](ArrowArray& array) { array.length = -1; }},
      {"an offset below 0", "u", [](ArrowArray& array) { array.offset = -1; }},
      {"fewer records than the batch", "u", [](ArrowArray& array) { array.length = 1; }},
      {"an offset that wraps", "u",
       [](ArrowArray& array) { array.offset = std::numeric_limits<std::int64_t>::max(); }},
      {"a buffer too few", "u", [](ArrowArray& array) { array.n_buffers = 2; }},
      {"no buffers", "u", [](ArrowArray& array) { array.buffers = nullptr; }},
      {"no values", "u", [](ArrowArray& array) { array.buffers[1] = nullptr; }},
      {"no bytes", "u", [](ArrowArray& array) { array.buffers[2] = nullptr; }},
      {"nulls without a bitmap", "u", [](ArrowArray& array) { array.null_count = 1; }},
      {"children", "u", [](ArrowArray& array) { array.n_children = 1; }},
      {"a first offset below 0", "u",
       [](ArrowArray& array) { Put<std::int32_t>(array, 1, 0, -4); }},
      {"offsets that descend", "u", [](ArrowArray& array) { Put<std::int32_t>(array, 1, 1, 21); }},
      {"a large offset below 0", "U",
       [](ArrowArray& array) { Put<std::int64_t>(array, 1, 1, -1); }},
      {"a view of length below 0", "vu",
       [](ArrowArray& array) { Put<std::int32_t>(array, 1, 0, -1); }},
      {"a view of another buffer", "vu",
       [](ArrowArray& array) { Put<std::int32_t>(array, 1, 2, 1); }},
      {"a view of the buffer before", "vu",
       [](ArrowArray& array) { Put<std::int32_t>(array, 1, 2, -1); }},
      {"a view behind its buffer", "vu",
       [](ArrowArray& array) { Put<std::int32_t>(array, 1, 3, 1); }},
      {"a buffer shorter than its views", "vu",
       [](ArrowArray& array) { Put<std::int64_t>(array, 3, 0, 5); }},
      {"no lengths of buffers", "vu", [](ArrowArray& array) { array.buffers[3] = nullptr; }},
  };
  for (const SpoiltCase& row : rows) {
    SCOPED_TRACE(row.catches);
    ArrowStreamOfData stream({{"x", row.format, {"a text that is long", "b"}}});
    row.spoil(stream.ColumnOf(0, 0));
    ArrowTable table;
    table.TakeStream(*stream.Stream());
    EXPECT_THROW(static_cast<void>(ImportColumns(table, {"x"}, [] {})), InputError);
  }
}

}  // namespace
