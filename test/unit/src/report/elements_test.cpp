#include "report/elements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "report/messages.h"
#include "support/algorithm_element.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Elements, NumbersKeepFifteenDigitsAndNeverWriteANegativeZero) {
  EXPECT_EQ(NumberText(1.0 / 3.0), "0.333333333333333");
  EXPECT_EQ(NumberText(-0.0), "0");
  EXPECT_EQ(IntegerText(std::int64_t{3} << 40), "3298534883328");
}

TEST(Elements, WhatDoesNotExistIsWrittenAsMissing) {
  EXPECT_EQ(IndexText(-1), "__MISSING__");
  EXPECT_EQ(IndexText(0), "0");
  EXPECT_EQ(NumberOrMissingText(QDMV::gMissingValue), "__MISSING__");
  EXPECT_EQ(NumberOrMissingText(-1.0), "-1");
}

TEST(Elements, ListsHaveSemicolonsOnlyBetweenItemsAlsoBesideEmptyOnes) {
  EXPECT_EQ(JoinTexts({}), "");
  EXPECT_EQ(JoinTexts({"", "a", ""}), ";a;");
  EXPECT_EQ(JoinNumbers({1.5, -2.0}), "1.5;-2");
  EXPECT_EQ(JoinIntegers(std::vector<std::int32_t>{0, 7}), "0;7");
}

TEST(Elements, DecisionRejectsOnlyStrictlyBelowTheLevel) {
  EXPECT_STREQ(DecisionWord(QDStatus(), 0.05, 0.0499), "reject");
  EXPECT_STREQ(DecisionWord(QDStatus(), 0.05, 0.05), "retain");
  EXPECT_STREQ(DecisionWord(QDStatus(), 0.05, std::numeric_limits<double>::quiet_NaN()), "retain");
  EXPECT_STREQ(DecisionWord(QDStatus(220003), 0.05, 0.0), "unknown");
  EXPECT_STREQ(DecisionWord(QDStatus(220003, true), 0.05, 0.0), "reject");
}

TEST(Elements, TablesHoldRowsInTheFormOfTheDocument) {
  std::unique_ptr<XMLElement> algorithm = CreateAlgorithm("T", "t", "c", "d");
  AddCondition(*algorithm, "KEY", {"4", "__MISSING__"});
  XMLElement* table = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*table, "text", "a");
  AddAttributeRow(*table, "double", 0.5);
  AddAttributeRow(*table, "integer", std::int64_t{1} << 33);
  AddIntervalTable(*table, {{2, 1.5}, {0, 99.0}, {3, 0.0}});
  AddUnknownValues(*algorithm, {});
  AddUnknownValues(*algorithm, {"x"});
  EXPECT_EQ(AlgorithmElement(algorithm.release()).Xml(),
            R"(<Algorithm name="T" type="t" classification="c" decision="d">
 <StructuredTable name="Condition">
  <Attribute name="ConditionKey" value="KEY" />
  <Attribute name="%0" value="4" />
  <Attribute name="%1" value="__MISSING__" />
 </StructuredTable>
 <StructuredTable name="StatisticsResult">
  <Attribute name="text" value="a" />
  <Attribute name="double" value="0.5" />
  <Attribute name="integer" value="8589934592" />
  <SimpleTable name="Interval">
   <RowNames>count;value</RowNames>
   <ColumnNames />
   <Row>2;3</Row>
   <Row>1.5;0</Row>
  </SimpleTable>
 </StructuredTable>
 <StructuredTable name="ValsNotInTheCategoreis">
  <Attribute name="0" value="x" />
 </StructuredTable>
</Algorithm>
)");
}

TEST(Elements, AnIntervalWithoutCountsIsLeftOutOnlyWhereThatIsAskedFor) {
  std::unique_ptr<XMLElement> algorithm = CreateAlgorithm("T", "t", "c", "");
  AddIntervalTableUnlessEmpty(*algorithm, {{0, 1.0}});
  AddIntervalTable(*algorithm, std::vector<HistogramBin>{{0, 1.0}});
  const AlgorithmElement read(algorithm.release());
  EXPECT_THAT(read.ChildNames(), ElementsAre("SimpleTable Interval"));
  EXPECT_THAT(read.Rows("Interval"), ElementsAre("", ""));
}

TEST(Messages, EachHasCodeKindParametersAndNamedParametersInThisOrder) {
  std::unique_ptr<XMLElement> algorithm = CreateAlgorithm("T", "t", "c", "");
  WriteMessages(*algorithm, {});
  WriteMessages(*algorithm,
                {{QDStatus(220903), MessageKind::Error, {"a\"<b", "2"}, {{"limit", "0.05"}}},
                 {QDStatus(7, true), MessageKind::Warning, {}, {}},
                 {QDStatus(8), MessageKind::Help, {}, {}},
                 {QDStatus(9), static_cast<MessageKind>(5), {}, {}}});
  const AlgorithmElement read(algorithm.release());
  EXPECT_THAT(read.ChildNames(), ElementsAre("StructuredTable WarningMessages"));
  EXPECT_THAT(read.ChildNames("Message"),
              ElementsAre("Attribute code", "Attribute type", "Attribute paramNum", "Attribute %0",
                          "Attribute %1", "Attribute limit"));
  using Message = AlgorithmElement::Message;
  EXPECT_THAT(read.Messages(),
              ElementsAre(Message{220903, "error", {"a\"<b", "2"}}, Message{7, "warning", {}},
                          Message{8, "helpMessage", {}}, Message{9, "error", {}}));
}

}  // namespace
