#include "host/data/csv.h"

#include <unordered_set>
#include <utility>

#include "host/data/csv_assembly.h"
#include "host/data/csv_piece.h"
#include "host/data/input_error.h"
#include "host/data/number.h"
#include "host/os/processors.h"

namespace npar_host {
namespace {

constexpr std::string_view kSeparators = ",;\t";

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
    Fail(position, "a quote, the end of a line or a character beyond ASCII cannot separate cells");
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
    CheckCellText(cells, name, position);
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

Dataset CsvReader::Read(const std::vector<CellReading>& readings) {
  const CsvFormat format{names, tokens, options.notation, firstRecord, lineEnd, hasNumberToken};
  const std::size_t threads = options.threads == 0 ? MachineThreads() : options.threads;
  return CsvAssembly(text, format, cells, readings).Run(threads, options.pieceBytes);
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

}  // namespace npar_host
