#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/csv_cells.h"
#include "host/data/data_text.h"
#include "host/data/dataset.h"
#include "host/data/missing_tokens.h"
#include "host/data/number_notation.h"

namespace npar_host {

/// Values that are written one by one, at indices for which there is room.
template <typename Value>
class CellArray {
 public:
  [[nodiscard]] Value* Get() const noexcept { return values.get(); }
  /// Has room for so many; those that there are stay.
  void Resize(std::size_t count) {
    void* const moved = std::realloc(values.get(), (count + 1) * sizeof(Value));
    if (moved == nullptr) throw std::bad_alloc();
    static_cast<void>(values.release());
    values.reset(static_cast<Value*>(moved));
  }
  /// Hands the first `count` values over.
  [[nodiscard]] std::shared_ptr<const Value> Take(std::size_t count) {
    Resize(count);
    return {values.release(), Free()};
  }

 private:
  struct Free {
    void operator()(const Value* memory) const { std::free(const_cast<Value*>(memory)); }
  };
  std::unique_ptr<Value, Free> values;
};

/// What is the same throughout a file.
struct CsvFormat {
  const std::vector<std::string>& names;
  const MissingTokens& tokens;
  const NumberNotation& notation;
  const char* firstRecord;
  char lineEnd;         // the first character of the header's line end
  bool hasNumberToken;  // a cell can be missing and yet a plain number
};

/// One column of a piece.
struct CsvPieceColumn {
  CellReading reading = CellReading::Detect;
  bool isPlain = false;  // its cells may be numbers in plain notation
  CellArray<double> numbers;
  CellArray<std::int32_t> codes;  // in place of numbers, of a column of texts
  /// Of a column that turned out in this piece to be one of texts: the records before are to be
  /// read once more, and count for nothing here.
  std::size_t textFrom = 0;
  Column found;  // but for its cells
  TextPool* texts =
      nullptr;  // where its texts are kept: in what was found, or with the whole file's
};

/// Records of a CSV text that follow one another, read into columns.
class CsvPiece {
 public:
  CsvPiece(const CsvFormat& format, const CsvCells& cells,
           const std::vector<CellReading>& readings);

  /// Reads the records that begin before `limit`; where the first one behind them begins. Throws
  /// InputError.
  const char* Read(const char* position, const char* limit);
  [[nodiscard]] std::size_t Records() const noexcept { return records; }
  [[nodiscard]] CsvPieceColumn& At(std::size_t column) { return columns[column]; }

 private:
  /// Blank lines at the end of a file of several columns are no records.
  [[nodiscard]] bool IsBlankRest(const char* position) const;
  /// For more records, as many as the text up to the limit will hold.
  void MakeRoom(const char* start, const char* position, const char* limit);

  const char* ReadRecord(const char* position);
  const char* ReadCell(std::size_t index, const char* position);
  bool ReadValue(const CsvPieceColumn& column, std::string_view cell, double& value) const;
  const char* PassSeparator(const char* position, std::size_t index, const char* record);
  void TurnToText(CsvPieceColumn& column);

  [[noreturn]] void FailCell(std::size_t index, std::string_view cell, const char* position) const;
  [[noreturn]] void FailRagged(const char* record);

  const CsvFormat& format;
  CsvCells cells;
  std::vector<CsvPieceColumn> columns;  // of all names
  std::vector<std::size_t> skipped;     // columns from here on that are not kept
  std::size_t records = 0;
  std::size_t capacity = 0;
};

/// Is a cell of such a column missing, and by which token?
[[nodiscard]] bool IsMissingCell(const MissingTokens& tokens, CellReading reading,
                                 std::string_view cell, std::size_t& token);
/// Throws InputError for a cell that cannot stand in an XML document.
void CheckCellText(const CsvCells& cells, std::string_view cell, const char* position);
/// The code of a cell's text in the pool, where new ones are checked.
[[nodiscard]] std::int32_t CodeOfCell(const CsvCells& cells, std::string_view cell,
                                      const char* position, TextPool& texts);

}  // namespace npar_host
