#include "host/data/csv.h"

#include <cmath>
#include <cstdint>
#include <unordered_set>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/iso_time.h"
#include "host/data/number.h"
#include "host/data/xml_text.h"

namespace npar_host {
namespace {

constexpr std::ptrdiff_t kReleaseStep = std::ptrdiff_t{1} << 24;  // bytes of the file
constexpr std::string_view kSeparators = ",;\t";

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

CsvReader::CsvReader(const std::string& path, CsvOptions chosen)
    : text(path, chosen.encoding),
      options(std::move(chosen)),
      tokens(options.missingTokens, options.onlyMissingTokens),
      cells(text),
      end(text.End()) {
  double number = 0.0;
  for (const std::string& token : options.missingTokens) {
    hasNumberToken = hasNumberToken || ParseNumber(token, number);
  }
  ReadHeader();
}

const char* CsvReader::FindHeader() {
  const char* position = text.Text().data();
  if (position == end) Fail(position, "the file is empty; give a header line and records");
  for (std::size_t i = 0; i < options.skippedLines && position != end; ++i) {
    position = cells.PassLine(position);
  }
  cells.comment = options.comment;
  position = TakeSeparatorLine(cells.PassComments(position));
  if (position == end) Fail(position, "no header line is left; skip fewer lines");
  return position;
}

const char* CsvReader::TakeSeparatorLine(const char* position) {
  const char* const next = cells.PassLine(position);
  std::string line(position, next);
  std::erase_if(line, [](char c) { return c == '"' || c == '\n' || c == '\r'; });
  constexpr std::string_view kKey = "sep=";
  if (line.size() != kKey.size() + 1 || !line.starts_with(kKey)) return position;
  if (options.separator == 0) options.separator = line.back();
  return cells.PassComments(next);
}

void CsvReader::ReadHeader() {
  const char* position = FindHeader();
  if (options.separator == 0) {
    options.separator = DetectSeparator(cells, position, kSeparators);
  }
  if (!CanSeparate(options.separator)) {
    Fail(position, "this character cannot separate cells; take a comma, a semicolon or a tab");
  }
  cells.separator = options.separator;
  const char* line = position;
  const std::size_t separators = cells.CountInLine(line, cells.separator);
  line = position;
  cells.skipsBlanks = cells.separator != ' ' && separators > 0 &&
                      cells.CountInLine(line, cells.separator, true) == separators;

  std::unordered_set<std::string> known;
  for (bool isLast = false; !isLast;) {
    const CsvCells::Cell cell = cells.Next(position);
    std::string name(cell.text);
    CheckText(name, position);
    if (name.empty()) name = "column" + std::to_string(names.size() + 1);
    if (!known.insert(name).second) {
      Fail(position, "a second column is called " + Quoted(name) + "; give each its own name");
    }
    names.push_back(std::move(name));
    isLast = cells.IsLineEnd(cell.next);
    if (isLast && cell.next != end) lineEnd = *cell.next;
    position = isLast ? cell.next : cell.next + 1;
  }
  position = cells.PassComments(cells.PassLineEnd(position));
  if (position == end) Fail(position, "no record follows the header line; give at least one");
  firstRecord = position;
}

bool CsvReader::IsMissing(const State& state, std::string_view cell, std::size_t& token) const {
  token = tokens.Find(cell);
  if (token == MissingTokens::kNone) return false;
  return state.reading != CellReading::Text || !tokens.IsForNumbersOnly(token);
}

bool CsvReader::IsBlankRest(const char* position) const {
  if (names.size() == 1 || !cells.IsLineEnd(position)) return false;
  while (position != end && cells.IsLineEnd(position)) ++position;
  return position == end;
}

void CsvReader::StartColumns(const std::vector<CellReading>& readings, Dataset& data) {
  states.assign(names.size(), State());
  data.columns.reserve(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    State& state = states[i];
    state.reading = readings[i];
    state.name = &names[i];
    if (state.reading == CellReading::Skip) continue;
    state.isPlain = options.notation.IsPlain() &&
                    (state.reading == CellReading::Number || state.reading == CellReading::Detect);
    state.indexInRow = data.columns.size();
    state.column = &data.columns.emplace_back();
    state.column->name = names[i];
    state.column->isText = state.reading == CellReading::Text;
    state.column->missing.assign(tokens.Size(), 0);
  }
  data.rows = RowStore(data.columns.size());
}

Dataset CsvReader::Read(const std::vector<CellReading>& readings) {
  Dataset data;
  StartColumns(readings, data);
  const char* position = firstRecord;
  const char* releaseAt = position + std::min(kReleaseStep, end - position);
  for (std::size_t record = 0; position != end && !IsBlankRest(position); ++record) {
    position = cells.PassComments(ReadRecord(position, data.rows.Append(), record));
    if (position < releaseAt) continue;
    text.Release(position);
    releaseAt = position + std::min(kReleaseStep, end - position);
  }
  TurnTokensToTexts(data);
  ReadLateTexts(data);
  text.CheckIsWhole();
  return data;
}

std::string CsvReader::LocationOfRecord(std::size_t record) const {
  CsvCells walk = cells;
  const char* position = firstRecord;
  for (std::size_t i = 0; i < record; ++i) {
    for (std::size_t cell = 0; cell < names.size(); ++cell) {
      position = walk.Next(position).next;
      if (cell + 1 < names.size()) ++position;
    }
    position = walk.PassComments(walk.PassLineEnd(position));
  }
  return LocationOf(static_cast<std::size_t>(position - text.Text().data()));
}

const char* CsvReader::ReadRecord(const char* position, double* row, std::size_t record) {
  const char* start = position;
  const std::size_t last = states.size() - 1;
  for (std::size_t i = 0;; ++i) {
    State& state = states[i];
    if (state.isPlain) {
      const char* next = ParsePlainNumber(position, row[state.indexInRow]);
      const bool isWhole = next != nullptr && *next == (i == last ? lineEnd : options.separator);
      const bool isToken =
          hasNumberToken && isWhole && tokens.Find({position, next}) != MissingTokens::kNone;
      if (isWhole && !isToken) {
        position = next + 1;
        if (i != last) continue;
        return lineEnd == '\r' && *position == '\n' ? position + 1 : position;
      }
    }
    position = PassSeparator(ReadCell(state, position, row, record), i, start);
    if (i == last) return position;
  }
}

const char* CsvReader::ReadCell(State& state, const char* position, double* row,
                                std::size_t record) {
  const CsvCells::Cell cell = cells.Next(position);
  if (state.reading == CellReading::Skip) return cell.next;
  double& value = row[state.indexInRow];
  const bool isText = state.reading == CellReading::Text;
  const std::string_view bare = isText ? cell.text : WithoutBlanks(cell.text);
  std::size_t token = 0;
  if (IsMissing(state, bare, token)) {
    ++state.column->missing[token];
    value = isText ? kMissingCode : kMissingNumber;
    return cell.next;
  }
  if (isText) {
    value = CodeOf(state, cell.text, position);
    return cell.next;
  }
  if (ReadValue(state, bare, value)) {
    if (std::isfinite(value)) return cell.next;
    const bool isNumber = !std::isnan(value);
    if (isNumber) ++state.column->infinite;
    if (!isNumber) ++state.column->missing[tokens.NotANumber()];
    if (!isNumber) value = kMissingNumber;
    return cell.next;
  }
  if (state.reading != CellReading::Detect) FailCell(state, cell.text, position);
  TurnToText(state, record);
  state.column->firstText = static_cast<std::size_t>(position - text.Text().data());
  value = CodeOf(state, cell.text, position);
  return cell.next;
}

bool CsvReader::ReadValue(const State& state, std::string_view cell, double& value) const {
  switch (state.reading) {
    case CellReading::Date:
      return ParseDate(cell, value);
    case CellReading::Time:
      return ParseTime(cell, value);
    case CellReading::Timestamp:
      return ParseTimestamp(cell, value);
    default:
      return ParseNumberIn(options.notation, cell, value);
  }
}

double CsvReader::CodeOf(State& state, std::string_view cell, const char* position) {
  bool isNew = false;
  const std::uint32_t code = state.column->texts.Add(cell, isNew);
  if (isNew) CheckText(cell, position);
  return code;
}

const char* CsvReader::PassSeparator(const char* position, std::size_t column, const char* record) {
  if (column + 1 < states.size()) {
    if (position == end || *position != options.separator) FailRagged(record);
    return position + 1;
  }
  if (!cells.IsLineEnd(position)) FailRagged(record);
  return cells.PassLineEnd(position);
}

void CsvReader::TurnToText(State& state, std::size_t record) {
  state.reading = CellReading::Text;
  state.isPlain = false;
  state.textFrom = record;
  state.column->isText = true;
  state.column->infinite = 0;
  // The records before are read once more.
  state.column->missing.assign(tokens.Size(), 0);
}

/// What is missing among numbers is a text where a column holds no number.
void CsvReader::TurnTokensToTexts(Dataset& data) {
  for (State& state : states) {
    if (state.reading != CellReading::Detect) continue;
    bool hasTokens = false;
    for (std::size_t token = 0; token < tokens.NotANumber(); ++token) {
      hasTokens = hasTokens || (tokens.IsForNumbersOnly(token) && state.column->missing[token] > 0);
    }
    const std::size_t records = data.rows.Size();
    for (std::size_t record = 0; hasTokens && record < records; ++record) {
      hasTokens = data.rows.Row(record)[state.indexInRow] == kMissingNumber;
    }
    if (hasTokens) TurnToText(state, records);
  }
}

void CsvReader::ReadLateTexts(Dataset& data) {
  std::size_t records = 0;
  for (const State& state : states) records = std::max(records, state.textFrom);
  const char* position = firstRecord;
  for (std::size_t record = 0; record < records; ++record) {
    double* row = data.rows.Row(record);
    for (std::size_t i = 0; i < states.size(); ++i) {
      State& state = states[i];
      const CsvCells::Cell cell = cells.Next(position);
      if (record < state.textFrom) {
        std::size_t token = 0;
        const bool isMissing = IsMissing(state, cell.text, token);
        if (isMissing) ++state.column->missing[token];
        row[state.indexInRow] = isMissing ? kMissingCode : CodeOf(state, cell.text, position);
      }
      position = PassSeparator(cell.next, i, position);
    }
    position = cells.PassComments(position);
  }
}

void CsvReader::CheckText(std::string_view cell, const char* position) const {
  const char* const fault = XmlTextFault(cell);
  if (fault == nullptr) return;
  Fail(position, fault == kNotUtf8 ? std::string(fault) + ", or try --encoding latin1" : fault);
}

void CsvReader::FailCell(const State& state, std::string_view cell, const char* position) const {
  const char* wanted = "numbers";
  std::string advice = "correct it, name it with --missing-token, or call the field nominal";
  if (state.reading == CellReading::Number) advice = NumberAdvice(WithoutBlanks(cell));
  if (state.reading == CellReading::Date) wanted = "dates (2024-02-29)";
  if (state.reading == CellReading::Time) wanted = "times (23:59:59)";
  if (state.reading == CellReading::Timestamp) wanted = "timestamps (2024-02-29T23:59:59)";
  Fail(position, "field " + Quoted(*state.name) + " holds " + wanted + ", but this cell is " +
                     Quoted(cell) + "; " + advice);
}

void CsvReader::FailRagged(const char* record) {
  std::size_t found = 1;
  const char* position = record;
  for (; !cells.IsLineEnd(position = cells.Next(position).next); ++position) ++found;
  std::string remedy = "; give both the same number, and quote cells that hold the separator";
  if (record == firstRecord) remedy += "; lines above the header are passed over with --skip N";
  Fail(record, "the record has " + std::to_string(found) + (found == 1 ? " cell" : " cells") +
                   ", the header has " + std::to_string(names.size()) + remedy);
}

}  // namespace npar_host
