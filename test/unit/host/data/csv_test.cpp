#include "host/data/csv.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "host/data/input_error.h"
#include "host/data/number.h"
#include "support/process.h"

namespace {

using namespace npar_host;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A cell as a person would say it: a number as it is, a text in brackets, a missing one as "?".
std::string CellText(const Column& column, double cell) {
  if (column.isText) {
    return cell == kMissingCode
               ? "?"
               : "[" + std::string(column.texts[static_cast<std::size_t>(cell)]) + "]";
  }
  return cell == kMissingNumber ? "?" : NumberText(cell);
}

/// All records: cells divided by a blank, records by " / ".
std::string AllCells(const Dataset& data) {
  std::string text;
  for (std::size_t record = 0; record < data.records; ++record) {
    if (record > 0) text += " / ";
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
      if (i > 0) text += " ";
      text += CellText(data.columns[i], data.columns[i].Cell(record));
    }
  }
  return text;
}

/// All that reading comes to: the cells with what was counted of each column, or the error.
std::string Outcome(CsvReader& reader, const std::vector<CellReading>& readings) {
  Dataset data;
  try {
    data = reader.Read(readings);
  } catch (const InputError& error) {
    return error.what();
  }
  std::string text = AllCells(data);
  for (const Column& column : data.columns) {
    text += "\n# " + std::to_string(column.firstText.value_or(0)) + " " +
            std::to_string(column.infinite) + ":";
    for (const std::size_t count : column.missing) text += " " + std::to_string(count);
    for (std::size_t code = 0; code < column.texts.Size(); ++code) {
      text.append(" ").append(column.texts[code]);
    }
  }
  return text;
}

/// The outcome of reading a text, which has to be the same piece by piece on several threads.
std::string OutcomeOf(const TemporaryFile& file, std::vector<CellReading> readings,
                      CsvOptions options) {
  CsvReader reader(file.Path(), options);
  readings.resize(reader.Names().size(), CellReading::Detect);
  const std::string whole = Outcome(reader, readings);
  options.threads = 3;
  for (const std::size_t bytes : {1U, 5U, 16U}) {
    options.pieceBytes = bytes;
    CsvReader inPieces(file.Path(), options);
    EXPECT_EQ(Outcome(inPieces, readings), whole) << "pieces of " << bytes;
  }
  return whole;
}

std::string ReadAs(const std::string& text, const std::vector<CellReading>& readings,
                   const CsvOptions& options = {}) {
  const TemporaryFile file(text);
  const std::string outcome = OutcomeOf(file, readings, options);
  return outcome.substr(0, outcome.find("\n# "));
}

/// The error of reading a text, without the path in front.
std::string ErrorOf(const std::string& text, const std::vector<CellReading>& readings = {},
                    const CsvOptions& options = {}) {
  const TemporaryFile file(text);
  std::string message;
  try {
    message = OutcomeOf(file, readings, options);
  } catch (const InputError& error) {
    message = error.what();
  }
  EXPECT_THAT(message, StartsWith(file.Path() + ":"));
  return message.substr(std::min(message.size(), file.Path().size() + 1));
}

struct CsvCase {
  const char* catches;
  std::string text;
  const char* cells;
};

TEST(CsvTest, CellsAreReadAsTheyStand) {
  const CsvCase kCases[] = {
      {"plain", "a,b\n1,2\n3,4\n", "1 2 / 3 4"},
      {"no end of the last line", "a,b\n1,2\n3,4", "1 2 / 3 4"},
      {"CRLF", "a,b\r\n1,2\r\n3,4\r\n", "1 2 / 3 4"},
      {"CR", "a,b\r1,x\r3,y\r", "1 [x] / 3 [y]"},
      {"line ends mixed", "a,b\n1,2\r\n3,4\r5,6", "1 2 / 3 4 / 5 6"},
      {"byte order mark",
       "\xEF\xBB\xBF"
       "a,b\n1,2",
       "1 2"},
      {"empty cells, the last of a line and of the file", "a,b\n,\n1,", "? ? / 1 ?"},
      {"missing tokens, also quoted", "a,b\nNA,NA\n\"NA\",x\n1,\"\"", "? ? / ? [x] / 1 ?"},
      {"blanks around numbers, not around texts", "a,b\n 1 , x \n\t2, NA ", "1 [ x ] / 2 [ NA ]"},
      {"blanks alone are missing among numbers", "a,b\n  ,1\n2, NA", "? 1 / 2 ?"},
      {"quoted numbers", "a,b\n\"1.5\",\"2\"\n", "1.5 2"},
      {"separators and line ends in quotes", "a,b\n\"x,y\",\"p\nq\"\n1,2",
       "[x,y] [p\nq] / [1] [2]"},
      {"doubled quotes", "a\n\"\"\"\"\n\"a\"\"b\"\"\"\n", "[\"] / [a\"b\"]"},
      {"a quote inside a bare cell", "a,b\n5\" pipe,1\n", "[5\" pipe] 1"},
      {"long cells", "a,b\nabcdefgh,12345678\nabcdefghijklmnopq,1234567890123456789012",
       "[abcdefgh] 12345678 / [abcdefghijklmnopq] 1.23456789012346e+21"},
      {"infinities are values, a not-a-number is none", "a,b\nInf,-nan\n-INF,+1", "inf ? / -inf 1"},
      {"tokens among numbers", "a,b\n.,-\n2,?\n*,3", "? ? / 2 ? / ? 3"},
      {"the same tokens among texts, and alone", "a,b\n.,-\nx,-\nN/A,-",
       "[.] [-] / [x] [-] / ? [-]"},
      {"blanks behind each separator", "a, b, \"c, d\"\nx, y, \"1, 2\"\n", "[x] [y] [1, 2]"},
      {"a line that names the separator", "sep=|\r\na|b\r\n1|2\r\n", "1 2"},
      {"a column turns to texts late and keeps the spelling before", "a,b\n01,1\n,2\n 1e0,3\nx,4",
       "[01] 1 / ? 2 / [ 1e0] 3 / [x] 4"},
      {"two columns turn late, at different records", "a,b\n1,NA\n2,2\ny,3\n4,z",
       "[1] ? / [2] [2] / [y] [3] / [4] [z]"},
      {"blank lines at the end", "a,b\n1,2\n\n\r\n", "1 2"},
      {"a blank line is a record of one column", "a\n1\n\n2\n\n", "1 / ? / 2 / ?"},
      {"bytes close to the separator's", "a,b\n-+,-\n", "[-+] [-]"},
      {"non-ASCII texts", "größe,b\nä,é\n", "[ä] [é]"},
  };
  for (const CsvCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    EXPECT_EQ(ReadAs(row.text, {}), row.cells);
  }
}

TEST(CsvTest, TheSeparatorDividesHeaderAndRecordsAlike) {
  EXPECT_EQ(ReadAs("a;b\n1;2", {}), "1 2");
  EXPECT_EQ(ReadAs("a\tb\n1\t2", {}), "1 2");
  EXPECT_EQ(ReadAs("\"a,b,c\";d\n1;2", {}), "1 2");          // commas in quotes do not count
  EXPECT_EQ(ReadAs("a, in mm, c;d\n1,5;2", {}), "[1,5] 2");  // nor those that divide unevenly
  EXPECT_EQ(ReadAs("a;b,c\n1;2,3", {}), "[1;2] 3");          // of two even ones the first
  EXPECT_EQ(ReadAs("a|b\n1|2", {}, {.separator = '|'}), "1 2");
  // One that stands in numbers divides them too.
  for (const char separator : {'e', '.', '-', '+', '0', 'x'}) {
    std::string divided = "a?b\n11?22\n";
    std::ranges::replace(divided, '?', separator);
    EXPECT_EQ(ReadAs(divided, {}, {.separator = separator}), "11 22") << separator;
  }
}

TEST(CsvTest, ReadingsAndMissingTokensAreTheCallers) {
  using enum CellReading;
  EXPECT_EQ(ReadAs("a,b\n1,2\n1.0,NA", {Text, Skip}), "[1] / [1.0]");
  // A token that is a number is a text all the same: -99.0 is another.
  EXPECT_EQ(ReadAs("a,b\n1,NA\n-99,.\n-99.0, -99", {}, {.missingTokens = {"-99", "."}}),
            "1 ? / ? ? / -99 ?");
  EXPECT_EQ(ReadAs("a,b\n1,NA\n-99,.\n-99.0, -99", {},
                   {.missingTokens = {"-99", "."}, .onlyMissingTokens = true}),
            "1 [NA] / ? ? / -99 [ -99]");
  EXPECT_EQ(ReadAs("a title\n# more\na;b\n# between\n1.000,5;-0,5\n#1;2\n7;x\n", {},
                   {.notation = {',', '.'}, .skippedLines = 1, .comment = '#'}),
            "1000.5 [-0,5] / 7 [x]");
}

// What was met is told to people: each token by itself, in columns that turn to texts too.
TEST(CsvTest, MissingCellsAreCountedByTheirText) {
  const TemporaryFile file("a,b\nNA,-\n1,nan\n,x\n.,NULL\n-inf,\n");
  CsvReader reader(file.Path());
  const Dataset data = reader.Read({CellReading::Detect, CellReading::Detect});
  const auto counts = [&](std::size_t column) {
    std::string text;
    for (std::size_t token = 0; token < reader.Tokens().Size(); ++token) {
      const std::size_t count = data.columns[column].missing[token];
      if (count == 0) continue;
      text += std::string(reader.Tokens().Text(token)) + ":" + std::to_string(count) + " ";
    }
    return text;
  };
  EXPECT_EQ(counts(0), ":1 NA:1 .:1 ");
  EXPECT_EQ(data.columns[0].infinite, 1u);
  EXPECT_EQ(counts(1), ":1 nan:1 NULL:1 ");
  EXPECT_EQ(data.columns[1].firstText, 16u);
}

TEST(CsvTest, NamesComeFromTheHeader) {
  const TemporaryFile file("\"a \"\"x\"\"\",,\"b\nc\"\n1,2,3");
  const CsvReader reader(file.Path());
  EXPECT_EQ(reader.Names(), (std::vector<std::string>{"a \"x\"", "column2", "b\nc"}));
}

TEST(CsvTest, ErrorsSayWhereAndWhatToDo) {
  using enum CellReading;
  const struct {
    const char* catches;
    std::string text;
    std::vector<CellReading> readings;
    const char* error;  // beginning
  } kCases[] = {
      {"empty file", "", {}, "1:1: the file is empty; "},
      {"byte order mark alone", "\xEF\xBB\xBF", {}, "1:1: the file is empty; "},
      {"header alone", "a,b\n", {}, "2:1: no record follows the header line; "},
      {"header alone without line end", "a,b", {}, "1:4: no record follows the header line; "},
      {"same name twice", "a,b,a\n1,2,3", {}, "1:5: a second column is called \"a\"; "},
      {"too few cells", "a,b\n1,2\n3\n4,5", {}, "3:1: the record has 1 cell, the header has 2; "},
      {"too many cells", "a,b\n1,2,3\n", {}, "2:1: the record has 3 cells, the header has 2; "},
      {"too many by one empty cell", "a,b\n1,2,\n", {}, "2:1: the record has 3 cells"},
      {"blank line between", "a,b\n1,2\n\n3,4", {}, "3:1: the record has 1 cell"},
      {"quote without end", "a,b\n1,\"x\n2,3\n", {}, "2:3: this quote is never closed; "},
      {"text after a quote",
       "a,b\n\"x\"y,2",
       {},
       "2:4: a quoted cell goes on after its closing quote"},
      {"text among numbers",
       "a,b\n1,2\n3,zwölf\n",
       {Number, Number},
       "3:3: field \"b\" holds numbers, but this cell is \"zwölf\"; correct it"},
      {"decimal comma",
       "a;b\n1;2,5",
       {Number, Number},
       "2:3: field \"b\" holds numbers, but this cell is \"2,5\"; it looks like numbers with "
       "decimal commas: add --decimal ,"},
      {"columns count characters, lines quoted line ends too",
       "a,b\n\"p\nq\",ä\nx,ä\r\n\"ää\",1,2",
       {},
       "5:1: the record has 3 cells"},
      {"character column", "a,b\nää,x", {Text, Number}, "2:4: field \"b\""},
      {"no date", "a\n2024-02-30", {Date}, "2:1: field \"a\" holds dates (2024-02-29), but"},
      {"not UTF-8", "a\nx\n\xE4\n", {}, "3:1: the text is not UTF-8; save the file as UTF-8"},
      {"not UTF-8 in the header", "a,\xE4\n1,2\n", {}, "1:3: the text is not UTF-8"},
      {"a surrogate", "a\n\xED\xA0\x80", {}, "2:1: the text is not UTF-8"},
      {"a zero byte", std::string("a,b\n1,2\n3\0,4", 12), {}, "3:1: the text holds a control"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.catches);
    EXPECT_THAT(ErrorOf(row.text, row.readings), StartsWith(row.error));
  }
  EXPECT_THAT(ErrorOf("a\"b\n1.2", {}, {.separator = '"'}), HasSubstr("cannot separate cells"));
  EXPECT_THROW(CsvReader("/nowhere/at/all.csv"), InputError);
  EXPECT_THROW(CsvReader("/"), InputError);
}

TEST(CsvTest, FilesAroundAPageReadToTheirEnd) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  for (std::size_t size = page - 9; size <= page + 9; ++size) {
    std::string text = "a,b\n";
    while (text.size() + 4 <= size - 8) text += "1,2\n";
    const std::string start = text;
    text += "3," + std::string(size - text.size() - 2, '7');
    const std::string cells = ReadAs(text, {CellReading::Number, CellReading::Text});
    EXPECT_THAT(cells, ::testing::EndsWith("/ 3 [" + text.substr(start.size() + 2) + "]"));
  }
}

TEST(CsvTest, APipeIsReadLikeAFile) {
  std::string text = "a,b\n";
  for (int i = 0; i < 300000; ++i) text += "12,xyz\n";  // more than the first buffer
  const TemporaryFile name("");
  std::filesystem::remove(name.Path());
  ASSERT_EQ(mkfifo(name.Path().c_str(), 0600), 0);
  std::thread writer([&] {
    std::FILE* pipe = std::fopen(name.Path().c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), pipe);
    std::fclose(pipe);
  });
  CsvReader reader(name.Path());
  writer.join();
  const Dataset data = reader.Read({CellReading::Detect, CellReading::Detect});
  ASSERT_EQ(data.records, 300000U);
  EXPECT_EQ(CellText(data.columns[1], data.columns[1].Cell(299999)), "[xyz]");
}

/// RFC 4180 text of cells, every one of them in quotes if `quotesAll`.
std::string WriteCsv(const std::vector<std::vector<std::string>>& records, bool quotesAll,
                     const std::string& lineEnd) {
  std::string text;
  for (const auto& record : records) {
    for (std::size_t i = 0; i < record.size(); ++i) {
      if (i > 0) text += ',';
      const bool needsQuotes = record[i].find_first_of(",\"\r\n;\t") != std::string::npos;
      if (!quotesAll && !needsQuotes) {
        text += record[i];
        continue;
      }
      text += '"';
      for (const char c : record[i]) text += c == '"' ? std::string("\"\"") : std::string(1, c);
      text += '"';
    }
    text += lineEnd;
  }
  return text;
}

TEST(CsvTest, WrittenTextsReadBack) {
  EXPECT_TRUE(rc::check([] {
    const auto columns = *rc::gen::inRange<std::size_t>(1, 5);
    const auto cell = rc::gen::container<std::string>(
        rc::gen::elementOf(std::string("abcdefghijkl012.-,;\t \"\"\n\r")));
    auto records = *rc::gen::container<std::vector<std::vector<std::string>>>(
        rc::gen::container<std::vector<std::string>>(columns, cell));
    if (records.empty()) records.emplace_back(columns, "x");
    std::vector<std::string> header;
    for (std::size_t i = 0; i < columns; ++i) header.push_back("v" + std::to_string(i));
    // A record of empty cells at the end, unquoted, could be a blank line.
    records.emplace_back(columns, "last");
    auto all = records;
    all.insert(all.begin(), header);
    const std::string text = WriteCsv(all, *rc::gen::arbitrary<bool>(),
                                      *rc::gen::element<std::string>("\n", "\r\n", "\r"));
    std::string expected;
    for (const auto& record : records) {
      if (!expected.empty()) expected += " / ";
      for (std::size_t i = 0; i < columns; ++i) {
        if (i > 0) expected += " ";
        expected += record[i].empty() ? "?" : "[" + record[i] + "]";
      }
    }
    RC_ASSERT(ReadAs(text, std::vector<CellReading>(columns, CellReading::Text),
                     {.separator = ','}) == expected);
  }));
}

/// A text of three columns, or nearly so: quotes that open no cell, line ends in quotes, columns
/// that turn to texts late, comments, faults.
std::string RoughText(const std::vector<std::uint8_t>& picks) {
  const std::vector<std::string> kWords = {
      "1",          "2.5",         ",",
      ",",          "\n",          "\"",
      "\"a,b\nc\"", "NA",          ".",
      "y",          "inf",         "\"\"",
      "\xE4",       "x\n",         "#1,2,3\n",
      "\r\n",       "1,2,3\n",     "a,2,3\n",
      "4,,\n",      "5,\"6\",7\n", "long cells pass,the edge of a block of sixty-four bytes,8\n"};
  std::string text = "a,b,c\n1,2,3\n";
  for (const std::uint8_t pick : picks) text += kWords[pick % kWords.size()];
  return text;
}

TEST(CsvTest, PiecesOnThreadsComeToTheSameAsTheWhole) {
  EXPECT_TRUE(rc::check([](const std::vector<std::uint8_t>& picks) {
    static_cast<void>(OutcomeOf(TemporaryFile(RoughText(picks)), {}, {.comment = '#'}));
  }));
}

TEST(CsvTest, ColumnsThatAreSkippedChangeNothingOfOthers) {
  using enum CellReading;
  EXPECT_TRUE(rc::check([](const std::vector<std::uint8_t>& picks) {
    const TemporaryFile file(RoughText(picks));
    const auto read = [&](const std::vector<CellReading>& readings) {
      return CsvReader(file.Path(), {.comment = '#'}).Read(readings);
    };
    Dataset all;
    try {
      all = read({Detect, Detect, Detect});
    } catch (const InputError&) {
      return;
    }
    for (std::size_t kept = 0; kept < 3; ++kept) {
      std::vector<CellReading> readings(3, Skip);
      readings[kept] = Detect;
      Dataset one;
      one.records = all.records;
      one.columns.push_back(std::move(all.columns[kept]));
      RC_ASSERT(AllCells(read(readings)) == AllCells(one));
    }
  }));
}

TEST(CsvTest, WrittenNumbersReadBackToTheLastBit) {
  EXPECT_TRUE(rc::check([](const std::vector<double>& numbers) {
    RC_PRE(!numbers.empty());
    std::string text = "a,b\n";
    for (const double number : numbers) {
      char cells[80];
      std::snprintf(cells, sizeof cells, "%.17g,%.17g\n", number, -number);
      text += cells;
    }
    const TemporaryFile file(text);
    CsvReader reader(file.Path());
    const Dataset data = reader.Read({CellReading::Number, CellReading::Number});
    RC_ASSERT(data.records == numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      RC_ASSERT(data.columns[0].Cell(i) == numbers[i]);
      RC_ASSERT(data.columns[1].Cell(i) == -numbers[i]);
    }
  }));
}

// Pages that are gone end in a signal where they are read; what is left of the last page is zeros.
TEST(CsvReader, AFileThatBecomesShorterWhileItIsReadIsToldSo) {
  const TemporaryFolder folder;
  std::string text = "a,b\n";
  while (text.size() < 100000) text += "1,2\n";
  for (const std::uintmax_t left : {0U, 10U, 50000U, 99996U}) {
    const std::string path = folder.Write("d.csv", text);
    CsvReader reader(path);
    std::filesystem::resize_file(path, left);
    EXPECT_THAT(
        [&] {
          static_cast<void>(reader.Read({CellReading::Detect, CellReading::Detect}));
        },
        testing::ThrowsMessage<InputError>(HasSubstr("became shorter")))
        << left;
  }
}

}  // namespace
