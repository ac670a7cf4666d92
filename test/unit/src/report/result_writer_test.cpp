#include "report/result_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "report/elements.h"
#include "support/matchers.h"
#include "support/schema.h"
#include "support/variables.h"

namespace {

using QDXML_700::QDCategory;
using QDXML_700::QDContVar;
using QDXML_700::VariableRole;

/// The document of a run over these rows; every variable whose kind has a summary gets one.
std::string DocumentOf(const QDVarList& variables, std::vector<std::vector<double>> rows,
                       std::vector<std::unique_ptr<XMLElement>> tests, const NPARRunInfo& runInfo,
                       std::int32_t caseIdIndex = -1) {
  MemoryBlocks records(std::move(rows));
  IteratorBatches batches(records);
  QDUnivariateSummaries summaries(&batches, &variables);
  const std::int32_t weightIndex = variables.GetFreqWeightVariable();
  summaries.SetWeightVariable(weightIndex);
  for (std::int32_t index = 0; index < variables.Size(); ++index) {
    for (const Statistic statistic :
         {Statistic::Distribution, Statistic::MeanStdDev, Statistic::Frequencies}) {
      static_cast<void>(summaries.Register(index, static_cast<std::int32_t>(statistic)));
    }
  }
  EXPECT_THAT(summaries.Run(), IsOk());
  const UnivariateResults univariates(&summaries);
  NPARResultWriter writer(&variables, &univariates, std::move(tests), false, 0.05, 0.95,
                          weightIndex, caseIdIndex);
  std::ostringstream stream;
  EXPECT_THAT(writer.Write(stream, 4294967296, runInfo), IsOk());
  EXPECT_TRUE(IsValid(stream.str(), "statxml-7.0.xsd"));
  return stream.str();
}

TEST(ResultWriter, AnEmptyRunIsAWholeDocumentWithDefaults) {
  EXPECT_EQ(DocumentOf(QDVarList(), {}, {}, NPARRunInfo()),
            FileContent("test/support/references/empty_document.xml"));
}

// The document is written_document.txt: fields of every kind and storage; a weight and a case
// identifier, which no summary shows; a field without a positive count; text that must be escaped.
// Mean of 1, 1, -1: 1/3; the squares about it sum to 8/3, over 2 degrees of freedom.
TEST(ResultWriter, FieldsTestsAndDistributionsAreWrittenInFull) {
  QDVarList variables;
  const auto add = [&](const char* name, const char* label, VariableKind kind, StorageKind storage,
                       VariableRole role) {
    variables.Add(std::make_unique<QDContVar>(name, label, kind, storage, role, variables.Size()));
  };
  const auto addCategorical = [&](const char* name, VariableKind kind, StorageKind storage,
                                  std::vector<QDCategory> categories) {
    variables.Add(std::make_unique<QDCatVar>(name, "", kind, storage, VariableRole::Input,
                                             variables.Size(), false, std::move(categories)));
  };
  add("x", "Size <cm>", VariableKind::Continuous, StorageKind::Real, VariableRole::Input);
  add("w", "", VariableKind::Continuous, StorageKind::Integer, VariableRole::FrequencyWeight);
  add("id", "", VariableKind::Continuous, StorageKind::Real, VariableRole::CaseId);
  add("day", "", VariableKind::Continuous, StorageKind::Date, VariableRole::Input);
  add("other", "", VariableKind::Other, StorageKind::Timestamp, VariableRole::Input);
  addCategorical("g;\"h\"", VariableKind::StringCategory, StorageKind::String,
                 {{"a;b", 0.0, "Label"}, {"c", 0.0, ""}});
  addCategorical("n", VariableKind::NumericCategory, StorageKind::Real, {{"2.5", 2.5, ""}});
  addCategorical("t", VariableKind::NumericCategory, StorageKind::Time, {});
  variables.SetCounts(
      {.unweighted = 2, .weighted = 3, .dropped = 4, .badWeight = 5.5, .weightedDropped = 6});

  std::vector<std::unique_ptr<XMLElement>> tests;
  tests.push_back(CreateAlgorithm("RSign", "hypothesis_test", "Related_Samples", "retain"));
  tests.push_back(CreateAlgorithm("OBinomial", "hypothesis_test", "One_Sample", "unknown"));
  for (const auto& test : tests) AddCondition(*test, "R_Sign_2", {"0"});
  NPARRunInfo runInfo;
  runInfo.applicationName = "App & Co";
  runInfo.applicationVersion = "1.2";
  runInfo.copyright = "(c) them";
  const std::string document =
      DocumentOf(variables,
                 {{1.0, 2.0, 7.0, QDMV::gMissingValue, 1.0, 1.0, -1.0, -1.0},
                  {-1.0, 1.0, 8.0, QDMV::gMissingValue, 1.0, 0.0, -1.0, -1.0}},
                 std::move(tests), runInfo, 2);

  EXPECT_EQ(document.substr(document.find("  <DescriptiveSummary>")),
            FileContent("test/support/references/written_document.txt"));
}

TEST(ResultWriter, AStreamThatTakesNothingIsNoSuccess) {
  const QDVarList variables;
  const QDUnivariateSummaries summaries(nullptr, &variables);
  const UnivariateResults univariates(&summaries);
  NPARResultWriter writer(&variables, &univariates, {}, true, 0.05, 0.95, -1, -1);
  std::ostringstream stream;
  stream.setstate(std::ios::badbit);
  EXPECT_THAT(writer.Write(stream, 1, NPARRunInfo()), HasCode(220012));
}

}  // namespace
