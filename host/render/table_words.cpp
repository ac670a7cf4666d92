#include "host/render/table_words.h"

#include <algorithm>
#include <optional>

#include "catalogue/cards/binomial.h"
#include "catalogue/cards/chi_square.h"
#include "catalogue/cards/cochran_q.h"
#include "catalogue/catalogue.h"
#include "catalogue/run.h"
#include "host/data/join_words.h"
#include "host/data/number.h"
#include "host/messages/messages.h"
#include "host/render/adjustment.h"
#include "host/render/significance.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::string_view kCrossTable = "CategoryFieldsComparison";

const ResultField* TestedField(const ResultDocument& document, const ResultTest& test,
                               std::size_t position) {
  const auto fields = test.ConditionFields(position, document.fields.size());
  return fields.empty() ? nullptr : &document.fields[fields.front()];
}

// A cross table that does not name its two classes has the codes of their categories beside it.
std::string ClassTitle(const ResultTest& test, const ResultField* field, std::string_view detail,
                       const char* otherwise) {
  const auto found = std::ranges::find(test.details, detail, &ResultStatistic::name);
  if (found == test.details.end() || field == nullptr) return otherwise;
  const std::string title = CategoriesPhrase(*field, found->text);
  return title.empty() ? otherwise : title;
}

std::string LabelOf(const ResultField* field, const std::string& value) {
  if (field == nullptr) return value;
  const auto found = std::ranges::find(field->categories, value, &ResultCategory::value);
  return found == field->categories.end() || found->label.empty() ? value : found->label;
}

std::string CrossedField(const ResultDocument& document, const ResultTest& test,
                         std::size_t position) {
  return FieldPhrase(FieldTitles(document, test, position));
}

// ". Fields: height (continuous, 3 missing), sex (nominal)"; of many those with missing values.
std::string FieldsWords(const std::vector<TracedField>& fields) {
  constexpr std::size_t kMostTold = 20;
  std::vector<std::string> told;
  std::size_t others = 0;
  for (const TracedField& field : fields) {
    const bool isTold = fields.size() <= kMostTold || field.missing > 0;
    if (!isTold || told.size() == kMostTold) {
      ++others;
      continue;
    }
    told.push_back(field.name + " (" + field.measure +
                   (field.missing > 0 ? ", " + std::to_string(field.missing) + " missing)" : ")"));
  }
  if (others > 0) told.push_back(std::to_string(others) + (told.empty() ? "" : " more"));
  return told.empty() ? "" : ". Fields: " + JoinWords(told, ", ");
}

}  // namespace

std::string RowTitle(const ResultDocument& document, const ResultTest& test,
                     const ResultTable& table, std::size_t row) {
  const bool isCross = table.name == kCrossTable;
  const ResultField* const field = TestedField(document, test, 0);
  if (row >= table.rowNames.size()) {
    if (!isCross || !table.columnNames.empty()) return {};
    return row == 0 ? ClassTitle(test, field, "RowSuccessList", "success")
                    : ClassTitle(test, field, "RowFailList", "failure");
  }
  const std::string& name = table.rowNames[row];
  if (isCross) return LabelOf(field, name);
  const auto number = FigureNumber(name);
  if (!number) return TableLabel(name);
  const auto code = static_cast<std::int32_t>(*number);
  if (test.classification != "One_Sample") return SampleTitle(document, test, code);
  return field == nullptr ? name : CategoryTitle(*field, code);
}

std::string ExtendedRowTitle(const ResultDocument& document, const ResultTest& test,
                             const ResultTable& table, std::size_t row) {
  if (table.name == "Fields") {
    const auto index = static_cast<std::size_t>(FigureNumber(table.rowNames[row]).value_or(-1.0));
    return index < document.fields.size() ? document.fields[index].name : table.rowNames[row];
  }
  if (FigureNumber(table.rowNames[row])) return RowTitle(document, test, table, row);
  // "Group0" or "Group1"; a test that does not list its groups compares the two categories of the
  // group field, or lists that only its user knows.
  if (row < test.groups.size()) return GroupTitle(document, test, test.groups[row]);
  const ResultField* const field = GroupField(document, test);
  const bool areCategories = test.conditionKey.starts_with("DefaultAllDistinctValuesUsed") &&
                             field != nullptr && field->categories.size() == 2;
  return areCategories ? CategoryTitle(*field, static_cast<std::int32_t>(row))
                       : "group " + std::to_string(row + 1);
}

std::string ColumnTitle(const ResultDocument& document, const ResultTest& test,
                        const ResultTable& table, std::size_t column) {
  const bool isCross = table.name == kCrossTable;
  const ResultField* const field = TestedField(document, test, 1);
  if (column >= table.columnNames.size()) {
    if (!isCross) return {};
    return column == 0 ? ClassTitle(test, field, "ColumnSuccessList", "success")
                       : ClassTitle(test, field, "ColumnFailList", "failure");
  }
  const std::string& name = table.columnNames[column];
  if (isCross) return LabelOf(field, name);
  const bool isFirst = name == "0";
  if (!isFirst && name != "1") return TableLabel(name);
  if (test.name == catalogue::chi_square::kCard.element) return isFirst ? "Observed" : "Expected";
  if (test.name == catalogue::binomial::kCard.element)
    return isFirst ? "First class %" : "Second class %";
  if (test.name == catalogue::cochran_q::kCard.element) return isFirst ? "Success %" : "Failure %";
  return name;
}

std::size_t ColumnCount(const ResultTable& table) {
  std::size_t count = table.columnNames.size();
  for (const auto& row : table.rows) count = std::max(count, row.size());
  return count;
}

std::string TableCaption(const ResultDocument& document, const ResultTest& test,
                         const ResultTable& table) {
  std::string caption = TableLabel(table.name);
  if (table.name == kCrossTable) {
    caption += " of " + CrossedField(document, test, 0) + " (rows) and " +
               CrossedField(document, test, 1) + " (columns)";
    return caption;
  }
  const std::string success = SuccessPhrase(document, test);
  if (!success.empty()) return caption + "; success: " + success;
  const std::string firstClass = FirstClassPhrase(document, test);
  return caption + (firstClass.empty() ? "" : "; first class: " + firstClass);
}

std::string GroupTitle(const ResultDocument& document, const ResultTest& test,
                       const ResultGroup& group) {
  std::string title;
  for (const std::int32_t code : group.codes) {
    if (!title.empty()) title += ", ";
    title += SampleTitle(document, test, code);
  }
  return title;
}

std::string PositionTitle(const ResultDocument& document, const ResultTest& test,
                          const ResultComparison& comparison, std::string_view cell) {
  const auto position = FigureNumber(cell);
  if (!position || !(*position >= 0.0) ||
      *position >= static_cast<double>(comparison.order.size())) {
    return std::string(cell);
  }
  return SampleTitle(document, test, comparison.order[static_cast<std::size_t>(*position)]);
}

std::string ChoiceWords(const ResultTest& test) {
  return "Chosen because " + test.chosenBecause + ".";
}

std::string MessageKindWord(const ResultMessage& message) {
  return message.type == "helpMessage" ? "note" : message.type;
}

std::string MessageWords(const ResultDocument& document, const ResultTest& test,
                         const ResultMessage& message) {
  const FieldNames fieldTitle = [&document](std::size_t index) -> std::optional<std::string> {
    if (index >= document.fields.size()) return std::nullopt;
    return document.fields[index].Title();
  };
  auto named = message.namedParameters;
  auto positional = message.parameters;
  const catalogue::ToldCode* const told = catalogue::FindCode(message.code);
  if (told != nullptr && told->code.parameters == catalogue::Meaning::Plain) {
    for (std::string& each : positional) each = FigureText(each);
    for (auto& [name, text] : named) text = FigureText(text);
  }
  // The sample stands by its position among the stepwise ones, in some tests twice.
  if (message.code == catalogue::run::kSampleStandsAlone) {
    for (auto& [name, text] : named) {
      text = PositionTitle(document, test, test.stepwise, text.substr(0, text.find(';')));
    }
  }
  return FillMessage(message.code, positional, named, fieldTitle);
}

std::string AdjustedCell(const ResultTest& test) {
  return test.adjustedSignificance ? SignificanceCell(NumberText(*test.adjustedSignificance)) : "";
}

std::string AdjustmentWords(const ResultDocument& document) {
  return "Adjusted over the tests after " + std::string(AdjustmentTitle(document.adjustment)) +
         "; decisions go by the significance that is not adjusted.";
}

std::string TraceWords(const ReportTrace& trace) {
  std::string words = "Made by " + trace.program + " at " + trace.made + " from " + trace.file;
  if (!trace.bytes.empty()) {
    words += " (" + trace.bytes + " bytes, written at " + trace.changed + ")";
  }
  return words + ": " + trace.command + FieldsWords(trace.fields);
}

}  // namespace npar_host
