#include "host/data/csv.h"

#include <cstdint>
#include <cstring>
#include <unordered_set>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/iso_time.h"
#include "host/data/number.h"
#include "host/data/xml_text.h"

namespace npar_host {
namespace {

constexpr char kQuote = '"';
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::ptrdiff_t kReleaseStep = std::ptrdiff_t{1} << 24;  // bytes of the file

constexpr std::uint64_t Repeat(char byte) {
  return 0x0101010101010101U * static_cast<unsigned char>(byte);
}

/// The highest bit of each byte that is zero. Above the first zero byte others may be marked too.
constexpr std::uint64_t ZeroBytes(std::uint64_t bytes) {
  return (bytes - 0x0101010101010101U) & ~bytes & 0x8080808080808080U;
}

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool CanSeparate(char c) {
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return static_cast<signed char>(c) > 0 && !isLetter && !number_detail::IsDigit(c) &&
         std::string_view("\"\r\n.+-").find(c) == std::string_view::npos;
}

}  // namespace

CsvReader::CsvReader(const std::string& path, CsvOptions chosen)
    : source(path), options(std::move(chosen)), end(source.Text().data() + source.Text().size()) {
  double number = 0.0;
  for (const std::string& token : options.missingTokens) {
    hasNumberToken = hasNumberToken || ParseNumber(token, number);
  }
  ReadHeader();
}

void CsvReader::ReadHeader() {
  const std::string_view text = source.Text();
  const char* position = text.data();
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    Fail(position, "the file is UTF-16; save it as UTF-8");
  }
  if (text.starts_with(kByteOrderMark)) position += kByteOrderMark.size();
  if (position == end) Fail(position, "the file is empty; give a header line and records");
  if (options.separator == 0) options.separator = DetectSeparator(position);
  if (!CanSeparate(options.separator)) {
    Fail(position, "this character cannot separate cells; take a comma, a semicolon or a tab");
  }

  std::unordered_set<std::string> known;
  for (bool isLast = false; !isLast;) {
    const Cell cell = NextCell(position);
    std::string name(cell.text);
    if (const char* fault = XmlTextFault(name)) Fail(position, fault);
    if (name.empty()) name = "column" + std::to_string(names.size() + 1);
    if (!known.insert(name).second) {
      Fail(position, "a second column is called " + Quoted(name) + "; give each its own name");
    }
    names.push_back(std::move(name));
    isLast = IsLineEnd(cell.next);
    if (isLast && cell.next != end) lineEnd = *cell.next;
    position = isLast ? cell.next : cell.next + 1;
  }
  if (position != end) position += position[0] == '\r' && position[1] == '\n' ? 2 : 1;
  if (position == end) Fail(position, "no record follows the header line; give at least one");
  firstRecord = position;
}

char CsvReader::DetectSeparator(const char* header) const {
  char best = ',';
  std::size_t most = 0;
  bool bestIsEven = false;
  for (const char candidate : {',', ';', '\t'}) {
    const char* position = header;
    const std::size_t inHeader = CountInLine(position, candidate);
    const bool isEven = position == end || CountInLine(position, candidate) == inHeader;
    if (inHeader == 0 || (bestIsEven && !isEven)) continue;
    if (inHeader > most || (isEven && !bestIsEven)) {
      best = candidate;
      most = inHeader;
      bestIsEven = isEven;
    }
  }
  return best;
}

std::size_t CsvReader::CountInLine(const char*& position, char wanted) const {
  std::size_t count = 0;
  bool isQuoted = false;
  while (position != end && (isQuoted || !IsLineEnd(position))) {
    if (*position == kQuote) isQuoted = !isQuoted;
    if (*position == wanted && !isQuoted) ++count;
    ++position;
  }
  if (position != end) position += position[0] == '\r' && position[1] == '\n' ? 2 : 1;
  return count;
}

bool CsvReader::IsLineEnd(const char* position) const {
  return *position == '\n' || *position == '\r' || position == end;
}

const char* CsvReader::FindCellEnd(const char* position) const {
  const std::uint64_t separators = Repeat(options.separator);
  for (;; position += sizeof(std::uint64_t)) {
    if (position >= end) return end;
    std::uint64_t bytes;
    std::memcpy(&bytes, position, sizeof bytes);
    const std::uint64_t found = ZeroBytes(bytes ^ separators) | ZeroBytes(bytes ^ Repeat('\n')) |
                                ZeroBytes(bytes ^ Repeat('\r'));
    if (found == 0) continue;
    return position + std::countr_zero(found) / 8;
  }
}

CsvReader::Cell CsvReader::NextCell(const char* position) {
  if (*position == kQuote && position != end) return QuotedCell(position);
  const char* next = FindCellEnd(position);
  return {{position, static_cast<std::size_t>(next - position)}, next};
}

CsvReader::Cell CsvReader::QuotedCell(const char* position) {
  const char* part = position + 1;
  bool hasParts = false;
  for (;;) {
    const void* found = std::memchr(part, kQuote, static_cast<std::size_t>(end - part));
    if (found == nullptr) {
      Fail(position,
           "this quote is never closed; close the cell with a quote, double those inside");
    }
    const char* quote = static_cast<const char*>(found);
    const std::string_view text(part, static_cast<std::size_t>(quote - part));
    if (quote[1] == kQuote && quote + 1 != end) {
      if (!hasParts) scratch.clear();
      hasParts = true;
      scratch.append(text).push_back(kQuote);
      part = quote + 2;
      continue;
    }
    const char* next = quote + 1;
    if (!IsLineEnd(next) && *next != options.separator) {
      Fail(next, "a quoted cell goes on after its closing quote; double the quotes inside a cell");
    }
    if (!hasParts) return {text, next};
    scratch.append(text);
    return {scratch, next};
  }
}

bool CsvReader::IsMissing(std::string_view text) const {
  if (text.empty()) return true;
  for (const std::string& token : options.missingTokens) {
    if (text == token) return true;
  }
  return false;
}

bool CsvReader::IsBlankRest(const char* position) const {
  if (names.size() == 1 || !IsLineEnd(position)) return false;
  while (position != end && IsLineEnd(position)) ++position;
  return position == end;
}

Dataset CsvReader::Read(const std::vector<CellReading>& readings) {
  Dataset data;
  states.assign(names.size(), State());
  data.columns.reserve(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    State& state = states[i];
    state.reading = readings[i];
    state.name = &names[i];
    if (state.reading == CellReading::Skip) continue;
    state.indexInRow = data.columns.size();
    state.column = &data.columns.emplace_back();
    state.column->name = names[i];
    state.column->isText = state.reading == CellReading::Text;
  }
  data.rows = RowStore(data.columns.size());

  const char* position = firstRecord;
  const char* releaseAt = position + std::min(kReleaseStep, end - position);
  for (std::size_t record = 0; position != end && !IsBlankRest(position); ++record) {
    position = ReadRecord(position, data.rows.Append(), record);
    if (position < releaseAt) continue;
    source.Release(position);
    releaseAt = position + std::min(kReleaseStep, end - position);
  }
  ReadLateTexts(data);
  source.CheckIsWhole();
  return data;
}

const char* CsvReader::ReadRecord(const char* position, double* row, std::size_t record) {
  const char* start = position;
  const std::size_t last = states.size() - 1;
  for (std::size_t i = 0;; ++i) {
    State& state = states[i];
    if (state.reading == CellReading::Number || state.reading == CellReading::Detect) {
      const char* next = ParsePlainNumber(position, row[state.indexInRow]);
      const bool isWhole = next != nullptr && *next == (i == last ? lineEnd : options.separator);
      if (isWhole && !(hasNumberToken && IsMissing({position, next}))) {
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
  const Cell cell = NextCell(position);
  if (state.reading == CellReading::Skip) return cell.next;
  double& value = row[state.indexInRow];
  if (state.reading == CellReading::Text) {
    value = IsMissing(cell.text) ? kMissingCode : CodeOf(state, cell.text, position);
    return cell.next;
  }
  const std::string_view text = WithoutBlanks(cell.text);
  if (IsMissing(text)) {
    value = kMissingNumber;
  } else if (!ReadValue(state, text, value)) {
    if (state.reading != CellReading::Detect) FailCell(state, cell.text, position);
    state.reading = CellReading::Text;
    state.textFrom = record;
    state.column->isText = true;
    value = CodeOf(state, cell.text, position);
  }
  return cell.next;
}

bool CsvReader::ReadValue(const State& state, std::string_view text, double& value) const {
  switch (state.reading) {
    case CellReading::Date:
      return ParseDate(text, value);
    case CellReading::Time:
      return ParseTime(text, value);
    case CellReading::Timestamp:
      return ParseTimestamp(text, value);
    default:
      return ParseNumber(text, value);
  }
}

double CsvReader::CodeOf(State& state, std::string_view text, const char* position) {
  bool isNew = false;
  const std::uint32_t code = state.column->texts.Add(text, isNew);
  if (isNew) {
    if (const char* fault = XmlTextFault(text)) Fail(position, fault);
  }
  return code;
}

const char* CsvReader::PassSeparator(const char* position, std::size_t column, const char* record) {
  if (column + 1 < states.size()) {
    if (position == end || *position != options.separator) FailRagged(record);
    return position + 1;
  }
  if (!IsLineEnd(position)) FailRagged(record);
  if (position == end) return end;
  return position + (position[0] == '\r' && position[1] == '\n' ? 2 : 1);
}

void CsvReader::ReadLateTexts(Dataset& data) {
  std::size_t records = 0;
  for (const State& state : states) records = std::max(records, state.textFrom);
  const char* position = firstRecord;
  for (std::size_t record = 0; record < records; ++record) {
    double* row = data.rows.Row(record);
    for (std::size_t i = 0; i < states.size(); ++i) {
      State& state = states[i];
      const Cell cell = NextCell(position);
      if (record < state.textFrom) {
        row[state.indexInRow] =
            IsMissing(cell.text) ? kMissingCode : CodeOf(state, cell.text, position);
      }
      position = PassSeparator(cell.next, i, position);
    }
  }
}

void CsvReader::Fail(const char* position, const std::string& message) const {
  source.CheckIsWhole();  // what is gone reads as zero bytes, which is no fault of the text
  const std::string_view text = source.Text();
  const auto offset = static_cast<std::size_t>(position - text.data());
  throw InputError(LocationInText(source.Name(), text, offset) + ": " + message);
}

void CsvReader::FailCell(const State& state, std::string_view text, const char* position) const {
  const char* wanted = "numbers";
  const char* advice = "correct it, name it with --missing-token, or call the field nominal";
  if (state.reading == CellReading::Date) wanted = "dates (2024-02-29)";
  if (state.reading == CellReading::Time) wanted = "times (23:59:59)";
  if (state.reading == CellReading::Timestamp) wanted = "timestamps (2024-02-29T23:59:59)";
  if (state.reading == CellReading::Number && text.find(',') != std::string_view::npos) {
    advice = "write numbers with a decimal point and without thousands separators";
  }
  Fail(position, "field " + Quoted(*state.name) + " holds " + wanted + ", but this cell is " +
                     Quoted(text) + "; " + advice);
}

void CsvReader::FailRagged(const char* record) {
  std::size_t cells = 1;
  const char* position = record;
  for (; !IsLineEnd(position = NextCell(position).next); ++position) ++cells;
  Fail(record, "the record has " + std::to_string(cells) + (cells == 1 ? " cell" : " cells") +
                   ", the header has " + std::to_string(names.size()) +
                   "; give both the same number, and quote cells that hold the separator");
}

}  // namespace npar_host
