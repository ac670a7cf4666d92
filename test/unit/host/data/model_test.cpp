#include "host/data/model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/data/input_error.h"
#include "support/process.h"

namespace {

using namespace npar_host;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

ModelledData Load(const std::string& csv, const std::string& fields = "") {
  const TemporaryFile file(csv);
  CsvReader reader(file.Path());
  return LoadData(reader, ParseModel("<DataModel>\n" + fields + "\n</DataModel>", "model.xml"));
}

/// The model document of the data, a line for each field, without the frame.
std::string ModelOf(const std::string& csv, const std::string& fields = "") {
  return WriteModel(Load(csv, fields).model);
}

std::string ErrorOf(const std::string& csv, const std::string& fields) {
  try {
    static_cast<void>(Load(csv, fields));
  } catch (const InputError& error) {
    return error.what();
  }
  return "none";
}

std::vector<std::string> CategoriesOf(const std::string& csv, const std::string& fields,
                                      std::size_t field = 0) {
  const ModelledData loaded = Load(csv, fields);
  std::vector<std::string> texts;
  for (const Category& category : loaded.model.fields[field].categories) {
    texts.push_back(category.text);
  }
  return texts;
}

TEST(ModelTest, WhatIsLeftOutIsInferred) {
  EXPECT_EQ(ModelOf("n,t,empty,late\n1,b,,1\n-2.5,a,NA,x\n,ä,,\n"),
            R"(<?xml version="1.0"?>
<DataModel>
 <Field name="n" measure="continuous" storage="real" role="input" />
 <Field name="t" measure="nominal" storage="string" role="input">
  <Value value="a" />
  <Value value="b" />
  <Value value="ä" />
 </Field>
 <Field name="empty" measure="continuous" storage="real" role="input" />
 <Field name="late" measure="nominal" storage="string" role="input">
  <Value value="1" />
  <Value value="x" />
 </Field>
</DataModel>
)");
}

TEST(ModelTest, CategoriesAreThoseListedThenOthersInOrder) {
  const std::string csv = "f\n10\n9\n-0\n0\n2.50\n10\nNA\nnan\ninf\n";
  const auto nominal = [](const std::string& inside) {
    return "<Field name='f' measure='nominal'" + inside;
  };
  // Numbers ascending; 0 and -0 are one, not-a-number and infinity none.
  EXPECT_THAT(CategoriesOf(csv, nominal("/>")), ElementsAre("0", "2.5", "9", "10"));
  // A listed number keeps its spelling, and is found in the data by its value.
  EXPECT_THAT(CategoriesOf(csv, nominal("><Value value='10.0'/><Value value='7'/></Field>")),
              ElementsAre("10.0", "7", "0", "2.5", "9"));
  // As texts, by bytes, each spelling by itself.
  EXPECT_THAT(CategoriesOf(csv, nominal(" storage='string'/>")),
              ElementsAre("-0", "0", "10", "2.50", "9", "inf"));
  // A listed text makes all of them texts.
  EXPECT_THAT(CategoriesOf(csv, nominal("><Value value='none'/></Field>")),
              ElementsAre("none", "-0", "0", "10", "2.50", "9", "inf"));
  EXPECT_THAT(CategoriesOf("f\nb\nB\na\n", nominal("><Value value='b'/></Field>")),
              ElementsAre("b", "B", "a"));
}

TEST(ModelTest, CodesOfCellsFollowTheCategories) {
  const ModelledData loaded = Load("f,g\nlow,3\nhigh,1\nmid,3\n",
                                   "<Field name='f' measure='ordinal'><Value value='mid'/></Field>"
                                   "<Field name='g' measure='nominal'/>");
  // Cells are numbered by first appearance: low 0, high 1, mid 2, and 3 0, 1 1.
  EXPECT_EQ(loaded.model.fields[0].codeOfCell, (std::vector<std::int32_t>{2, 1, 0}));
  EXPECT_EQ(loaded.model.fields[1].codeOfCell, (std::vector<std::int32_t>{1, 0}));
  EXPECT_EQ(loaded.data.columns[0].Cell(2), 2.0);
  EXPECT_EQ(loaded.data.columns[1].Cell(2), 0.0);
}

TEST(ModelTest, MomentsBecomeNumbersWithReadableLabels) {
  const ModelledData loaded =
      Load("d,t,s,c\n2024-02-29,01:00,1970-01-02,1970-01-02\nNA,,,1970-01-01\n",
           "<Field name='d' storage='date'/><Field name='t' storage='time'/>"
           "<Field name='s' storage='timestamp'/><Field name='c' measure='ordinal' storage='date'>"
           "<Value value='1970-01-03' label='last'/></Field>");
  EXPECT_EQ(loaded.data.columns[0].Cell(0), 19782.0);
  EXPECT_EQ(loaded.data.columns[1].Cell(0), 3600.0);
  EXPECT_EQ(loaded.data.columns[2].Cell(0), 86400.0);
  EXPECT_THAT(WriteModel(loaded.model),
              HasSubstr("<Field name=\"c\" measure=\"ordinal\" storage=\"date\" role=\"input\">\n"
                        "  <Value value=\"2\" label=\"last\" />\n"
                        "  <Value value=\"0\" label=\"1970-01-01\" />\n"
                        "  <Value value=\"1\" label=\"1970-01-02\" />\n"));
}

TEST(ModelTest, RolesDecideHowAColumnIsKept) {
  const ModelledData loaded =
      Load("id,x,n\np1,junk,2\np2,9,3\n",
           "<Field name='id' measure='continuous' role='caseId'/><Field name='x' role='none'/>"
           "<Field name='n' measure='nominal' role='frequencyWeight'/>");
  EXPECT_EQ(WriteModel(loaded.model),
            R"(<?xml version="1.0"?>
<DataModel>
 <Field name="id" measure="continuous" storage="integer" role="caseId" />
 <Field name="n" measure="continuous" storage="real" role="frequencyWeight" />
</DataModel>
)");
  EXPECT_TRUE(loaded.model.fields[0].isNumbered);
  EXPECT_FALSE(Load("id\n7\n", "<Field name='id' role='caseId'/>").model.fields[0].isNumbered);
}

TEST(ModelTest, AWrittenModelReadsBack) {
  const std::string csv = "f,g\n\"a \"\"<&>\n\ty\",1\nb,2\n";
  const std::string fields =
      "<Field name='f' label='&lt;&quot;;&#10;' measure='ordinal'><Value value='b' label='B'"
      " missing='user'/></Field><Field name='g' measure='other' storage='integer'/>";
  const std::string document = ModelOf(csv, fields);
  const TemporaryFile file(csv);
  CsvReader reader(file.Path());
  const TemporaryFile modelFile(document);
  EXPECT_EQ(WriteModel(LoadData(reader, ReadModel(modelFile.Path())).model), document);
  EXPECT_THAT(document, HasSubstr("value=\"b\" label=\"B\" missing=\"user\""));
}

TEST(ModelTest, ErrorsSayWhereAndWhatToDo) {
  const struct {
    const char* catches;
    const char* fields;
    const char* error;  // beginning
  } kCases[] = {
      {"near miss", "<Field name='scroe'/>",
       "model.xml:2:1: the data has no field \"scroe\"; did you mean \"score\"?; take a name"},
      {"no near miss", "<Field name='weight'/>",
       "model.xml:2:1: the data has no field \"weight\"; take a name"},
      {"twice", "<Field name='t'/>\n <Field name='t'/>", "model.xml:3:2: field \"t\" stands twice"},
      {"no name", "<Field/>", "model.xml:2:1: \"Field\" has no attribute \"name\"; add it"},
      {"word", "<Field name='t' measure='nominl'/>",
       "model.xml:2:1: measure is \"nominl\"; take one of continuous, ordinal, nominal, other"},
      {"attribute", "<Field name='t' lable='x'/>",
       "model.xml:2:1: \"Field\" has the unknown attribute \"lable\"; did you mean \"label\"?"},
      {"attribute twice", "<Field name='t' name='t'/>",
       "model.xml:2:1: attribute \"name\" stands twice"},
      {"element", "<Variable name='t'/>", "model.xml:2:1: element \"Variable\" has no place here"},
      {"element in a field", "<Field name='t'><Category value='a'/></Field>",
       "model.xml:2:17: element \"Category\" has no place here"},
      {"text", "x<Field name='t'/>", "model.xml:2:1: text has no place here"},
      {"content of a value", "<Field name='t'><Value value='a'>b</Value></Field>",
       "model.xml:2:34: a value has no content"},
      {"not well-formed", "<Field name='t'>", "model.xml:3:"},
      {"continuous texts", "<Field name='t' measure='continuous' storage='string'/>",
       "model.xml:2:1: field \"t\" is to hold numbers and has the storage \"string\""},
      {"two weights",
       "<Field name='t' role='frequencyWeight'/><Field name='score' role='frequencyWeight'/>",
       "model.xml:2:41: a second field has this role"},
      {"two case identifiers", "<Field name='t' role='caseId'/><Field name='score' role='caseId'/>",
       "model.xml:2:32: a second field has this role"},
      {"missing word", "<Field name='t'><Value value='a' missing='yes'/></Field>",
       "model.xml:2:17: missing is \"yes\"; take user"},
      {"value twice",
       "<Field name='t' measure='nominal'><Value value='a'/><Value value='a'/></Field>",
       "model.xml:2:53: value \"a\" stands twice; list it once"},
      {"number twice in two spellings",
       "<Field name='score' measure='nominal'><Value value='1'/><Value value='1.0'/></Field>",
       "model.xml:2:57: value \"1.0\" stands twice"},
      {"text listed for numbers",
       "<Field name='score' measure='nominal' storage='real'><Value value='a'/></Field>",
       "model.xml:2:54: value \"a\" is no number"},
      {"user-missing text of a continuous field",
       "<Field name='score' measure='continuous'><Value value='a' missing='user'/></Field>",
       "model.xml:2:42: value \"a\" is no number"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.catches);
    EXPECT_THAT(ErrorOf("score,t\n1,x\n", row.fields), StartsWith(row.error));
  }
  // With a walk over the text for each value this takes minutes.
  constexpr int kValues = 100000;
  std::string values = "<Field name='t' measure='nominal'>";
  for (int i = 0; i < kValues; ++i) {
    values.append("<Value value='\xC3\xA9").append(std::to_string(i)).append("'/>\n");
  }
  values +=
      "<Value value='\xC3\xA9'/><Value value='\xC3\xA9"
      "7'/></Field>";
  EXPECT_THAT(ErrorOf("score,t\n1,x\n", values), StartsWith("model.xml:100002:19: value"));
  EXPECT_THAT(ErrorOf("score,t\n1,x\n", "<Field name='t' measure='continuous'/>"),
              HasSubstr(":2:3: field \"t\" holds numbers, but this cell is \"x\""));
  EXPECT_THROW(static_cast<void>(ParseModel("<Parameters/>", "m")), InputError);
  EXPECT_THROW(static_cast<void>(ParseModel("", "m")), InputError);
  EXPECT_THROW(static_cast<void>(ReadModel("/nowhere/at/all.xml")), InputError);
}

}  // namespace
