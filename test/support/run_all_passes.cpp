#include "support/run_all_passes.h"

#include <sstream>
#include <stdexcept>

#include "planning/planner.h"
#include "report/result_writer.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

AlgorithmElement OnlyElement(const std::string& document) {
  std::vector<AlgorithmElement> elements = AlgorithmElement::AllOf(document);
  if (elements.size() != 1) throw std::runtime_error("the run has not one test");
  return elements.front();
}

}  // namespace

std::string RunEntryDocument(const QDVarList& variables, const Rows& rows,
                             const std::string& entryName, const QDSettings& entry) {
  return RunDocument(variables, rows, Entry("missingTreatment", "analysis", entryName, entry));
}

std::string RunDocument(const QDVarList& variables, const Rows& rows, const QDSettings& settings,
                        Shortcut counting, Shortcut selecting) {
  NPARPlanner planner(&settings, &variables);
  planner.SetShortcuts(counting, selecting);
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
