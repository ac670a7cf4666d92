#include "host/request/field_inference.h"

#include <algorithm>
#include <cmath>

#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/number.h"
#include "host/request/field_list.h"
#include "host/request/measure_choice.h"
#include "host/request/test_fit.h"

namespace npar_host {
namespace {

constexpr std::size_t kFewestNumbers = 3;  // beside which one other cell is a slip

std::string CellCount(std::size_t count, std::size_t all) {
  return std::to_string(count) + " of " + std::to_string(all) + (all == 1 ? " cell" : " cells");
}

/// As FindModel makes categories of them: infinities are none.
std::vector<std::string> DifferentValues(const Column& column) {
  std::vector<std::string> values;
  if (column.isText) {
    values.reserve(column.texts.Size());
    for (std::size_t code = 0; code < column.texts.Size(); ++code) {
      values.emplace_back(column.texts[code]);
    }
    std::ranges::sort(values);
    return values;
  }
  NumberPool pool;
  column.numbers.ForEach([&](double value) {
    if (value != kMissingNumber && std::isfinite(value)) pool.Add(value);
  });
  std::vector<double> numbers(pool.Size());
  for (std::size_t code = 0; code < pool.Size(); ++code) numbers[code] = pool[code];
  std::ranges::sort(numbers);
  values.reserve(numbers.size());
  for (const double number : numbers) values.push_back(NumberText(number));
  return values;
}

std::string Values(const std::vector<double>& values) {
  std::vector<std::string> texts;
  texts.reserve(values.size());
  for (const double value : values) texts.push_back(NumberText(value));
  return JoinWords(texts, " and ");
}

}  // namespace

std::string MissingText(const ColumnFindings& findings) {
  if (findings.missing == 0) return {};
  std::vector<std::string> tokens;
  for (const auto& [text, count] : findings.tokens) {
    tokens.push_back(std::to_string(count) + " " + (text.empty() ? "empty" : Quoted(text)));
  }
  return CellCount(findings.missing, findings.records) +
         (findings.missing == 1 ? " is missing: " : " are missing: ") + JoinWords(tokens, " and ");
}

std::string StrayText(const ColumnFindings& findings, const CellSource& source) {
  return "since " + CellCount(findings.strays, findings.Cells()) +
         (findings.strays == 1 ? " is no number" : " are no numbers") + ", first line " +
         LineOf(source, findings.firstStray) + ": " + Quoted(findings.firstStrayText);
}

FieldInference::FieldInference(const CellSource& source, const Dataset& data)
    : source(source), data(data) {}

std::size_t FieldInference::IndexOf(const std::string& field) const {
  const auto found = std::ranges::find(data.columns, field, &Column::name);
  return static_cast<std::size_t>(found - data.columns.begin());
}

const ColumnFindings& FieldInference::FindingsOf(const std::string& field) {
  const auto known = findings.find(field);
  if (known != findings.end()) return known->second;
  return findings[field] = FindInColumn(data, IndexOf(field), source);
}

const FieldContent& FieldInference::ContentOf(const AnalysisRequest& request,
                                              const std::string& field) {
  const auto known = contents.find(field);
  if (known != contents.end()) return known->second;
  const Column& column = data.columns[IndexOf(field)];
  const FieldMeasure* const measure = request.MeasureOf(field);
  FieldContent& content = contents[field];
  content.isText = column.isText;
  content.isCategorical = content.isText || field == request.groupField ||
                          (measure != nullptr && measure->measure != "continuous");
  if (content.isCategorical) content.values = DifferentValues(column);
  return content;
}

void FieldInference::RefuseStray(const std::string& field) {
  if (!data.columns[IndexOf(field)].isText) return;
  const ColumnFindings& found = FindingsOf(field);
  const bool isSlip = found.strays == 1 && found.numbers >= kFewestNumbers;
  if (!isSlip && found.numberNotation.empty()) return;
  std::string message = source.LocationOf(found.firstStray) + ": " + field +
                        ": could only be nominal, " + StrayText(found, source) + "; ";
  if (!found.numberNotation.empty()) {
    message += "these are " + found.numberNotation;
  } else {
    message += "correct the cell, or add --missing-token " + Quoted(found.firstStrayText) +
               " if it stands for a missing value";
  }
  throw InputError(message + " (--nominal " + FieldArgument(field) + " takes them as categories)",
                   field);
}

void FieldInference::Infer(AnalysisRequest& request) {
  for (const std::string& field : request.NamedFields()) {
    const bool isTold = request.MeasureOf(field) != nullptr || field == request.groupField ||
                        field == request.weightField || field == request.caseIdField;
    if (!isTold) RefuseStray(field);
  }
  const FewValuesOf valuesOf = [this](const std::string& field) {
    const bool isText = data.columns[IndexOf(field)].isText;
    return isText ? nullptr : &FindingsOf(field).fewValues;
  };
  for (FieldMeasure& measure : InferNominal(request, valuesOf)) {
    request.measures.push_back(std::move(measure));
  }
}

std::string FieldInference::InferredLine(const AnalysisRequest& request) const {
  std::vector<std::string> continuous;
  std::vector<std::string> nominal;
  for (const std::string& field : request.NamedFields()) {
    const FieldMeasure* const measure = request.MeasureOf(field);
    const bool isTold = (measure != nullptr && !measure->isInferred) ||
                        field == request.weightField || field == request.caseIdField;
    if (isTold) continue;
    const bool isNominal =
        measure != nullptr || field == request.groupField || data.columns[IndexOf(field)].isText;
    (isNominal ? nominal : continuous).push_back(field);
  }
  std::string text;
  if (!continuous.empty()) text = "continuous: " + JoinWords(continuous, ", ");
  if (!nominal.empty())
    text += (text.empty() ? "" : "; ") + ("nominal: " + JoinWords(nominal, ", "));
  return text.empty() ? text : "inferred: " + text;
}

void FieldInference::NoteField(const AnalysisRequest& request, const std::string& field,
                               std::vector<std::string>& notes) {
  const Column& column = data.columns[IndexOf(field)];
  const ColumnFindings& found = FindingsOf(field);
  const FieldMeasure* const measure = request.MeasureOf(field);
  const auto note = [&](const std::string& text) { notes.push_back(field + ": " + text); };
  if (const std::string missing = MissingText(found); !missing.empty()) note(missing);
  if (found.infinite > 0) {
    note(CellCount(found.infinite, found.records) + (found.infinite == 1 ? " holds" : " hold") +
         " an infinity, which counts as a value");
  }
  if (field == request.weightField || field == request.caseIdField) return;
  if (measure != nullptr && measure->isInferred) {
    note("nominal, since its cells hold " + Values(found.fewValues) + " alone; --continuous " +
         FieldArgument(field) + " if they measure something");
  } else if (measure == nullptr && column.isText && found.numbers >= found.strays &&
             found.strays > 0 && field != request.groupField) {
    note("nominal, " + StrayText(found, source) + "; --missing-token " +
         Quoted(found.firstStrayText) + " if that stands for a missing value");
  } else if (measure == nullptr && found.IsLikeScale() && field != request.groupField &&
             !NeedsContinuous(request, field)) {
    note("whole numbers " + NumberText(found.fewValues.front()) + " to " +
         NumberText(found.fewValues.back()) + ": continuous; --ordinal " + FieldArgument(field) +
         " if it is a scale");
  }
  if (!column.isText) return;
  for (const std::string& group : NearlyEqualTexts(column)) {
    note(group + " differ only by case or spaces, and are different categories");
  }
}

ContentOf FieldInference::Contents(const AnalysisRequest& request) {
  return [this, &request](const std::string& field) -> const FieldContent& {
    return ContentOf(request, field);
  };
}

std::vector<Choice> FieldInference::Choices(const AnalysisRequest& request) {
  return ExplainChoice(request, Contents(request));
}

std::string FieldInference::MeasureOf(const AnalysisRequest& request, const std::string& field) {
  return npar_host::MeasureOf(request, Contents(request), field);
}

std::size_t FieldInference::MissingOf(const std::string& field) {
  return FindingsOf(field).missing;
}

std::vector<std::string> FieldInference::Notes(const AnalysisRequest& request) {
  std::vector<std::string> notes;
  const std::string inferred = InferredLine(request);
  if (!inferred.empty()) notes.push_back(inferred);
  for (const std::string& field : request.NamedFields()) NoteField(request, field, notes);
  const npar_host::ContentOf contentOf = Contents(request);
  for (std::string& note : CheckCategories(request, contentOf)) notes.push_back(std::move(note));
  for (const auto& [test, because] : Choices(request)) {
    std::string& note = notes.emplace_back(test);
    note += " is chosen, because ";
    note += because;
  }
  for (std::string& note : ExplainMisfits(request, contentOf)) notes.push_back(std::move(note));
  if (!request.groupField.empty() && request.independentFields.empty()) {
    notes.push_back("--by " + request.groupField + " is not used: no --independent field is given");
  }
  return notes;
}

}  // namespace npar_host
