#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "support/process.h"

namespace {

using testing::HasSubstr;

/// A call of npar on a file of test/corpus, as people have them.
struct CorpusCase {
  const char* command;  // behind the program's name; @ is the corpus, _ a blank in a word
  int exitCode;
  const char* says;  // on standard error, or standard output of npar describe
};

const CorpusCase kCases[] = {
    {"analyse @spreadsheet_german.csv --one-sample Gr*", 2,
     "german.csv:3:3: Größe: could only be nominal, since 4 of 5 cells are no numbers, first line "
     "3: \"1,75\"; these are numbers with decimal commas: add --decimal ,"},
    {"analyse @spreadsheet_german.csv --independent Gr??e --by Gruppe --decimal ,", 0,
     "inferred: continuous: Größe; nominal: Gruppe\n"},
    {"analyse @spreadsheet_thousands.csv --one-sample income", 2, "add --thousands ,"},
    {"analyse @spreadsheet_thousands.csv --one-sample income --thousands ,", 0,
     "continuous: income"},
    {"analyse @spreadsheet_percent.csv --one-sample share", 2, "numbers with percent signs"},
    {"analyse @spreadsheet_currency.csv --one-sample price", 2, "numbers with currency signs"},
    {"analyse @swiss.csv --one-sample people", 2, "add --thousands \"'\""},
    {"analyse @swiss.csv --one-sample people --thousands apostrophe", 0, "continuous: people"},
    {"analyse @matlab.csv --related x,y", 0, "npar: x: 1 of 6 cells is missing: 1 \"NaN\"\n"},
    {"analyse @matlab.csv --related x,y", 0, "npar: y: 1 of 6 cells holds an infinity"},
    {"analyse @missing_by_sign.csv --related a,b", 0,
     "npar: a: 2 of 6 cells are missing: 1 \"-\" and 1 \"*\"\n"},
    {"analyse @missing_by_sign.csv --one-sample mark", 0, "inferred: nominal: mark\n"},
    {"analyse @missing_by_code.csv --related before,after --missing-token -99", 0,
     "npar: after: 1 of 6 cells is missing: 1 \"-99\"\n"},
    {"analyse @stray_cell.csv --one-sample score", 2,
     "stray_cell.csv:4:3: score: could only be nominal, since 1 of 5 cells is no number, first "
     "line 4: \"n.d.\"; correct the cell, or add --missing-token \"n.d.\""},
    {"analyse @stray_cell.csv --one-sample score --nominal score", 0, ""},
    {"analyse @stray_cells.csv --one-sample score", 0,
     "score: nominal, since 2 of 6 cells are no numbers, first line 3: \"refused\""},
    {"analyse @blanks.csv --independent age --by sex", 0, "continuous: age; nominal: sex\n"},
    {"analyse @pipes.csv --one-sample age", 2, "if \"|\" divides fields, add --separator '|'"},
    {"analyse @pipes.csv --one-sample age --separator pipe", 0, "continuous: age"},
    {"analyse @likert.csv --related item,group --test marginal-homogeneity", 1,
     "; --ordinal 'group="},
    {"analyse @wide.csv --related x1-x3 --test sign", 1, "; name 2 of them in a call of its own"},
    {"analyse @latin1.csv --one-sample ort", 2, "latin1.csv:2:1: the text is not UTF-8"},
    {"analyse @latin1.csv --one-sample ort --encoding latin1", 0, "nominal: ort"},
    {"describe @latin1.csv --encoding latin1", 0, "2 categories: Köln (2), München (1)"},
    {"describe examples/airquality.csv", 0, " --independent Ozone --by Month\n"},
    {"describe @utf16.csv", 0, "2 categories: Köln (2), München (1)"},
    {"analyse @titled.csv --one-sample answer --weight n", 2,
     "if it is a title, pass it over with --skip 1"},
    {"analyse @titled.csv --one-sample answer --weight n --skip 1 --comment #", 0,
     "nominal: answer"},
    {"analyse @two_numbers.csv --related smokes,quit", 0, "inferred: nominal: smokes, quit\n"},
    {"analyse @two_numbers.csv --related smokes,quit,age", 0,
     "inferred: continuous: smokes, quit, age\n"},
    {"analyse @two_numbers.csv --one-sample smokes --test wilcoxon", 0, "continuous: smokes\n"},
    {"analyse @likert.csv --independent item --by group", 3, "get numbers by --scores 'item="},
    {"analyse @likert.csv --independent item --by group --scores item=Never<Sometimes<Often", 0,
     "inferred: nominal: group\n"},
    {"analyse @likert.csv --one-sample item --scores item=Never=0,Sometmes=2.5,Often=4", 2,
     "holds \"Sometimes\", which has no score; did you mean \"Sometmes\"?"},
    {"analyse @likert.csv --one-sample item --ordinal item=Never<Somtimes<Often", 2,
     "names \"Somtimes\", which the field does not hold; did you mean \"Sometimes\"?"},
    {"analyse @spelling.csv --independent score --by sex --test "
     "mann-whitney:group1=Male,group2=Female",
     0, "sex: \"Male\" and \"male\" differ only by case or spaces"},
    {"analyse @spelling.csv --independent score --by sex --test "
     "mann-whitney:group1=Mal,group2=Female",
     2, "names \"Mal\", which sex does not hold; did you mean \"Male\"?"},
    {"analyse @long.csv --long subject,time,pain", 0,
     "1 value is missing, having no record: subject 4 at after\n"},
    {"analyse @long_twice.csv --long subject,time,pain", 2,
     "long_twice.csv:4:1: subject 1 at before has a record already, at "},
    {"analyse @wide.csv --related x1-x3", 0, "continuous: x1, x2, x3\n"},
    {"analyse @wide.csv --one-sample \"height,_cm\"", 0, "continuous: height, cm\n"},
    {"analyse @packed.csv.gz --related a,b", 0, "continuous: a, b\n"},
    {"analyse @packed.csv.zst --related a,b", 0, "continuous: a, b\n"},
    {"analyse @packed_in_part.csv.gz --related a,b", 2, "the compressed data are damaged or end"},
    {"analyse @sheet.xlsx --one-sample a", 2,
     "this is an Excel file; the Python package reads it: npar.read_excel(\"test/"},
    {"analyse @table.parquet --one-sample a", 2, "pandas.read_parquet(\"test/corpus/table.parquet"},
    {"analyse @study.sav --one-sample a", 2,
     "npar.read_sav(\"test/corpus/study.sav\"); or turn it into CSV, with"},
    {"analyse @archive.zip --one-sample a", 2, "unzip -p test/corpus/archive.zip | npar analyse -"},
    {"analyse @picture.bin --one-sample a", 2, "this is no text; "},
};

TEST(CorpusTest, EachFileIsReadOrItsRemedyNamed) {
  for (const CorpusCase& row : kCases) {
    SCOPED_TRACE(row.command);
    std::istringstream words(row.command);
    std::vector<std::string> arguments{NPAR_BUILD_DIR "/bin/npar"};
    for (std::string word; words >> word;) {
      if (word.starts_with('@')) word = "test/corpus/" + word.substr(1);
      const bool isQuoted = word.starts_with('"');
      for (char& c : word) c = isQuoted && c == '_' ? ' ' : c;
      arguments.push_back(word);
    }
    const ProcessResult run = RunProcess(arguments);
    EXPECT_EQ(run.exitCode, row.exitCode) << run.err;
    EXPECT_THAT(arguments[1] == "describe" ? run.out : run.err, HasSubstr(row.says));
    EXPECT_TRUE(run.exitCode != 2 || run.out.empty());
  }
}

}  // namespace
