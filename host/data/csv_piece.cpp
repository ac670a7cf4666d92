#include "host/data/csv_piece.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/iso_time.h"
#include "host/data/number.h"
#include "host/data/xml_text.h"

namespace npar_host {
namespace {

constexpr std::size_t kFirstRecords = 64;  // that there is room for

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// What a cell that is no number needs to be one.
std::string NumberAdvice(std::string_view cell) {
  const std::string known = RecogniseNumbers({cell});
  if (!known.empty()) return "it looks like " + known;
  return "correct it, name it with --missing-token, or call the field nominal";
}

}  // namespace

bool IsMissingCell(const MissingTokens& tokens, CellReading reading, std::string_view cell,
                   std::size_t& token) {
  token = tokens.Find(cell);
  if (token == MissingTokens::kNone) return false;
  return reading != CellReading::Text || !tokens.IsForNumbersOnly(token);
}

void CheckCellText(const CsvCells& cells, std::string_view cell, const char* position) {
  const char* const fault = XmlTextFault(cell);
  if (fault == nullptr) return;
  cells.Fail(position,
             fault == kNotUtf8 ? std::string(fault) + ", or try --encoding latin1" : fault);
}

std::int32_t CodeOfCell(const CsvCells& cells, std::string_view cell, const char* position,
                        TextPool& texts) {
  bool isNew = false;
  const std::uint32_t code = texts.Add(cell, isNew);
  if (isNew) CheckCellText(cells, cell, position);
  return static_cast<std::int32_t>(code);
}

CsvPiece::CsvPiece(const CsvFormat& format, const CsvCells& cells,
                   const std::vector<CellReading>& readings)
    : format(format), cells(cells), columns(readings.size()), skipped(readings.size() + 1) {
  for (std::size_t i = columns.size(); i > 0; --i) {
    skipped[i - 1] = readings[i - 1] == CellReading::Skip ? skipped[i] + 1 : 0;
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    CsvPieceColumn& column = columns[i];
    column.reading = readings[i];
    if (column.reading == CellReading::Skip) continue;
    column.isPlain =
        format.notation.IsPlain() && !IsInNumbers(cells.separator) &&
        (column.reading == CellReading::Number || column.reading == CellReading::Detect);
    column.texts = &column.found.texts;
    column.found.isText = column.reading == CellReading::Text;
    column.found.missing.assign(format.tokens.Size(), 0);
  }
}

const char* CsvPiece::Read(const char* position, const char* limit) {
  const char* const start = position;
  while (position < limit && !IsBlankRest(position)) {
    if (records == capacity) MakeRoom(start, position, limit);
    position = cells.PassComments(ReadRecord(position));
    ++records;
  }
  return position < limit ? cells.End() : position;
}

bool CsvPiece::IsBlankRest(const char* position) const {
  if (columns.size() == 1 || !cells.IsLineEnd(position)) return false;
  while (!cells.IsEnd(position) && cells.IsLineEnd(position)) ++position;
  return cells.IsEnd(position);
}

void CsvPiece::MakeRoom(const char* start, const char* position, const char* limit) {
  constexpr double kSlack = 1.05;
  capacity = kFirstRecords;
  if (records > 0) {
    const double share = static_cast<double>(limit - start) / static_cast<double>(position - start);
    const double expected = share * static_cast<double>(records) * kSlack;
    capacity = std::max(2 * records, static_cast<std::size_t>(expected));
  }
  for (CsvPieceColumn& column : columns) {
    if (column.reading == CellReading::Skip) continue;
    if (column.reading == CellReading::Text) {
      column.codes.Resize(capacity);
    } else {
      column.numbers.Resize(capacity);
    }
  }
}

const char* CsvPiece::ReadRecord(const char* position) {
  const char* const start = position;
  const std::size_t last = columns.size() - 1;
  for (std::size_t i = 0;; ++i) {
    if (skipped[i] > 1) {
      std::size_t left = skipped[i];
      position = cells.PassPlain(position, left);
      i += skipped[i] - left;
      if (i > last) FailRagged(start);
    }
    const CsvPieceColumn& column = columns[i];
    if (column.isPlain) {
      const char* next = ParsePlainNumber(position, column.numbers.Get()[records]);
      const bool isWhole =
          next != nullptr && *next == (i == last ? format.lineEnd : cells.separator);
      const bool isToken =
          format.hasNumberToken && isWhole &&
          format.tokens.Find({position, static_cast<std::size_t>(next - position)}) !=
              MissingTokens::kNone;
      if (isWhole && !isToken) {
        position = next + 1;
        if (i != last) continue;
        return format.lineEnd == '\r' && *position == '\n' ? position + 1 : position;
      }
    }
    position = PassSeparator(ReadCell(i, position), i, start);
    if (i == last) return position;
  }
}

const char* CsvPiece::ReadCell(std::size_t index, const char* position) {
  CsvPieceColumn& column = columns[index];
  const CsvCells::Cell cell = cells.Next(position);
  if (column.reading == CellReading::Skip) return cell.next;
  const bool isText = column.reading == CellReading::Text;
  const std::string_view bare = isText ? cell.text : WithoutBlanks(cell.text);
  std::size_t token = 0;
  const bool isMissing = IsMissingCell(format.tokens, column.reading, bare, token);
  if (isMissing) ++column.found.missing[token];
  if (isText) {
    column.codes.Get()[records] =
        isMissing ? kMissingCode : CodeOfCell(cells, cell.text, position, *column.texts);
    return cell.next;
  }
  double& value = column.numbers.Get()[records];
  if (isMissing) {
    value = kMissingNumber;
  } else if (!ReadValue(column, bare, value)) {
    if (column.reading != CellReading::Detect) FailCell(index, cell.text, position);
    TurnToText(column);
    column.found.firstText = cells.OffsetOf(position);
    column.codes.Get()[records] = CodeOfCell(cells, cell.text, position, *column.texts);
  } else if (std::isnan(value)) {
    ++column.found.missing[format.tokens.NotANumber()];
    value = kMissingNumber;
  } else if (std::isinf(value)) {
    ++column.found.infinite;
  }
  return cell.next;
}

bool CsvPiece::ReadValue(const CsvPieceColumn& column, std::string_view cell, double& value) const {
  switch (column.reading) {
    case CellReading::Date:
      return ParseDate(cell, value);
    case CellReading::Time:
      return ParseTime(cell, value);
    case CellReading::Timestamp:
      return ParseTimestamp(cell, value);
    default:
      return ParseNumberIn(format.notation, cell, value);
  }
}

const char* CsvPiece::PassSeparator(const char* position, std::size_t index, const char* record) {
  if (index + 1 < columns.size()) {
    if (cells.IsEnd(position) || *position != cells.separator) FailRagged(record);
    return position + 1;
  }
  if (!cells.IsLineEnd(position)) FailRagged(record);
  return cells.PassLineEnd(position);
}

void CsvPiece::TurnToText(CsvPieceColumn& column) {
  column.reading = CellReading::Text;
  column.isPlain = false;
  column.textFrom = records;
  column.codes.Resize(capacity);
  column.numbers = {};
  column.found.isText = true;
  column.found.infinite = 0;
  column.found.missing.assign(format.tokens.Size(), 0);
}

void CsvPiece::FailCell(std::size_t index, std::string_view cell, const char* position) const {
  const CellReading reading = columns[index].reading;
  const char* wanted = "numbers";
  std::string advice = "correct it, name it with --missing-token, or call the field nominal";
  if (reading == CellReading::Number) advice = NumberAdvice(WithoutBlanks(cell));
  if (reading == CellReading::Date) wanted = "dates (2024-02-29)";
  if (reading == CellReading::Time) wanted = "times (23:59:59)";
  if (reading == CellReading::Timestamp) wanted = "timestamps (2024-02-29T23:59:59)";
  cells.Fail(position, "field " + Quoted(format.names[index]) + " holds " + wanted +
                           ", but this cell is " + Quoted(cell) + "; " + advice);
}

void CsvPiece::FailRagged(const char* record) {
  std::size_t found = 1;
  const char* position = record;
  for (; !cells.IsLineEnd(position = cells.Next(position).next); ++position) ++found;
  std::string remedy = "; give both the same number, and quote cells that hold the separator";
  if (record == format.firstRecord)
    remedy += "; lines above the header are passed over with --skip N";
  cells.Fail(record, "the record has " + std::to_string(found) + (found == 1 ? " cell" : " cells") +
                         ", the header has " + std::to_string(columns.size()) + remedy);
}

}  // namespace npar_host
