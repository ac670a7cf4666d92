#include "support/run_all_passes.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "planning/planner.h"
#include "report/result_writer.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

/// More than any test here asks for: one that never ends its passes fails instead of hanging.
constexpr int kMostPasses = 10000;

QDStatus RunPass(NPARTest& test, const Rows& rows) {
  const QDStatus begun = test.BeginPass();
  std::vector<std::int64_t> required;
  test.GetRequiredVariables(required);
  if (begun.IsError()) return begun;
  for (const std::vector<double>& row : rows) {
    const bool isMissing = std::any_of(required.begin(), required.end(), [&](std::int64_t place) {
      return row.at(static_cast<std::size_t>(place)) == QDMV::gMissingValue;
    });
    if (isMissing) continue;
    const QDStatus processed =
        test.ProcessRecord(Record::View(row.data(), static_cast<int>(row.size())));
    if (processed.IsError()) return processed;
  }
  return test.EndPass();
}

AlgorithmElement OnlyElement(const std::string& document) {
  std::vector<AlgorithmElement> elements = AlgorithmElement::AllOf(document);
  if (elements.size() != 1) throw std::runtime_error("the run has not one test");
  return elements.front();
}

}  // namespace

QDStatus RunAllPasses(NPARTest& test, const Rows& rows, UnivariateResults* sharedData) {
  test.SetSharedData(sharedData);
  QDStatus first;
  for (int pass = 0; pass < kMostPasses; ++pass) {
    const QDStatus status = RunPass(test, rows);
    if (first.IsOK() && status.IsError()) first = status;
    if (!test.NeedsAnotherPass()) return first;
  }
  throw std::runtime_error("the test never ends its passes");
}

Rows SortedBy(std::size_t variable, Rows rows) {
  std::stable_sort(rows.begin(), rows.end(), [variable](const auto& a, const auto& b) {
    return a.at(variable) < b.at(variable);
  });
  return rows;
}

std::string RunEntryDocument(const QDVarList& variables, const Rows& rows,
                             const std::string& entryName, const QDSettings& entry) {
  return RunDocument(variables, rows, Entry("missingTreatment", "analysis", entryName, entry));
}

std::string RunDocument(const QDVarList& variables, const Rows& rows, const QDSettings& settings) {
  NPARPlanner planner(&settings, &variables);
  MemoryBlocks records(rows);
  const QDStatus executed = planner.Execute(records, 0);
  std::ostringstream document;
  const QDStatus written = planner.WriteOutput(document, NPARRunInfo());
  if (!executed.IsOK() || !written.IsOK()) {
    throw std::runtime_error("the run failed with " + std::to_string(executed.GetErrorCode()) +
                             ", " + std::to_string(written.GetErrorCode()));
  }
  return document.str();
}

AlgorithmElement RunEntry(const QDVarList& variables, const Rows& rows,
                          const std::string& entryName, const QDSettings& entry) {
  return OnlyElement(RunEntryDocument(variables, rows, entryName, entry));
}

AlgorithmElement RunExtended(const QDVarList& variables, const Rows& rows,
                             const std::string& entryName, const QDSettings& entry) {
  return OnlyElement(
      RunDocument(variables, rows, Entry("extendedFigures", true, entryName, entry)));
}
