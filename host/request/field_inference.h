#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/data/cell_source.h"
#include "host/data/column_findings.h"
#include "host/data/dataset.h"
#include "host/request/analysis_documents.h"
#include "host/request/automatic_choice.h"
#include "host/request/category_checks.h"

namespace npar_host {

/// What the fields of a request are taken for, where nobody said it, and what a person should know
/// to see that this is wrong.
class FieldInference {
 public:
  /// Both outlive the object.
  FieldInference(const CellSource& source, const Dataset& data);

  /// Adds the measures that differ from those of the cells alone. InputError for a column of
  /// numbers that holds one cell which is none, and for numbers in another notation.
  void Infer(AnalysisRequest& request);
  /// The InputErrors of Infer, of one field.
  void RefuseStray(const std::string& field);
  /// "inferred: continuous: a, b; nominal: c", and a sentence for whatever is odd about a field;
  /// after Infer. UsageError for a category that the data do not have.
  [[nodiscard]] std::vector<std::string> Notes(const AnalysisRequest& request);
  /// The tests that the component will choose.
  [[nodiscard]] std::vector<Choice> Choices(const AnalysisRequest& request);
  /// "continuous", "ordinal" or "nominal"; after Infer.
  [[nodiscard]] std::string MeasureOf(const AnalysisRequest& request, const std::string& field);
  [[nodiscard]] std::size_t MissingOf(const std::string& field);

 private:
  [[nodiscard]] std::size_t IndexOf(const std::string& field) const;
  const ColumnFindings& FindingsOf(const std::string& field);
  const FieldContent& ContentOf(const AnalysisRequest& request, const std::string& field);
  npar_host::ContentOf Contents(const AnalysisRequest& request);
  [[nodiscard]] std::string InferredLine(const AnalysisRequest& request) const;
  void NoteField(const AnalysisRequest& request, const std::string& field,
                 std::vector<std::string>& notes);

  const CellSource& source;
  const Dataset& data;
  std::map<std::string, ColumnFindings> findings;
  std::map<std::string, FieldContent> contents;
};

/// "3 of 20 cells are missing: 2 "NaN", 1 empty"; empty where none is.
[[nodiscard]] std::string MissingText(const ColumnFindings& findings);
/// "since 6 of 240 cells are no numbers, first line 2: "n.d."" and what they may be.
[[nodiscard]] std::string StrayText(const ColumnFindings& findings, const CellSource& source);

}  // namespace npar_host
