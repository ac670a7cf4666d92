#include "host/data/file_format.h"

#include <algorithm>
#include <cstddef>

namespace npar_host {
namespace {

using namespace std::string_view_literals;

/// What reads a format: a function of npar's Python package, one of pandas, or a command that takes
/// the path.
struct Format {
  std::string_view begins;
  std::string_view told;
  std::string_view package = {};  // empty: none reads it
  std::string_view pandas = {};   // likewise
  std::string_view command = {};  // of a shell, in front of the path
};

constexpr Format kFormats[] = {
    {"PAR1"sv, "a Parquet file", "read_parquet", "read_parquet"},
    {"ARROW1"sv, "an Arrow (Feather) file", "", "read_feather"},
    {"FEA1"sv, "a Feather file", "", "read_feather"},
    {"$FL2"sv, "an SPSS file", "read_sav", "read_spss"},
    {"$FL3"sv, "an SPSS file", "read_sav", "read_spss"},
    {"<stata_dta>"sv, "a Stata file", "read_dta", "read_stata"},
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "an Excel file of the old form", "read_excel",
     "read_excel"},
    {"\x89HDF\r\n\x1A\n"sv, "an HDF5 file", "", "read_hdf"},
    {"SQLite format 3\0"sv, "an SQLite database"},
    {"RDX"sv, "an R data file"},
    {"RDA"sv, "an R data file"},
    {"X\n\0\0\0"sv, "an R data file"},
    {"MATLAB 5.0"sv, "a MATLAB file"},
    {"%PDF-"sv, "a PDF document"},
    {"BZh"sv, "compressed by bzip2", "", "", "bzip2 -dc"},
    {"\xFD"
     "7zXZ"sv,
     "compressed by xz", "", "", "xz -dc"},
    {"7z\xBC\xAF\x27\x1C"sv, "a 7z archive", "", "", "7z x -so"},
};
constexpr Format kSheet = {"", "an Excel file", "read_excel", "read_excel"};
constexpr Format kOpenSheet = {"", "an OpenDocument spreadsheet", "read_excel", "read_excel"};
constexpr Format kDocument = {"", "an Office document"};
constexpr Format kZip = {"", "a zip archive", "", "", "unzip -p"};
constexpr Format kOther = {"", "no text"};

/// Texts have none of these bytes; a file of UTF-16 has, and is known by its byte order mark.
constexpr std::size_t kLooked = 512;
constexpr std::size_t kZipLooked = std::size_t{1} << 16;

// A number of an archive, the lowest byte first; 0 beyond its end.
std::size_t NumberAt(std::string_view bytes, std::size_t at, std::size_t width) {
  std::size_t number = 0;
  for (std::size_t i = width; i > 0 && at + width <= bytes.size(); --i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

// The names of an archive's files, each behind a line end. Its directory stands at its end; what
// is cut off has none.
std::string NamesInZip(std::string_view bytes) {
  constexpr std::string_view kEnd = "PK\x05\x06", kEntry = "PK\x01\x02";
  constexpr std::size_t kDirectoryOffset = 16, kEntrySize = 46;
  constexpr std::size_t kNameLength = 28, kExtraLength = 30, kCommentLength = 32;
  const std::size_t end = bytes.rfind(kEnd);
  if (end == std::string_view::npos) return {};
  std::string names;
  std::size_t at = NumberAt(bytes, end + kDirectoryOffset, 4);
  while (at + kEntrySize <= bytes.size() && bytes.substr(at).starts_with(kEntry)) {
    const std::size_t length = NumberAt(bytes, at + kNameLength, 2);
    names.append("\n").append(bytes.substr(at + kEntrySize, length));
    at += kEntrySize + length + NumberAt(bytes, at + kExtraLength, 2) +
          NumberAt(bytes, at + kCommentLength, 2);
  }
  return names;
}

const Format* FindFormat(std::string_view bytes) {
  for (const Format& format : kFormats) {
    if (bytes.starts_with(format.begins)) return &format;
  }
  if (bytes.starts_with("PK\x03\x04")) {
    const std::string_view start = bytes.substr(0, kZipLooked);
    if (start.find("opendocument.spreadsheet") != std::string_view::npos) return &kOpenSheet;
    const std::string names = NamesInZip(bytes);
    const auto holds = [&names](const char* name) { return names.find(name) != std::string::npos; };
    if (holds("\nxl/")) return &kSheet;
    return holds("\n[Content_Types].xml") ? &kDocument : &kZip;
  }
  const std::string_view start = bytes.substr(0, kLooked);
  const auto isControl = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f' && c != '\x1B';
  };
  // A stray control character is told with its place when its cell is read.
  const auto controls = static_cast<std::size_t>(std::ranges::count_if(start, isControl));
  return 10 * controls > start.size() ? &kOther : nullptr;
}

}  // namespace

std::string ForeignFormat(std::string_view bytes, const std::string& path) {
  const Format* const format = FindFormat(bytes);
  if (format == nullptr) return {};
  std::string text = "this is " + std::string(format->told) + "; ";
  if (!format->package.empty()) {
    text.append("the Python package reads it: npar.").append(format->package);
    text.append("(\"" + path + "\"); or ");
  }
  if (!format->pandas.empty()) {
    text += "turn it into CSV, with Python's pandas: python3 -c 'import pandas; pandas." +
            std::string(format->pandas) + "(\"" + path + "\").to_csv(\"" + path +
            ".csv\", index=False)'";
  } else if (!format->command.empty()) {
    text += "unpack it: " + std::string(format->command) + " " + path + " | npar analyse - ...";
  } else {
    text += "save the table as CSV, and give that file";
  }
  return text;
}

}  // namespace npar_host
