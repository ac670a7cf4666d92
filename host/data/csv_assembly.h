#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "host/data/csv_piece.h"
#include "host/data/dataset.h"

namespace npar_host {

/// Reads the records of a file in pieces, perhaps on several threads, and puts the pieces together.
///
/// Where a piece begins is known once the one before it has been read, and so is which columns hold
/// texts. A piece whose turn has not come is read on trial: as if the first line end in it ended a
/// record, and as if no further column turned to texts before it. When its turn comes and that was
/// wrong it is read again, so that the outcome is that of one thread.
class CsvAssembly {
 public:
  /// Column i is read as readings[i] says.
  CsvAssembly(DataText& text, const CsvFormat& format, const CsvCells& cells,
              std::vector<CellReading> readings);

  /// Once. Throws InputError.
  [[nodiscard]] Dataset Run(std::size_t threads, std::size_t pieceBytes);

 private:
  struct Slot {
    std::unique_ptr<CsvPiece> piece;  // none: not read, or with a fault on trial
    const char* start = nullptr;
    const char* next = nullptr;  // where the records behind it begin
    std::size_t turns = 0;       // of columns to texts, that were known
    bool ownsTexts = false;
  };
  /// A column that turned to texts: the codes of its records up to there.
  struct LateTexts {
    std::size_t index;
    std::shared_ptr<std::vector<std::int32_t>> codes;
  };

  [[nodiscard]] const char* StartOf(std::size_t piece) const;
  void ReadOnTrial(std::size_t number);
  void ReadInTurn(std::size_t number);
  void Take(std::size_t number);
  void Append(Slot& slot);
  void AppendCodes(std::size_t index, CsvPieceColumn& found, std::size_t count, bool ownsTexts);
  void TurnToText(std::size_t index, std::size_t records);
  void TurnTokensToTexts();
  void ReadLateTexts();
  [[nodiscard]] Column& ColumnOf(std::size_t index) { return data.columns[placeOf[index]]; }

  DataText& text;
  const CsvFormat& format;
  CsvCells cells;
  std::mutex mutex;  // of the next two, which trials read and turns change
  std::vector<CellReading> readings;
  std::size_t turns = 0;
  std::size_t pieceBytes = 0;
  std::vector<Slot> slots;
  const char* position;  // behind what is taken
  Dataset data;
  std::vector<std::size_t> placeOf;  // among the columns that are kept, by index
  std::vector<LateTexts> late;
};

}  // namespace npar_host
