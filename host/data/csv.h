#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/dataset.h"
#include "host/data/text_source.h"

namespace npar_host {

struct CsvOptions {
  /// 0: that of comma, semicolon and tab which divides the header line and the first record alike,
  /// the most frequent if several do or none does.
  char separator = 0;
  /// Cells that are missing, besides empty ones.
  std::vector<std::string> missingTokens{"NA"};
};

/// Reads comma-separated values as RFC 4180 describes them: UTF-8, perhaps with a byte order mark,
/// a header line, cells perhaps in double quotes with a quote inside doubled. Lines end with CRLF,
/// LF or CR; the last may lack its end. Quotes decide nothing but where a cell ends: a quoted NA is
/// as missing as a bare one, and a quote inside a bare cell is a character like others.
///
/// A number may have blanks around it and reads as ParseNumber says; "nan" is a value, not a
/// missing one. Where a cell is not what its column holds, a record has more or fewer cells than
/// the header, or a text cannot stand in an XML document, an InputError says where.
class CsvReader {
 public:
  /// Opens the file ("-" is standard input) and reads the header line. A column without a name is
  /// called by its number, "column1". InputError for a file without header or records, and for two
  /// columns of one name.
  explicit CsvReader(const std::string& path, CsvOptions options = {});

  [[nodiscard]] const std::vector<std::string>& Names() const noexcept { return names; }
  /// The path, "standard input" for "-".
  [[nodiscard]] const std::string& SourceName() const noexcept { return source.Name(); }

  /// Reads all records, column i as readings[i] says. The file is gone through once; columns that
  /// turned out to be texts after their first records make a second walk over those.
  [[nodiscard]] Dataset Read(const std::vector<CellReading>& readings);

 private:
  struct Cell {
    std::string_view text;  // without quotes, good until the next cell
    const char* next;       // the separator or line end behind it, or the end of the text
  };
  struct State {
    CellReading reading = CellReading::Detect;
    std::size_t indexInRow = 0;
    std::size_t textFrom = 0;  // records before it stand as numbers, in a column of texts
    Column* column = nullptr;
    const std::string* name = nullptr;
  };

  void ReadHeader();
  [[nodiscard]] char DetectSeparator(const char* header) const;
  [[nodiscard]] std::size_t CountInLine(const char*& position, char wanted) const;

  [[nodiscard]] Cell NextCell(const char* position);
  [[nodiscard]] Cell QuotedCell(const char* position);
  [[nodiscard]] const char* FindCellEnd(const char* position) const;
  [[nodiscard]] bool IsLineEnd(const char* position) const;
  [[nodiscard]] bool IsMissing(std::string_view text) const;
  /// Blank lines at the end of a file of several columns are no records.
  [[nodiscard]] bool IsBlankRest(const char* position) const;

  const char* ReadRecord(const char* position, double* row, std::size_t record);
  const char* ReadCell(State& state, const char* position, double* row, std::size_t record);
  bool ReadValue(const State& state, std::string_view text, double& value) const;
  double CodeOf(State& state, std::string_view text, const char* position);
  const char* PassSeparator(const char* position, std::size_t column, const char* record);
  void ReadLateTexts(Dataset& data);

  [[noreturn]] void Fail(const char* position, const std::string& message) const;
  [[noreturn]] void FailCell(const State& state, std::string_view text, const char* position) const;
  [[noreturn]] void FailRagged(const char* record);

  TextSource source;
  CsvOptions options;
  bool hasNumberToken = false;  // a cell can be missing and yet a plain number
  const char* end;
  const char* firstRecord;
  char lineEnd = '\n';  // the first character of the header's line end
  std::vector<std::string> names;
  std::vector<State> states;
  std::string scratch;  // a cell whose doubled quotes were undone
};

}  // namespace npar_host
