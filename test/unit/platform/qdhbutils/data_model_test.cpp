#include <gmock/gmock.h>

#include <cmath>

#include "foundation/peer.h"
#include "support/recording_host.h"

namespace {

using QDHB_700::DataModelParser;
using QDHB_700::InputAdapter;
using QDXML_700::QDCatVar;
using QDXML_700::StorageKind;
using QDXML_700::VariableKind;

constexpr char kModel[] = R"(<DataModel recordCount="12" weightedCount="40" droppedCount="3"
    badWeightCount="2" weightedDroppedCount="7">
  <Field name="score" label="Test score" measure="continuous"/>
  <Field name="skipped" role="none"/>
  <Field name="grade" measure="ordinal" storage="integer">
    <Value value="3" label="Low"/><Value value="99" missing="user"/><Value value="1"/></Field>
  <Field name="region" measure="nominal"><Value value="n"/><Value value=""/></Field>
  <Field name="note" measure="other"/>
  <Field name="n" role="frequencyWeight"/>
  <Field name="id" storage="string" role="caseId"/>
</DataModel>)";

struct Reading {
  explicit Reading(const std::string& text, bool withCounts = true) {
    RecordingHost host;
    isRead = parser.Parse(HbHelperV1::XMLDocument(host.Document(text)), withCounts, problem);
  }
  DataModelParser parser;
  std::string problem;
  bool isRead = false;
};

std::vector<std::string> NamesOf(InputAdapter& adapter) {
  std::vector<std::string> names;
  std::int32_t err = 0;
  EXPECT_TRUE(adapter.BuildVarlist(&err));
  for (std::int32_t i = 0; i < adapter.GetVarList().Size(); ++i) {
    names.push_back(adapter.GetVarList().GetVarAt(i)->GetName());
  }
  return names;
}

TEST(DataModel, FieldsBecomeVariablesInTheirOrder) {
  const Reading model(kModel);
  ASSERT_TRUE(model.isRead) << model.problem;
  InputAdapter adapter(nullptr, &model.parser, false, false, false, true, true);
  EXPECT_THAT(NamesOf(adapter),
              testing::ElementsAre("score", "grade", "region", "note", "n", "id"));
  const auto& list = adapter.GetVarList();
  EXPECT_EQ(list.GetFreqWeightVariable(), 4);
  EXPECT_EQ(list.GetVarAt(0)->GetType(), VariableKind::Continuous);
  EXPECT_EQ(list.GetVarAt(0)->GetLabel(), "Test score");
  EXPECT_EQ(list.GetVarAt(1)->GetType(), VariableKind::NumericCategory);
  EXPECT_EQ(list.GetVarAt(1)->GetFieldIndex(), 2) << "a field without role still has a column";
  EXPECT_EQ(list.GetVarAt(2)->GetType(), VariableKind::StringCategory);
  EXPECT_EQ(list.GetVarAt(3)->GetType(), VariableKind::Other);
  EXPECT_TRUE(list.GetVarAt(5)->IsCaseId());
  EXPECT_EQ(list.GetVarAt(5)->GetStorageKind(), StorageKind::String);
  EXPECT_TRUE(dynamic_cast<const QDCatVar&>(*list.GetVarAt(1)).GetOrdinalFlag());
  EXPECT_FALSE(dynamic_cast<const QDCatVar&>(*list.GetVarAt(2)).GetOrdinalFlag());

  const auto& grades = *list.GetVarAt(1)->GetCategories();
  ASSERT_EQ(grades.Size(), 2) << "a value that means missing is no category";
  EXPECT_EQ(grades.GetNumber(0), 3.0);
  EXPECT_EQ(grades.GetLabel(0), "Low");
  EXPECT_EQ(grades.FindNumber(1.0), 1);
  EXPECT_EQ(list.GetVarAt(2)->GetCategories()->GetText(1), "");
  EXPECT_TRUE(std::isnan(list.GetVarAt(2)->GetCategories()->GetNumber(0)));
}

TEST(DataModel, AdapterFlagsChooseFieldsAndCounts) {
  const Reading model(kModel);
  InputAdapter bare(nullptr, &model.parser, false, false, true, false, false);
  EXPECT_THAT(NamesOf(bare), testing::ElementsAre("score", "grade", "region", "id"))
      << "neither the weight nor what no test takes";
  EXPECT_EQ(bare.GetVarList().GetUnWeightedCount(), 0.0);
  InputAdapter all(nullptr, &model.parser, false, true, false, true, true);
  EXPECT_THAT(NamesOf(all),
              testing::ElementsAre("score", "skipped", "grade", "region", "note", "n", "id"));
  EXPECT_EQ(all.GetVarList().GetUnWeightedCount(), 12.0);
  EXPECT_EQ(all.GetVarList().GetWeightedCount(), 40.0);
  EXPECT_EQ(all.GetVarList().GetDroppedCount(), 3.0);
  EXPECT_EQ(all.GetVarList().GetBadWeightCount(), 2.0);
  EXPECT_EQ(all.GetVarList().GetWeightedDroppedCount(), 7.0);
}

TEST(DataModel, NoVariableIsNoList) {
  std::int32_t err = 0;
  for (const char* text :
       {"<DataModel/>", "<DataModel><Field name='a' role='none'/></DataModel>"}) {
    const Reading model(text, false);
    ASSERT_TRUE(model.isRead);
    EXPECT_FALSE(
        InputAdapter(nullptr, &model.parser, false, false, false, true, false).BuildVarlist(&err));
    EXPECT_EQ(err, QDHB_700::kBadDataModel);
  }
}

TEST(DataModel, RefusesWhatItDoesNotUnderstandWithThePlace) {
  struct Case {
    const char* text;
    const char* problem;
  };
  const Case kCases[] = {
      {"<Model/>", "line 1, column 1: unknown element 'Model'"},
      {"<DataModel records='1'/>", "line 1, column 1: unexpected attribute 'records'"},
      {"<DataModel recordCount='-1'/>", "line 1, column 1: attribute 'recordCount' cannot be '-1'"},
      {"<DataModel weightedCount='inf'/>",
       "line 1, column 1: attribute 'weightedCount' cannot be 'inf'"},
      {"<DataModel>\n <Feild/></DataModel>", "line 2, column 2: unknown element 'Feild'"},
      {"<DataModel><Field/></DataModel>", "line 1, column 12: attribute 'name' is missing"},
      {"<DataModel><Field name='a' type='x'/></DataModel>",
       "line 1, column 12: unexpected attribute 'type'"},
      {"<DataModel><Field name='a' measure='scale'/></DataModel>",
       "line 1, column 12: attribute 'measure' cannot be 'scale'"},
      {"<DataModel><Field name='a' storage='text'/></DataModel>",
       "line 1, column 12: attribute 'storage' cannot be 'text'"},
      {"<DataModel><Field name='a' role='weight'/></DataModel>",
       "line 1, column 12: attribute 'role' cannot be 'weight'"},
      {"<DataModel><Field name='a'><Value value='1' missing='no'/></Field></DataModel>",
       "line 1, column 28: attribute 'missing' cannot be 'no'"},
      {"<DataModel><Field name='a' measure='continuous' storage='string'/></DataModel>",
       "line 1, column 12: a continuous field cannot be stored as string"},
      {"<DataModel><Field name='a' role='frequencyWeight'/>"
       "<Field name='b' role='frequencyWeight'/></DataModel>",
       "line 1, column 52: a second field of role 'frequencyWeight'"},
      {"<DataModel><Field name='a'><Category/></Field></DataModel>",
       "line 1, column 28: unknown element 'Category'"},
      {"<DataModel><Field name='a'><Value/></Field></DataModel>",
       "line 1, column 28: attribute 'value' is missing"},
      {"<DataModel><Field name='a' measure='nominal' storage='integer'><Value value='x'/></Field>"
       "</DataModel>",
       "line 1, column 64: attribute 'value' cannot be 'x'"},
  };
  for (const Case& row : kCases) {
    const Reading model(row.text, false);
    EXPECT_FALSE(model.isRead);
    EXPECT_EQ(model.problem, row.problem) << row.text;
    EXPECT_EQ(model.parser.FieldCount(), 0u);
  }
  EXPECT_EQ(Reading("<DataModel recordCount='1'/>", true).problem,
            "line 1, column 1: attribute 'weightedCount' is missing");
}

}  // namespace
