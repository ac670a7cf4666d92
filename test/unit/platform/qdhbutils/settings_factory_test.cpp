#include <gmock/gmock.h>

#include "foundation/peer.h"
#include "support/recording_host.h"

namespace {

using QDXML_700::QDSettings;

std::string ProblemOf(const std::string& text) {
  RecordingHost host;
  QDSettings settings;
  std::string problem;
  std::int32_t err = 0;
  const std::uint32_t result = QDSettingsFactory::MakeModelSettings(
      HbHelperV1::XMLDocument(host.Document(text)), settings, &err, &problem);
  EXPECT_EQ(result, problem.empty() ? HB_OK : HB_FAILED);
  EXPECT_EQ(err, problem.empty() ? 0 : QDHB_700::kBadParameters);
  return problem;
}

TEST(QDSettingsFactory, DocumentBecomesTreeInItsOrder) {
  RecordingHost host;
  QDSettings settings;
  std::int32_t err = 0;
  ASSERT_EQ(
      QDSettingsFactory::MakeModelSettings(HbHelperV1::XMLDocument(host.Document(R"(<Parameters>
    <Parameter name="sigLevel" value="0.01"/>
    <Parameter name="fields"><ListValue><Value value="a;b"/><Value value=""/></ListValue></Parameter>
    <Parameter name="none"><ListValue/></Parameter>
    <Parameter name="OChiSquare"><StructuredValue>
      <Attribute name="isSelected" value="true"/>
      <Attribute name="custom"><ListValue>
        <StructuredValue><Attribute name="expectedValue" value="2"/></StructuredValue>
        <StructuredValue/>
      </ListValue></Attribute>
    </StructuredValue></Parameter></Parameters>)")),
                                           settings, &err),
      HB_OK);
  std::vector<std::string> names;
  settings.GetSettingNames(names);
  EXPECT_THAT(names, testing::ElementsAre("sigLevel", "fields", "none", "OChiSquare"));
  double level = 0.0;
  EXPECT_TRUE(settings.GetSettingValByName("sigLevel", level));
  EXPECT_EQ(level, 0.01);
  std::vector<std::string> fields;
  EXPECT_TRUE(settings.GetSettingValByName("fields", fields));
  EXPECT_THAT(fields, testing::ElementsAre("a;b", ""));
  EXPECT_TRUE(settings.GetSettingValByName("none", fields));
  EXPECT_THAT(fields, testing::IsEmpty());
  QDSettings test;
  ASSERT_TRUE(settings.GetSettingValByName("OChiSquare", test));
  bool isSelected = false;
  EXPECT_TRUE(test.GetSettingValByName("isSelected", isSelected));
  EXPECT_TRUE(isSelected);
  std::vector<QDSettings> custom;
  ASSERT_TRUE(test.GetSettingValByName("custom", custom));
  ASSERT_EQ(custom.size(), 2u);
  std::int32_t expected = 0;
  EXPECT_TRUE(custom[0].GetSettingValByName("expectedValue", expected));
  EXPECT_EQ(expected, 2);
  EXPECT_EQ(custom[1].Size(), 0u);
}

TEST(QDSettingsFactory, RefusesWhatItDoesNotUnderstandWithThePlace) {
  struct Case {
    const char* text;
    const char* problem;
  };
  const Case kCases[] = {
      {"<Parameter/>", "line 1, column 1: unknown element 'Parameter'"},
      {"<Parameters v='1'/>", "line 1, column 1: unexpected attribute 'v'"},
      {"<Parameters>x</Parameters>", "line 1, column 1: unexpected text"},
      {"<Parameters>\n<Setting/></Parameters>", "line 2, column 1: unknown element 'Setting'"},
      {"<Parameters><Parameter value='1'/></Parameters>",
       "line 1, column 13: attribute 'name' is missing"},
      {"<Parameters><Parameter name='a'/></Parameters>",
       "line 1, column 13: 'a' needs either a value or one child"},
      {"<Parameters><Parameter name='a' value='1'><ListValue/></Parameter></Parameters>",
       "line 1, column 13: 'a' needs either a value or one child"},
      {"<Parameters><Parameter name='a'><ListValue/><ListValue/></Parameter></Parameters>",
       "line 1, column 45: unknown element 'ListValue'"},
      {"<Parameters><Parameter name='a'><Value value='1'/></Parameter></Parameters>",
       "line 1, column 33: unknown element 'Value'"},
      {"<Parameters><Parameter name='a'><ListValue><Value/></ListValue></Parameter></Parameters>",
       "line 1, column 44: attribute 'value' is missing"},
      {"<Parameters><Parameter name='a'><ListValue><Value value='1'/><StructuredValue/>"
       "</ListValue></Parameter></Parameters>",
       "line 1, column 62: unknown element 'StructuredValue'"},
      {"<Parameters><Parameter name='a'><StructuredValue><Parameter name='b' value='1'/>"
       "</StructuredValue></Parameter></Parameters>",
       "line 1, column 50: unknown element 'Parameter'"},
      {"<Parameters><Parameter name='a'><ListValue><Value value='1'><b/></Value></ListValue>"
       "</Parameter></Parameters>",
       "line 1, column 61: unknown element 'b'"},
  };
  for (const Case& row : kCases) EXPECT_EQ(ProblemOf(row.text), row.problem) << row.text;
  EXPECT_THAT(ProblemOf("<Parameters>"), testing::StartsWith("line 1, column 12: "));
}

}  // namespace
