#include "host/cli/analysis_cells.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>

#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/near_miss.h"
#include "host/data/reshape.h"
#include "host/request/field_inference.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr std::size_t kLongFields = 3;
constexpr std::size_t kMostTold = 5;  // pairs without a record

std::size_t IndexOf(const std::vector<std::string>& names, const std::string& field) {
  const auto found = std::ranges::find(names, field);
  if (found == names.end()) {
    throw UsageError("--long: the data have no field " + Quoted(field) + NearMiss(field, names));
  }
  return static_cast<std::size_t>(found - names.begin());
}

NamedText ModelOf(const AnalysisRequest& request) {
  return {"the data model", DataModelDocument(request)};
}

/// The columns made of the times.
std::vector<std::string> Widen(const AnalyseOptions& options, Execution& execution,
                               AnalysisCells& analysis) {
  const std::vector<std::string> fields = FieldItems({options.longFields});
  if (fields.size() != kLongFields) {
    throw UsageError("--long takes three fields, as in --long subject,time,value");
  }
  analysis.cells = &execution.ReadData({"the data model", "<DataModel/>"});
  const CsvReader& reader = execution.Reader();
  const std::vector<std::string> names = analysis.cells->Names();
  const LongColumns columns{IndexOf(names, fields[0]), IndexOf(names, fields[1]),
                            IndexOf(names, fields[2])};
  FieldInference(reader, *analysis.cells).RefuseStray(names[columns.value]);
  WideData wide = MakeWide(*analysis.cells, columns,
                           [&](std::size_t record) { return reader.LocationOfRecord(record); });
  std::vector<std::string>& notes = analysis.notes;
  notes.push_back("long data: " + std::to_string(wide.data.records) + " of " +
                  names[columns.subject] + ", with the fields " + JoinWords(wide.times, " and "));
  if (!wide.absent.empty()) {
    const std::size_t told = std::min(kMostTold, wide.absent.size());
    notes.push_back(
        std::to_string(wide.absent.size()) +
        (wide.absent.size() == 1 ? " value is" : " values are") + " missing, having no record: " +
        JoinWords({wide.absent.begin(), wide.absent.begin() + static_cast<std::ptrdiff_t>(told)},
                  ", ") +
        (told < wide.absent.size() ? ", ..." : ""));
  }
  if (wide.withoutPlace > 0) {
    notes.push_back(std::to_string(wide.withoutPlace) + " records without " +
                    names[columns.subject] + " or " + names[columns.time] + " are left out");
  }
  *analysis.cells = std::move(wide.data);
  analysis.isReshaped = true;
  return wide.times;
}

/// The columns that play no part.
std::vector<std::string> UnusedFields(const AnalysisRequest& request,
                                      const std::vector<std::string>& columns) {
  std::vector<std::string> unused;
  const std::vector<std::string> named = request.NamedFields();
  const std::unordered_set<std::string_view> used(named.begin(), named.end());
  std::ranges::copy_if(columns, std::back_inserter(unused),
                       [&](const std::string& column) { return !used.contains(column); });
  return unused;
}

void Score(AnalysisCells& analysis) {
  for (const Scoring& scoring : analysis.request.scorings) {
    for (const std::string& category : ScoreCategories(*analysis.cells, scoring)) {
      analysis.notes.push_back(scoring.field + ": no record is " + Quoted(category));
    }
    analysis.isReshaped = true;
  }
}

}  // namespace

AnalysisCells ReadAnalysisCells(const AnalyseOptions& options, Execution& execution) {
  AnalysisCells analysis;
  std::vector<std::string> columns = execution.Reader().Names();
  std::vector<std::string> times;
  if (!options.longFields.empty()) {
    times = Widen(options, execution, analysis);
    columns = analysis.cells->Names();
  }
  AnalysisRequest& request = analysis.request;
  request = MakeRequest(options, columns, times);
  CheckFields(request, columns);
  if (analysis.cells == nullptr) {
    request.unusedFields = UnusedFields(request, columns);
    // What is scored holds categories as yet.
    AnalysisRequest asRead = request;
    std::erase_if(asRead.measures, [&](const FieldMeasure& measure) {
      return std::ranges::find(request.scorings, measure.field, &Scoring::field) !=
             request.scorings.end();
    });
    analysis.cells = &execution.ReadData(ModelOf(asRead));
  }
  Score(analysis);
  // Data that were made of the file have no further columns.
  if (analysis.isReshaped) request.unusedFields.clear();
  return analysis;
}

}  // namespace npar_host
