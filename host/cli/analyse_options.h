#pragma once

#include <string>
#include <vector>

#include "host/cli/execution.h"
#include "host/cli/report_request.h"
#include "host/request/analysis_documents.h"

namespace CLI {
class App;
}

namespace npar_host {

/// What a person may say to npar analyse.
struct AnalyseOptions {
  ExecutionOptions execution;
  std::vector<std::string> oneSample, related, independent;
  std::vector<std::string> continuous, nominal, ordinal;
  std::vector<std::string> scores, groups;
  std::string group;  // of `groups`, the one of this analysis
  std::string weight, caseId, longFields;
  std::vector<std::string> tests;
  double significance = 0.05;
  double confidence = 95.0;
  std::string missing = "analysis";
  bool noExtended = false;
  std::string keepDocuments;
  std::string out;
  std::vector<std::string> reports;
  TextChoices choices;
  bool noTrace = false;
  bool isPlan = false;
  std::string plots;
  AdjustChoices adjust;
};

void AddAnalyseOptions(CLI::App& command, AnalyseOptions& options);

/// The items of lists, in words for Unescape: "a,b" and repeated options make one.
[[nodiscard]] std::vector<std::string> FieldItems(const std::vector<std::string>& texts);

/// The request on data with those columns, of which `times` are related where no family has a
/// field. Throws UsageError for one that can't be carried out.
[[nodiscard]] AnalysisRequest MakeRequest(const AnalyseOptions& options,
                                          const std::vector<std::string>& columns,
                                          const std::vector<std::string>& times);

}  // namespace npar_host
