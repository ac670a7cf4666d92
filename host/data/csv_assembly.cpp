#include "host/data/csv_assembly.h"

#include <algorithm>
#include <utility>

#include "host/data/ordered_pieces.h"

namespace npar_host {

CsvAssembly::CsvAssembly(DataText& text, const CsvFormat& format, const CsvCells& cells,
                         std::vector<CellReading> readings)
    : text(text),
      format(format),
      cells(cells),
      readings(std::move(readings)),
      position(format.firstRecord),
      placeOf(format.names.size()) {
  for (std::size_t i = 0; i < placeOf.size(); ++i) {
    if (this->readings[i] == CellReading::Skip) continue;
    placeOf[i] = data.columns.size();
    Column& column = data.columns.emplace_back();
    column.name = format.names[i];
    column.isText = this->readings[i] == CellReading::Text;
    column.missing.assign(format.tokens.Size(), 0);
  }
}

Dataset CsvAssembly::Run(std::size_t threads, std::size_t bytes) {
  pieceBytes = bytes;
  const auto size = static_cast<std::size_t>(cells.End() - position);
  slots.resize((size + bytes - 1) / bytes);
  const OrderedPieces pieces{slots.size(), threads,
                             [this](std::size_t piece, bool isInTurn) {
                               if (isInTurn) {
                                 ReadInTurn(piece);
                               } else {
                                 ReadOnTrial(piece);
                               }
                             },
                             [this](std::size_t piece) { Take(piece); }};
  pieces.Run();
  TurnTokensToTexts();
  ReadLateTexts();
  text.CheckIsWhole();
  return std::move(data);
}

const char* CsvAssembly::StartOf(std::size_t piece) const {
  if (piece == 0) return format.firstRecord;
  if (piece == slots.size()) return cells.End();
  return cells.PassComments(cells.PassLine(format.firstRecord + piece * pieceBytes));
}

void CsvAssembly::ReadOnTrial(std::size_t number) {
  Slot& slot = slots[number];
  CsvCells trial = cells;
  trial.isTrial = true;
  std::unique_ptr<CsvPiece> piece;
  {
    const std::lock_guard lock(mutex);
    piece = std::make_unique<CsvPiece>(format, trial, readings);
    slot.turns = turns;
  }
  slot.ownsTexts = true;
  slot.start = StartOf(number);
  try {
    slot.next = piece->Read(slot.start, StartOf(number + 1));
    slot.piece = std::move(piece);
  } catch (const CsvCells::TrialFault&) {
    // Its turn will show whether there is a fault.
  }
}

void CsvAssembly::ReadInTurn(std::size_t number) {
  Slot& slot = slots[number];
  slot.piece = std::make_unique<CsvPiece>(format, cells, readings);
  for (std::size_t i = 0; i < readings.size(); ++i) {
    if (readings[i] != CellReading::Skip) slot.piece->At(i).texts = &ColumnOf(i).texts;
  }
  slot.turns = turns;
  slot.ownsTexts = false;
  slot.start = position;
  slot.next = slot.piece->Read(position, StartOf(number + 1));
}

void CsvAssembly::Take(std::size_t number) {
  Slot& slot = slots[number];
  const bool isRight = slot.piece != nullptr && slot.start == position && slot.turns == turns;
  if (!isRight) ReadInTurn(number);
  Append(slot);
  position = slot.next;
  slot.piece.reset();
  text.Release(position);
}

void CsvAssembly::Append(Slot& slot) {
  const std::size_t count = slot.piece->Records();
  for (std::size_t i = 0; i < placeOf.size(); ++i) {
    CsvPieceColumn& found = slot.piece->At(i);
    if (found.reading == CellReading::Skip) continue;
    Column& column = ColumnOf(i);
    if (found.reading == CellReading::Text && !column.isText) {
      TurnToText(i, data.records + found.textFrom);
      column.firstText = found.found.firstText;
    }
    for (std::size_t token = 0; token < column.missing.size(); ++token) {
      column.missing[token] += found.found.missing[token];
    }
    column.infinite += found.found.infinite;
    if (column.isText) {
      AppendCodes(i, found, count, slot.ownsTexts);
    } else {
      std::shared_ptr<const double> numbers = found.numbers.Take(count);
      column.numbers.Append(numbers.get(), count, numbers);
    }
  }
  data.records += count;
}

void CsvAssembly::AppendCodes(std::size_t index, CsvPieceColumn& found, std::size_t count,
                              bool ownsTexts) {
  Column& column = ColumnOf(index);
  if (ownsTexts) {
    std::vector<std::int32_t> codeOf;
    bool isNew = false;
    for (std::size_t code = 0; code < found.found.texts.Size(); ++code) {
      codeOf.push_back(static_cast<std::int32_t>(column.texts.Add(found.found.texts[code], isNew)));
    }
    for (std::size_t record = found.textFrom; record < count; ++record) {
      std::int32_t& code = found.codes.Get()[record];
      if (code != kMissingCode) code = codeOf[static_cast<std::size_t>(code)];
    }
  }
  std::shared_ptr<const std::int32_t> codes = found.codes.Take(count);
  column.codes.Append(codes.get() + found.textFrom, count - found.textFrom, codes);
}

void CsvAssembly::TurnToText(std::size_t index, std::size_t records) {
  Column& column = ColumnOf(index);
  column.isText = true;
  column.infinite = 0;
  column.missing.assign(format.tokens.Size(), 0);  // the records before are read once more
  column.numbers = {};
  late.push_back({index, std::make_shared<std::vector<std::int32_t>>(records)});
  column.codes.Append(late.back().codes->data(), records, late.back().codes);
  const std::lock_guard lock(mutex);
  readings[index] = CellReading::Text;
  ++turns;
}

/// What is missing among numbers is a text where a column holds no number.
void CsvAssembly::TurnTokensToTexts() {
  for (std::size_t i = 0; i < readings.size(); ++i) {
    if (readings[i] != CellReading::Detect) continue;
    const Column& column = ColumnOf(i);
    bool hasTokens = false;
    for (std::size_t token = 0; token < format.tokens.NotANumber(); ++token) {
      hasTokens = hasTokens || (format.tokens.IsForNumbersOnly(token) && column.missing[token] > 0);
    }
    if (hasTokens && !column.numbers.Any([](double cell) { return cell != kMissingNumber; })) {
      TurnToText(i, data.records);
    }
  }
}

void CsvAssembly::ReadLateTexts() {
  std::size_t records = 0;
  std::vector<std::vector<std::int32_t>*> codesOf(readings.size());
  for (const LateTexts& each : late) {
    records = std::max(records, each.codes->size());
    codesOf[each.index] = each.codes.get();
  }
  const char* cellAt = format.firstRecord;
  for (std::size_t record = 0; record < records; ++record) {
    for (std::size_t i = 0; i < readings.size(); ++i) {
      const CsvCells::Cell cell = cells.Next(cellAt);
      if (codesOf[i] != nullptr && record < codesOf[i]->size()) {
        Column& column = ColumnOf(i);
        std::size_t token = 0;
        const bool isMissing = IsMissingCell(format.tokens, CellReading::Text, cell.text, token);
        if (isMissing) ++column.missing[token];
        (*codesOf[i])[record] =
            isMissing ? kMissingCode : CodeOfCell(cells, cell.text, cellAt, column.texts);
      }
      cellAt = i + 1 < readings.size() ? cell.next + 1 : cells.PassLineEnd(cell.next);
    }
    cellAt = cells.PassComments(cellAt);
  }
}

}  // namespace npar_host
