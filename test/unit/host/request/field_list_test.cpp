#include "host/request/field_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/request/measure_choice.h"
#include "host/request/word_list.h"

namespace {

using namespace npar_host;
using testing::ElementsAre;

const std::vector<std::string> kColumns = {"id", "x1", "x2", "y-1", "x3", "height, cm", "s*"};

std::vector<std::string> Fields(const std::string& list) {
  return ExpandFields(SplitWords(EscapeQuoted(list), ','), kColumns);
}

TEST(FieldListTest, RangesAndPatternsNameColumnsInTheirOrder) {
  EXPECT_THAT(Fields("x1-x3"), ElementsAre("x1", "x2", "y-1", "x3"));
  EXPECT_THAT(Fields("x3,x?"), ElementsAre("x3", "x1", "x2"));
  EXPECT_THAT(Fields("y-1"), ElementsAre("y-1"));
  EXPECT_THAT(Fields("x2-y-1"), ElementsAre("x2", "y-1"));
  EXPECT_THAT(Fields("*"), ElementsAre("id", "x1", "x2", "y-1", "x3", "height, cm", "s*"));
  EXPECT_THAT(Fields("\"s*\",\"height, cm\""), ElementsAre("s*", "height, cm"));
  EXPECT_THAT(Fields("h*c?,i\\d"), ElementsAre("height, cm", "id"));
  // For others to refuse: none fits, or the range runs backwards.
  EXPECT_THAT(Fields("z*,x3-x1"), ElementsAre("z*", "x3-x1"));
}

AnalysisRequest Request(const std::vector<std::string>& oneSample,
                        const std::vector<std::string>& related, const char* test) {
  AnalysisRequest request;
  request.oneSampleFields = oneSample;
  request.relatedFields = related;
  if (test != nullptr) request.tests.push_back(TestRequest::Parse(test));
  return request;
}

TEST(MeasureChoiceTest, TwoNumbersAreCategoriesWhereNoTestNeedsThemContinuous) {
  const std::vector<double> zeroOne = {0, 1};
  const std::vector<double> oneTwo = {1, 2};
  const std::vector<double> many;
  const FewValuesOf valuesOf = [&](const std::string& field) {
    if (field == "text") return static_cast<const std::vector<double>*>(nullptr);
    return field == "a" || field == "b" ? &zeroOne : field == "c" ? &oneTwo : &many;
  };
  const struct {
    AnalysisRequest request;
    std::vector<std::string> nominal;
  } rows[] = {
      {Request({"a", "m"}, {}, nullptr), {"a"}},
      {Request({"a"}, {}, "wilcoxon"), {}},
      {Request({"a"}, {}, "binomial"), {"a"}},
      {Request({"a"}, {}, "binomial:cut=0.5"), {}},
      {Request({}, {"a", "b"}, nullptr), {"a", "b"}},
      {Request({}, {"a", "b", "text"}, nullptr), {}},
      {Request({}, {"a", "c"}, nullptr), {}},
      {Request({}, {"a", "m"}, "mcnemar"), {}},
      {Request({"a"}, {"a", "m"}, nullptr), {}},
      {Request({}, {"a", "b"}, "sign"), {}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> nominal;
    for (const FieldMeasure& measure : InferNominal(row.request, valuesOf)) {
      nominal.push_back(measure.field);
    }
    EXPECT_EQ(nominal, row.nominal) << &row - rows;
  }
}

}  // namespace
