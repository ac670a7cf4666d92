#include "host/requirements/requirements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "host/data/input_error.h"
#include "host/data/number.h"
#include "support/process.h"

namespace {

using namespace npar_host;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

using Encoding = Requirements::Encoding;

PreparedData PrepareText(const std::string& csv, const std::string& fields,
                         const Requirements& requirements) {
  const TemporaryFile file(csv);
  CsvReader reader(file.Path());
  return Prepare(requirements,
                 LoadData(reader, ParseModel("<DataModel>" + fields + "</DataModel>", "model")));
}

/// The records as the component gets them: values divided by a blank, "?" for the missing value of
/// a continuous field.
std::vector<std::string> Rows(const PreparedData& prepared) {
  std::vector<std::string> rows;
  std::vector<double> record(prepared.records.Width());
  for (std::size_t next = 0; prepared.records.Read(next, 1, record.data()) == 1;) {
    std::string& text = rows.emplace_back();
    for (std::size_t i = 0; i < record.size(); ++i) {
      const double value = record[i];
      text += (i > 0 ? " " : "") + (value == kMissingNumber ? "?" : NumberText(value));
    }
  }
  return rows;
}

std::vector<std::int64_t> Counts(const PreparedData& prepared) {
  const RecordCounts& counts = prepared.counts;
  return {counts.kept, counts.weighted, counts.dropped, counts.badWeight, counts.weightedDropped};
}

TEST(RequirementsTest, TheDocumentIsReadAsComponentsWriteIt) {
  const Requirements requirements = ParseRequirements(
      R"(<Execution><Operation id="1" componentId="Missing" moduleId="MissingModule" inputIds="" dependencyIds="">
<Parameters><Parameter name="ExcludeUMissField"><ListValue><Value value="a"/><Value value="id"/></ListValue></Parameter>
<Parameter name="WeightFeild"><StructuredValue><Attribute name="Field_Name" value="n"/><Attribute name="FreqWeightAdj" value="Round"/></StructuredValue></Parameter>
<Parameter name="ListwiseDelete"><ListValue><Value value="n"/></ListValue></Parameter></Parameters></Operation>
<Operation id="2" componentId="Encoding" moduleId="EncodingModule" inputIds="" dependencyIds="">
<Parameters><Parameter name="RequiredFields"><ListValue>
<StructuredValue><Attribute name="Field_Name" value="a"/><Attribute name="CatEncode" value="Ordinal"/></StructuredValue>
<StructuredValue><Attribute name="Field_Name" value="n"/><Attribute name="CatEncode" value="None"/></StructuredValue>
</ListValue></Parameter></Parameters></Operation></Execution>)");
  EXPECT_THAT(requirements.excludeUserMissing, ElementsAre("a", "id"));
  EXPECT_EQ(requirements.weightField, "n");
  EXPECT_TRUE(requirements.roundWeight);
  EXPECT_THAT(requirements.listwiseDelete, ElementsAre("n"));
  ASSERT_EQ(requirements.requiredFields.size(), 2U);
  EXPECT_EQ(requirements.requiredFields[0].name, "a");
  EXPECT_EQ(requirements.requiredFields[0].encoding, Encoding::Ordinal);
  EXPECT_EQ(requirements.requiredFields[1].encoding, Encoding::None);
}

TEST(RequirementsTest, WhatTheHostCannotDoIsRefused) {
  for (const char* text :
       {"", "<Execution", "<Other/>", "<Execution><Operation componentId='Sort'/></Execution>",
        "<Execution><Operation componentId='Missing'><Parameters><Parameter name='Impute'/>"
        "</Parameters></Operation></Execution>",
        "<Execution><Operation componentId='Encoding'><Parameters><Parameter name='RequiredFields'>"
        "<ListValue><StructuredValue/></ListValue></Parameter></Parameters></Operation>"
        "</Execution>"}) {
    EXPECT_THROW(static_cast<void>(ParseRequirements(text)), InputError) << text;
  }
  Requirements unknown;
  unknown.listwiseDelete = {"y"};
  EXPECT_THROW(static_cast<void>(PrepareText("x\n1\n", "", unknown)), InputError);
}

TEST(RequirementsTest, WeightsAreRoundedAwayFromZeroAndBadOnesDropped) {
  Requirements requirements;
  requirements.weightField = "n";
  requirements.roundWeight = true;
  const std::string csv =
      "x,n\n1,0.4999\n2,0.5\n3,2.5\n4,-1\n5,NA\n6,nan\n7,0\n8,1.49\n9,3000000000";
  const std::string fields = "<Field name='n' role='frequencyWeight'/>";
  const PreparedData rounded = PrepareText(csv, fields, requirements);
  // A weight too large for the component passes: it is the component's to refuse.
  EXPECT_THAT(Rows(rounded), ElementsAre("2 1", "3 3", "8 1", "9 3000000000"));
  EXPECT_THAT(Counts(rounded), ElementsAre(4, 3000000005, 0, 5, 0));

  requirements.roundWeight = false;
  const PreparedData asIs = PrepareText(csv, fields, requirements);
  EXPECT_THAT(Rows(asIs), ElementsAre("3 2.5", "8 1.49", "9 3000000000"));
  EXPECT_THAT(Counts(asIs), ElementsAre(3, 3000000003, 0, 6, 0));  // weights truncated in sums

  requirements.weightField.clear();
  EXPECT_THAT(Counts(PrepareText(csv, fields, requirements)), ElementsAre(9, 9, 0, 0, 0));
}

TEST(RequirementsTest, SumsOfHugeWeightsStayAtTheirEnd) {
  Requirements requirements;
  requirements.weightField = "n";
  EXPECT_THAT(Counts(PrepareText("n\n1e18\ninf\n1e19\n", "", requirements)),
              ElementsAre(3, INT64_MAX, 0, 0, 0));
}

TEST(RequirementsTest, RecordsAreDroppedListwiseAfterBadWeights) {
  Requirements requirements;
  requirements.weightField = "n";
  requirements.roundWeight = true;
  requirements.listwiseDelete = {"x", "g", "n"};
  const PreparedData prepared =
      PrepareText("x,g,y,n\n1,a,1,2\n,a,2,3\n3,,3,4\n4,b,NA,5\n,,5,0\n6,b,6,\n", "", requirements);
  // y is not asked for; the last two are bad weights first, whatever else they miss.
  EXPECT_THAT(Rows(prepared), ElementsAre("1 0 1 2", "4 1 ? 5"));
  EXPECT_THAT(Counts(prepared), ElementsAre(2, 7, 2, 2, 7));
}

TEST(RequirementsTest, UserMissingValuesAreMissingOnlyWhereExcluded) {
  const std::string csv = "x,g,h,k\n9,a,a,1\n1,b,b,9\n2,c,c,2\n";
  const std::string user = "<Value value='9' missing='user'/>";
  const std::string values = "<Value value='c'/><Value value='b' missing='user'/>";
  const std::string fields = "<Field name='x' measure='continuous'>" + user +
                             "</Field><Field name='g'>" + values + "</Field><Field name='h'>" +
                             values + "</Field><Field name='k' measure='nominal'>" + user +
                             "</Field>";
  const PreparedData kept = PrepareText(csv, fields, {});
  EXPECT_THAT(Rows(kept), ElementsAre("9 2 2 1", "1 1 1 0", "2 0 0 2"));
  EXPECT_THAT(kept.modelText, HasSubstr("<Value value=\"b\" />"));  // a category like others

  Requirements requirements;
  requirements.excludeUserMissing = {"x", "g", "k"};
  const PreparedData excluded = PrepareText(csv, fields, requirements);
  EXPECT_THAT(Rows(excluded), ElementsAre("? 1 2 0", "1 -1 1 -1", "2 0 0 1"));
  EXPECT_EQ(excluded.model.fields[1].categories.size(), 2U);

  requirements.listwiseDelete = {"x", "g"};
  EXPECT_THAT(Counts(PrepareText(csv, fields, requirements)), ElementsAre(1, 1, 2, 0, 2));
}

TEST(RequirementsTest, ATextCaseIdentifierIsDeliveredAsRecordNumber) {
  const std::string csv = "id,x\nanna,1\n,2\nben,NA\nanna,4\nunknown,5\n";
  Requirements requirements;
  requirements.listwiseDelete = {"x", "id"};
  requirements.excludeUserMissing = {"id"};
  requirements.requiredFields = {{"x", Encoding::None}, {"id", Encoding::None}};
  for (const char* role : {" role='caseId'", ""}) {  // by the model, or only by the requirements
    SCOPED_TRACE(role);
    const PreparedData prepared = PrepareText(
        csv,
        std::string("<Field name='id'") + role + "><Value value='unknown' missing='user'/></Field>",
        requirements);
    EXPECT_THAT(Rows(prepared), ElementsAre("1 1", "4 4"));
    EXPECT_EQ(prepared.CaseText(1), "anna");
    EXPECT_EQ(prepared.CaseText(2), "");
    EXPECT_EQ(prepared.CaseText(3), "ben");
    EXPECT_EQ(prepared.CaseText(0), "");
    EXPECT_EQ(prepared.CaseText(6), "");
    EXPECT_EQ(prepared.CaseText(std::nan("")), "");
    EXPECT_THAT(prepared.modelText,
                HasSubstr("<Field name=\"id\" measure=\"continuous\" storage=\"integer\""));
  }
  // Tested and case identifier in one: the codes stay.
  requirements.requiredFields.insert(requirements.requiredFields.begin(),
                                     {"id", Encoding::Nominal});
  EXPECT_THAT(Rows(PrepareText(csv, "", requirements)), ElementsAre("0 1", "0 4", "2 5"));
}

TEST(RequirementsTest, ANumericCaseIdentifierKeepsItsNumbers) {
  Requirements requirements;
  requirements.requiredFields = {{"id", Encoding::None}};
  const PreparedData prepared =
      PrepareText("id\n30\n10\nNA\n", "<Field name='id' measure='nominal'/>", requirements);
  EXPECT_THAT(Rows(prepared), ElementsAre("30", "10", "?"));
  EXPECT_EQ(prepared.CaseText(1), "");
}

TEST(RequirementsTest, TheModelOfThePreparedRecordsCarriesCountsAndCategories) {
  Requirements requirements;
  requirements.listwiseDelete = {"x"};
  const PreparedData prepared = PrepareText("x,g\n1,b\nNA,a\n", "", requirements);
  EXPECT_EQ(prepared.modelText, R"(<?xml version="1.0"?>
<DataModel recordCount="1" weightedCount="1" droppedCount="1" badWeightCount="0" weightedDroppedCount="1">
 <Field name="x" measure="continuous" storage="real" role="input" />
 <Field name="g" measure="nominal" storage="string" role="input">
  <Value value="a" />
  <Value value="b" />
 </Field>
</DataModel>
)");
}

TEST(RequirementsTest, AColumnWithoutAnyValueIsMissingThroughout) {
  EXPECT_THAT(Rows(PrepareText("g,h\nNA,1\n,2\n", "<Field name='g' measure='nominal'/>", {})),
              ElementsAre("-1 1", "-1 2"));
}

}  // namespace
