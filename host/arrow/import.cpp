#include "host/arrow/import.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/xml_text.h"

namespace npar_host {
namespace {

constexpr std::size_t kBlock = 4096;                  // records
constexpr std::size_t kChunk = std::size_t{1} << 17;  // at most that many copied cells together

std::vector<std::size_t> FindColumns(const std::vector<std::string>& all,
                                     const std::vector<std::string>& names) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (std::ranges::find(names, all[i]) == names.end()) continue;
    const bool isSecond = std::any_of(found.begin(), found.end(),
                                      [&](std::size_t other) { return all[other] == all[i]; });
    if (isSecond) {
      throw InputError("two columns are called " + Quoted(all[i]) + "; give each its own name",
                       all[i]);
    }
    const char* const fault = XmlTextFault(all[i]);
    if (fault != nullptr) throw InputError("the name of a column: " + std::string(fault), all[i]);
    found.push_back(i);
  }
  return found;
}

ArrowField FieldOf(const ArrowSchema& schema, const std::string& name) {
  ArrowField field;
  field.name = name;
  field.storage = ValueTypeOf(schema, name).storage;
  field.isDictionary = schema.dictionary != nullptr;
  field.isOrdered = field.isDictionary && (schema.flags & ARROW_FLAG_DICTIONARY_ORDERED) != 0;
  return field;
}

/// Reads one column of the table into one of the dataset.
class ColumnImport {
 public:
  ColumnImport(std::size_t index, std::unique_ptr<ColumnReader> reader, const MissingTokens& tokens,
               Column& column)
      : index(index), reader(std::move(reader)), notANumber(tokens.NotANumber()), column(column) {
    column.missing.assign(tokens.Size(), 0);
  }

  [[nodiscard]] const EntryOrder& Order() const { return reader->Order(); }

  void Take(const ArrowTable::Batch& batch, std::size_t earlier,
            const std::function<void()>& onBlock) {
    const ArrowArray* const array = batch.arrays[index];
    if (array == nullptr) throw InputError("a batch of the stream lacks a column", column.name);
    reader->CountEarlier(earlier);
    reader->Open(*array, batch.first, batch.count, batch.whole);
    const auto size = static_cast<std::size_t>(batch.count);
    const double* const doubles = size < kBlock ? nullptr : reader->Doubles();
    if (doubles != nullptr && AreValues({doubles, size}, onBlock)) {
      Flush();
      column.numbers.Append(doubles, size, batch.owner);
      return;
    }
    for (std::size_t first = 0; first < size; first += kBlock) {
      onBlock();
      TakeBlock(first, std::min(kBlock, size - first));
    }
  }

  /// Hands the cells on that were copied.
  void Flush() {
    column.numbers.AppendOwned(std::exchange(numbers, {}));
    column.codes.Append(codes);
    codes.clear();
  }

 private:
  /// Is none of them a not-a-number? Counts them then.
  bool AreValues(std::span<const double> doubles, const std::function<void()>& onBlock) {
    for (std::size_t first = 0; first < doubles.size(); first += kBlock) {
      onBlock();
      const auto block = doubles.subspan(first, std::min(kBlock, doubles.size() - first));
      if (std::ranges::any_of(block, [](double value) { return std::isnan(value); })) return false;
    }
    for (const double value : doubles) Count(value);
    return true;
  }

  void Count(double number) {
    if (number == kMissingNumber) ++column.missing[0];
    if (std::isinf(number)) ++column.infinite;
  }

  void TakeBlock(std::size_t first, std::size_t count) {
    cells.resize(count);
    reader->Read(first, count, cells.data());
    if (column.isText) {
      for (const double cell : cells) {
        codes.push_back(static_cast<std::int32_t>(cell));
        if (cell == kMissingCode) ++column.missing[0];
      }
    } else {
      for (const double cell : cells) {
        const bool isNumber = !std::isnan(cell);
        numbers.push_back(isNumber ? cell : kMissingNumber);
        if (isNumber) Count(cell);
        if (!isNumber) ++column.missing[notANumber];
      }
    }
    if (std::max(codes.size(), numbers.size()) >= kChunk) Flush();
  }

  std::size_t index;  // in the table
  std::unique_ptr<ColumnReader> reader;
  std::size_t notANumber;  // where those are counted
  Column& column;
  std::vector<double> cells;  // of a block
  std::vector<double> numbers;
  std::vector<std::int32_t> codes;
};

}  // namespace

ArrowCells ImportColumns(ArrowTable& table, const std::vector<std::string>& names,
                         const std::function<void()>& onBlock) {
  const std::vector<std::string> all = table.Names();
  const std::vector<std::size_t> found = FindColumns(all, names);
  const ArrowSource source;
  ArrowCells cells;
  Dataset& data = cells.data;
  data.columns.resize(found.size());  // imports point into them
  std::vector<ColumnImport> imports;
  for (std::size_t i = 0; i < found.size(); ++i) {
    Column& column = data.columns[i];
    column.name = all[found[i]];
    const ArrowSchema& schema = table.ColumnAt(found[i]);
    cells.fields.push_back(FieldOf(schema, column.name));
    imports.emplace_back(found[i], MakeColumnReader(schema, column), source.Tokens(), column);
  }
  for (std::size_t index = 0; index < table.BatchCount(); ++index) {
    const ArrowTable::Batch batch = table.BatchAt(index);
    for (ColumnImport& column : imports) column.Take(batch, data.records, onBlock);
    data.records += static_cast<std::size_t>(batch.count);
    table.Release(index);
  }
  for (std::size_t i = 0; i < imports.size(); ++i) {
    imports[i].Flush();
    cells.fields[i].order = imports[i].Order();
  }
  return cells;
}

}  // namespace npar_host
