#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/cell_source.h"
#include "host/data/csv_cells.h"
#include "host/data/data_text.h"
#include "host/data/dataset.h"
#include "host/data/missing_tokens.h"
#include "host/data/number_notation.h"

namespace npar_host {

struct CsvOptions {
  /// 0: that of comma, semicolon and tab which divides the header line and the first record alike,
  /// the most frequent if several do or none does; or what a first line "sep=;" says.
  char separator = 0;
  /// Cells that are missing, besides the usual ones of MissingTokens or instead of them.
  std::vector<std::string> missingTokens{};
  bool onlyMissingTokens = false;
  NumberNotation notation{};
  std::size_t skippedLines = 0;  ///< at the beginning of the file
  char comment = 0;              ///< begins lines that are passed over; 0: none
  TextEncoding encoding = TextEncoding::Detect;
  std::size_t threads = 0;  ///< that read it, the caller's among them; 0: those of the machine
  std::size_t pieceBytes = std::size_t{1} << 20;  ///< that one of them reads at a time
};

/// Reads comma-separated values as RFC 4180 describes them: a header line, cells perhaps in double
/// quotes with a quote inside doubled. Quotes decide nothing but where a cell ends: a quoted NA is
/// as missing as a bare one, and a quote inside a bare cell is a character like others. Where a
/// blank stands behind each separator of the header, blanks in front of cells are none of them.
///
/// A number may have blanks around it and reads as ParseNumberIn says; a not-a-number is missing.
/// Where a cell is not what its column holds, a record has more or fewer cells than the header, or
/// a text cannot stand in an XML document, an InputError says where.
class CsvReader : public CellSource {
 public:
  /// Opens the file ("-" is standard input) and reads the header line. A column without a name is
  /// called by its number, "column1". InputError for a file without header or records, and for two
  /// columns of one name.
  explicit CsvReader(const std::string& path, CsvOptions options = {});

  [[nodiscard]] const std::vector<std::string>& Names() const noexcept { return names; }
  /// The path, "standard input" for "-".
  [[nodiscard]] const std::string& SourceName() const noexcept { return text.Name(); }
  [[nodiscard]] char Separator() const noexcept { return cells.separator; }
  [[nodiscard]] const NumberNotation& Notation() const noexcept override {
    return options.notation;
  }
  [[nodiscard]] const MissingTokens& Tokens() const noexcept override { return tokens; }
  [[nodiscard]] std::string LocationOf(std::size_t offset) const override {
    return text.LocationOf(offset);
  }

  /// LocationOf the first cell of a record, counted from 0.
  [[nodiscard]] std::string LocationOfRecord(std::size_t record) const;

  /// Reads all records, column i as readings[i] says. The file is gone through once; columns that
  /// turned out to be texts after their first records make a second walk over those. Data and
  /// errors are the same for any number of threads.
  [[nodiscard]] Dataset Read(const std::vector<CellReading>& readings);

 private:
  void ReadHeader();
  [[nodiscard]] const char* FindHeader();
  [[nodiscard]] const char* TakeSeparatorLine(const char* position);
  [[noreturn]] void Fail(const char* position, const std::string& message) const {
    text.Fail(position, message);
  }

  DataText text;
  CsvOptions options;
  MissingTokens tokens;
  CsvCells cells;
  bool hasNumberToken = false;  // a cell can be missing and yet a plain number
  const char* end;
  const char* firstRecord;
  char lineEnd = '\n';  // the first character of the header's line end
  std::vector<std::string> names;
};

}  // namespace npar_host
