#include "host/render/table_titles.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "host/messages/messages.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::int32_t kLoneSample = 220013;

const ResultField* TestedField(const ResultDocument& document, const ResultTest& test,
                               std::size_t position) {
  const auto fields = test.ConditionFields(position, document.fields.size());
  return fields.empty() ? nullptr : &document.fields[fields.front()];
}

// A row is named by a category code of the tested or the group field, a field's index, or a word.
std::string RowTitle(const ResultDocument& document, const ResultTest& test,
                     const std::string& name) {
  const auto number = FigureNumber(name);
  if (!number) return TableLabel(name);
  const auto code = static_cast<std::int32_t>(*number);
  if (test.classification != "One_Sample") return SampleTitle(document, test, code);
  const ResultField* field = TestedField(document, test, 0);
  return field == nullptr ? name : CategoryTitle(*field, code);
}

std::string ColumnTitle(const ResultTest& test, const std::string& name) {
  const bool isFirst = name == "0";
  if (!isFirst && name != "1") return TableLabel(name);
  if (test.name == "OChiSquare") return isFirst ? "Observed" : "Expected";
  if (test.name == "OBinomial") return isFirst ? "First class %" : "Second class %";
  if (test.name == "RCochransQ") return isFirst ? "Success %" : "Failure %";
  return name;
}

// The categories whose codes the detail lists, such as the successes of McNemar's rows.
std::string ClassTitle(const ResultTest& test, const ResultField* field, std::string_view detail,
                       const char* otherwise) {
  const auto found = std::ranges::find(test.details, detail, &ResultStatistic::name);
  if (found == test.details.end() || field == nullptr) return otherwise;
  ResultTest codes;
  codes.conditionParameters = {found->text};
  std::string title;
  for (const std::size_t code : codes.ConditionFields(0, field->categories.size())) {
    title += (title.empty() ? "" : ", ") + CategoryTitle(*field, static_cast<std::int32_t>(code));
  }
  return title.empty() ? otherwise : title;
}

TableTitles CrossTitles(const ResultDocument& document, const ResultTest& test,
                        const ResultTable& table) {
  const ResultField* const rows = TestedField(document, test, 0);
  const ResultField* const columns = TestedField(document, test, 1);
  TableTitles titles;
  titles.table = TableLabel(table.name) + " of " +
                 (rows == nullptr ? "(unknown field)" : rows->Title()) + " (rows) and " +
                 (columns == nullptr ? "(unknown field)" : columns->Title()) + " (columns)";
  const auto labelled = [](const ResultField* field, const std::string& name) {
    if (field == nullptr) return name;
    const auto found = std::ranges::find(field->categories, name, &ResultCategory::value);
    return found == field->categories.end() || found->label.empty() ? name : found->label;
  };
  for (const std::string& name : table.rowNames) titles.rows.push_back(labelled(rows, name));
  for (const std::string& name : table.columnNames) {
    titles.columns.push_back(labelled(columns, name));
  }
  if (table.columnNames.empty()) {
    titles.rows = {ClassTitle(test, rows, "RowSuccessList", "success"),
                   ClassTitle(test, rows, "RowFailList", "failure")};
    titles.columns = {ClassTitle(test, columns, "ColumnSuccessList", "success"),
                      ClassTitle(test, columns, "ColumnFailList", "failure")};
  }
  return titles;
}

}  // namespace

TableTitles TitlesOf(const ResultDocument& document, const ResultTest& test,
                     const ResultTable& table) {
  TableTitles titles;
  if (table.name == "CategoryFieldsComparison") {
    titles = CrossTitles(document, test, table);
  } else {
    titles.table = TableLabel(table.name);
    for (const auto& name : table.rowNames) titles.rows.push_back(RowTitle(document, test, name));
    for (const auto& name : table.columnNames) titles.columns.push_back(ColumnTitle(test, name));
  }
  std::size_t width = 0;
  for (const auto& row : table.rows) width = std::max(width, row.size());
  titles.rows.resize(table.rows.size());
  titles.columns.resize(width);
  return titles;
}

std::string PositionTitle(const ResultDocument& document, const ResultTest& test,
                          const ResultComparison& comparison, const std::string& cell) {
  const auto position = FigureNumber(cell);
  if (!position || !(*position >= 0.0) ||
      *position >= static_cast<double>(comparison.order.size())) {
    return cell;
  }
  return SampleTitle(document, test, comparison.order[static_cast<std::size_t>(*position)]);
}

std::string GroupTitle(const ResultDocument& document, const ResultTest& test,
                       const ResultGroup& group) {
  std::string title;
  for (const std::int32_t code : group.codes) {
    title += (title.empty() ? "" : ", ") + SampleTitle(document, test, code);
  }
  return title;
}

std::string MessageWords(const ResultDocument& document, const ResultTest& test,
                         const ResultMessage& message) {
  const FieldNames fieldTitle = [&](std::size_t index) -> std::optional<std::string> {
    if (index >= document.fields.size()) return std::nullopt;
    return document.fields[index].Title();
  };
  auto named = message.namedParameters;
  // The message names the sample by its position among the stepwise ones, some tests twice.
  if (message.code == kLoneSample) {
    for (auto& [name, text] : named) {
      text = PositionTitle(document, test, test.stepwise, text.substr(0, text.find(';')));
    }
  }
  return FillMessage(message.code, message.parameters, named, fieldTitle);
}

}  // namespace npar_host
