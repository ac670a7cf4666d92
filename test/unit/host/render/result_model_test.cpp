#include "host/render/result_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

ResultDocument Read(const std::string& tests, const std::string& infos = "") {
  return ReadResultDocument(
      R"(<StatXML xmlns="urn:lyra:statxml:extension:7.0" version="1.0">
<PMMLModel modelID="7" modelType="NonParametricTests"><PredictiveSummary/></PMMLModel>
<DescriptiveModel modelID="7"><DescriptiveSummary><Counts totalFreq="12" totalCount="10"
 droppedCount="2" badWeightCount="1" droppedFreq="3"/></DescriptiveSummary></DescriptiveModel>
<Extension extender="lyra.example"><NPAROutput><Header copyright="c"><Application name="npar"
 version="1"/></Header><DataDictionary numberOfFields="2">
<DataField index="0" name="x" displayName="Score" optype="continuous" dataType="double"/>
<DataField index="1" name="g" optype="categorical" dataType="string">
<Value index="0" value="a" displayValue="A" property="valid"/>
<Value index="1" value="b" property="valid"/></DataField></DataDictionary>
<NonParametricTests number="1" sigLevel="0.01" confidenceLevel="0.9" missingTreatment="listwise">)" +
          tests + "</NonParametricTests><FieldInfos>" + infos +
          "</FieldInfos></NPAROutput></Extension></StatXML>",
      "r.xml");
}

TEST(ResultModelTest, ReadsTheRunAndItsFields) {
  const ResultDocument document =
      Read("", R"(<FieldInfo varIndex="1"><StructuredTable name="CategoricalDistribution">
<Attribute name="TotalN" value="12"/><SimpleTable name="Interval"><RowNames>count;value</RowNames>
<ColumnNames/><Row>5;7</Row><Row>0;1</Row></SimpleTable></StructuredTable></FieldInfo>)");
  EXPECT_EQ(document.totalFreq, 12.0);
  EXPECT_EQ(document.totalCount, 10.0);
  EXPECT_EQ(document.droppedCount, 2.0);
  EXPECT_EQ(document.badWeightCount, 1.0);
  EXPECT_EQ(document.droppedFreq, 3.0);
  EXPECT_EQ(document.sigLevel, 0.01);
  EXPECT_EQ(document.confidenceLevel, 0.9);
  EXPECT_TRUE(document.listwise);
  ASSERT_EQ(document.fields.size(), 2u);
  EXPECT_EQ(document.fields[0].Title(), "Score");
  EXPECT_EQ(document.fields[1].Title(), "g");
  EXPECT_TRUE(document.fields[1].isCategorical);
  EXPECT_EQ(document.fields[1].categories[0].label, "A");
  EXPECT_FALSE(document.fields[0].distribution);
  ASSERT_TRUE(document.fields[1].distribution);
  EXPECT_EQ(document.fields[1].distribution->bins[1].count, 7.0);
  EXPECT_EQ(document.fields[1].distribution->bins[1].value, 1.0);
}

TEST(ResultModelTest, ReadsEveryFormOfATest) {
  const ResultDocument document = Read(
      R"(<Algorithm name="IKruskalWallis" type="hypothesis_test" classification="Independent_Samples"
 decision="reject"><StructuredTable name="Condition"><Attribute name="ConditionKey" value="K"/>
<Attribute name="%0" value="0"/><Attribute name="%1" value="1"/></StructuredTable>
<StructuredTable name="ValsNotInTheCategoreis"><Attribute name="0" value="ghost"/></StructuredTable>
<StructuredTable name="WarningMessages"><StructuredTable name="Message">
<Attribute name="code" value="220013"/><Attribute name="type" value="warning"/>
<Attribute name="paramNum" value="1"/><Attribute name="%0" value="9"/>
<Attribute name="group" value="0;0"/></StructuredTable></StructuredTable>
<StructuredTable name="StatisticsResult"><Attribute name="TestStatistic" value="2.5"/>
<StructuredTable name="MinimumRuns"><Attribute name="TestStatistic" value="3"/></StructuredTable>
</StructuredTable><StructuredTable name="BoxPlotInfo"><Attribute name="GroupCount" value="2"/>
<StructuredTable name="Group0"><Attribute name="GroupIndex" value="1"/>
<Attribute name="MeanOfRank" value="4.5"/><SimpleTable name="Box"><RowNames/><ColumnNames/>
<Row>1;2;3;4;5</Row></SimpleTable><SimpleTable name="Outliers"><RowNames>Values;CaseID</RowNames>
<ColumnNames>1</ColumnNames><Row>9;8</Row><Row>17;18</Row></SimpleTable></StructuredTable>
</StructuredTable><StructuredTable name="Group0"><Attribute name="GroupIndex" value="0;1"/>
<Attribute name="N" value="20"/></StructuredTable>
<StructuredTable name="StepwiseResult"><SimpleTable name="StepwiseInfo"><RowNames/>
<ColumnNames>IndexOrder;Value</ColumnNames><Row>1;0</Row><Row>1.5;2.5</Row></SimpleTable>
<SimpleTable name="Content"><RowNames/><ColumnNames>FirstPosition;LastPosition;Sig</ColumnNames>
<Row>0;1;</Row></SimpleTable></StructuredTable>
<StructuredTable name="TwoClassComparison"><SimpleTable name="Content"><RowNames>0;1</RowNames>
<ColumnNames>0;1</ColumnNames><Row>1;2</Row><Row>3;4</Row></SimpleTable></StructuredTable>
</Algorithm>)");
  const ResultTest& test = document.tests.at(0);
  EXPECT_THAT(test.ConditionFields(1, 2), ElementsAre(1u));
  EXPECT_THAT(test.ConditionFields(1, 1), testing::IsEmpty());
  EXPECT_THAT(test.ConditionFields(2, 2), testing::IsEmpty());
  EXPECT_THAT(test.unknownValues, ElementsAre("ghost"));
  ASSERT_EQ(test.messages.size(), 1u);
  EXPECT_EQ(test.messages[0].code, 220013);
  EXPECT_THAT(test.messages[0].parameters, ElementsAre("9"));
  EXPECT_EQ(test.messages[0].namedParameters.at(0).second, "0;0");
  EXPECT_FALSE(test.Failed());
  ASSERT_EQ(test.statistics.size(), 2u);
  EXPECT_EQ(test.statistics[1].group, "MinimumRuns");
  ASSERT_NE(test.Statistic("TestStatistic"), nullptr);
  EXPECT_EQ(*test.Statistic("TestStatistic"), "2.5");
  EXPECT_EQ(test.Statistic("Sig"), nullptr);
  const ResultBoxPlot& plot = test.boxPlots.at(0);
  EXPECT_EQ(plot.code, 1);
  EXPECT_EQ(plot.meanRank, "4.5");
  EXPECT_THAT(plot.fiveNumbers, ElementsAre("1", "2", "3", "4", "5"));
  EXPECT_EQ(plot.outliers.at(1).value, "8");
  EXPECT_EQ(plot.outliers.at(1).caseId, "18");
  EXPECT_THAT(test.groups.at(0).codes, ElementsAre(0, 1));
  EXPECT_FALSE(test.pairwise.present);
  EXPECT_THAT(test.stepwise.order, ElementsAre(1, 0));
  EXPECT_THAT(test.stepwise.content.rows[0], ElementsAre("0", "1", ""));
  EXPECT_THAT(test.tables.at(0).rows[1], ElementsAre("3", "4"));
}

TEST(ResultModelTest, SeparatorsInsideTextsAreUnescaped) {
  const ResultDocument document = ReadResultDocument(
      R"(<StatXML><Extension><NPAROutput><DataDictionary>
<DataField name="g" optype="categorical" dataType="string"><Value value="a\;b\\"/></DataField>
</DataDictionary><NonParametricTests><Algorithm name="RMarginalHomogeneity">
<StructuredTable name="CategoryFieldsComparison"><SimpleTable name="Content">
<RowNames>a\;b\\;c</RowNames><ColumnNames/><Row>1</Row></SimpleTable></StructuredTable>
</Algorithm></NonParametricTests></NPAROutput></Extension></StatXML>)",
      "r.xml");
  EXPECT_EQ(document.fields.at(0).categories.at(0).value, "a;b\\");
  EXPECT_THAT(document.tests.at(0).tables.at(0).rowNames, ElementsAre("a;b\\", "c"));
}

TEST(ResultModelTest, AnEstimateTakesItsIntervalFromTwoTables) {
  const ResultDocument document = Read(
      R"(<Algorithm name="RHodgesLehmannEstimatePairs" type="confidence_interval"
 classification="Related_Samples"><StructuredTable name="StatisticsResult">
<Attribute name="Estimate" value="1.3"/></StructuredTable><StructuredTable name="Asymptotic">
<Attribute name="Lower" value="0.9"/><Attribute name="Upper" value="2.7"/></StructuredTable>
</Algorithm>)");
  const ResultInterval& interval = document.tests.at(0).intervals.at(0);
  EXPECT_EQ(interval.estimate + " " + interval.lower + " " + interval.upper, "1.3 0.9 2.7");
}

TEST(ResultModelTest, RefusesWhatIsNoResultDocumentWithItsPlace) {
  EXPECT_THAT([] { static_cast<void>(ReadResultDocument("<a>\n<b></a>", "r.xml")); },
              testing::ThrowsMessage<InputError>(HasSubstr("r.xml:2:")));
  EXPECT_THAT([] { static_cast<void>(ReadResultDocument("<Parameters/>", "r.xml")); },
              testing::ThrowsMessage<InputError>(HasSubstr("no result document")));
  EXPECT_THAT([] { static_cast<void>(ReadResultDocument("", "r.xml")); },
              testing::ThrowsMessage<InputError>(HasSubstr("r.xml:1:1")));
}

}  // namespace
}  // namespace npar_host
