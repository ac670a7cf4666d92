#include "host/request/analysis_documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/request/word_list.h"

namespace npar_host {
namespace {

using testing::HasSubstr;

AnalysisRequest PairRequest() {
  AnalysisRequest request;
  request.relatedFields = {"before", "after"};
  return request;
}

TEST(AnalysisDocumentsTest, FlagOfAFamilyIsFollowedByItsTestsInTheirOrder) {
  AnalysisRequest request = PairRequest();
  request.independentFields = {"score"};
  request.groupField = "class";
  request.tests = {TestRequest::Parse("wilcoxon-pairs"), TestRequest::Parse("mann-whitney"),
                   TestRequest::Parse("sign")};
  request.caseIdField = "id";
  request.listwise = true;
  request.significance = 0.01;
  request.confidencePercent = 99.5;
  EXPECT_EQ(ParameterDocument(request), R"(<Parameters>
  <Parameter name="missingTreatment" value="listwise" />
  <Parameter name="sigLevel" value="0.01" />
  <Parameter name="confidenceLevel" value="99.5" />
  <Parameter name="extendedFigures" value="true" />
  <Parameter name="caseIDField" value="id" />
  <Parameter name="relatedVariables">
    <ListValue>
      <Value value="before" />
      <Value value="after" />
    </ListValue>
  </Parameter>
  <Parameter name="independentVariables">
    <ListValue>
      <Value value="score" />
    </ListValue>
  </Parameter>
  <Parameter name="groupVariable">
    <ListValue>
      <Value value="class" />
    </ListValue>
  </Parameter>
  <Parameter name="isAutomaticallyRelated" value="false" />
  <Parameter name="RWilcoxonSignedRanks">
    <StructuredValue>
      <Attribute name="isSelected" value="true" />
    </StructuredValue>
  </Parameter>
  <Parameter name="RSign">
    <StructuredValue>
      <Attribute name="isSelected" value="true" />
    </StructuredValue>
  </Parameter>
  <Parameter name="isAutomaticallyIndependent" value="false" />
  <Parameter name="IMannWhitneyU">
    <StructuredValue>
      <Attribute name="isSelected" value="true" />
    </StructuredValue>
  </Parameter>
</Parameters>
)");
}

TEST(AnalysisDocumentsTest, FamilyWithoutATestOfItsOwnIsChosenAutomatically) {
  AnalysisRequest request = PairRequest();
  request.oneSampleFields = {"a<b"};
  request.tests = {TestRequest::Parse("sign")};
  const std::string document = ParameterDocument(request);
  EXPECT_THAT(document, HasSubstr(R"(name="isAutomaticallyOneSample" value="true")"));
  EXPECT_THAT(document, HasSubstr(R"(name="isAutomaticallyRelated" value="false")"));
  EXPECT_THAT(document, HasSubstr(R"(value="a&lt;b")"));
  EXPECT_THAT(document, HasSubstr(R"(name="missingTreatment" value="analysis")"));
}

TEST(AnalysisDocumentsTest, DataModelSaysOnlyWhatTheRequestSays) {
  AnalysisRequest request = PairRequest();
  request.measures = {ParseFieldMeasure(R"(grade=low\<er<high)", "ordinal"),
                      ParseFieldMeasure(R"(a\=b)", "nominal")};
  request.weightField = "n";
  request.caseIdField = "a=b";
  EXPECT_EQ(DataModelDocument(request), R"(<DataModel>
  <Field name="grade" measure="ordinal">
    <Value value="low&lt;er" />
    <Value value="high" />
  </Field>
  <Field name="a=b" measure="nominal" role="caseId" />
  <Field name="n" measure="continuous" role="frequencyWeight" />
</DataModel>
)");
}

struct Refusal {
  const char* says;
  void (*change)(AnalysisRequest& request);
};

TEST(AnalysisDocumentsTest, RequestsThatCannotBeCarriedOutAreRefused) {
  const Refusal rows[] = {
      {"no field to analyse", [](AnalysisRequest& r) { r.relatedFields.clear(); }},
      {"give it with --by", [](AnalysisRequest& r) { r.independentFields = {"x"}; }},
      {"--significance", [](AnalysisRequest& r) { r.significance = 0.0; }},
      {"--significance", [](AnalysisRequest& r) { r.significance = 1.0; }},
      {"percentage", [](AnalysisRequest& r) { r.confidencePercent = 0.95; }},
      {"percentage", [](AnalysisRequest& r) { r.confidencePercent = 100.0; }},
      {"give them with --one-sample",
       [](AnalysisRequest& r) { r.tests = {TestRequest::Parse("runs")}; }},
      {"asked for twice",
       [](AnalysisRequest& r) {
         r.tests = {TestRequest::Parse("sign"), TestRequest::Parse("sign")};
       }},
      {"two measurement levels",
       [](AnalysisRequest& r) {
         r.measures = {{"before", "nominal", {}}, {"before", "ordinal", {}}};
       }},
      {"is the weight", [](AnalysisRequest& r) {
         r.weightField = "n";
         r.measures = {{"n", "nominal", {}}};
       }}};
  EXPECT_NO_THROW(CheckRequest(PairRequest()));
  for (const Refusal& row : rows) {
    SCOPED_TRACE(row.says);
    AnalysisRequest request = PairRequest();
    row.change(request);
    EXPECT_THAT([&] { CheckRequest(request); },
                testing::ThrowsMessage<UsageError>(HasSubstr(row.says)));
  }
}

TEST(AnalysisDocumentsTest, UnknownFieldIsRefusedWithTheNearestName) {
  AnalysisRequest request = PairRequest();
  EXPECT_NO_THROW(CheckFields(request, {"before", "after", "n"}));
  request.weightField = "m";
  EXPECT_THAT(
      [&] {
        CheckFields(request, {"before", "after", "n"});
      },
      testing::ThrowsMessage<UsageError>(HasSubstr(R"(no field "m")")));
  request.relatedFields = {"befroe"};
  EXPECT_THAT(
      [&] {
        CheckFields(request, {"before", "after", "n"});
      },
      testing::ThrowsMessage<UsageError>(HasSubstr(R"(did you mean "before"?)")));
}

}  // namespace
}  // namespace npar_host
