#include "host/render/table_words.h"

#include <algorithm>
#include <optional>

#include "host/messages/messages.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::string_view kCrossTable = "CategoryFieldsComparison";

std::string CrossedField(const ResultDocument& document, const ResultTest& test,
                         std::size_t position) {
  const auto titles = FieldTitles(document, test, position);
  return titles.empty() ? "(unknown field)" : titles.front();
}

}  // namespace

std::string RowTitle(const ResultDocument& document, const ResultTest& test,
                     const ResultTable& table, std::size_t row) {
  const bool isCross = table.name == kCrossTable;
  if (row >= table.rowNames.size()) {
    if (!isCross || !table.columnNames.empty()) return {};
    return row == 0 ? "success" : "failure";
  }
  const std::string& name = table.rowNames[row];
  if (isCross) return name;
  const auto number = FigureNumber(name);
  if (!number) return TableLabel(name);
  const auto code = static_cast<std::int32_t>(*number);
  if (test.classification != "One_Sample") return SampleTitle(document, test, code);
  const auto fields = test.ConditionFields(0, document.fields.size());
  return fields.empty() ? name : CategoryTitle(document.fields[fields[0]], code);
}

std::string ColumnTitle(const ResultTest& test, const ResultTable& table, std::size_t column) {
  const bool isCross = table.name == kCrossTable;
  if (column >= table.columnNames.size()) {
    if (!isCross) return {};
    return column == 0 ? "success" : "failure";
  }
  const std::string& name = table.columnNames[column];
  if (isCross) return name;
  const bool isFirst = name == "0";
  if (!isFirst && name != "1") return TableLabel(name);
  if (test.name == "OChiSquare") return isFirst ? "Observed" : "Expected";
  if (test.name == "OBinomial") return isFirst ? "First class %" : "Second class %";
  if (test.name == "RCochransQ") return isFirst ? "Success %" : "Failure %";
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
  }
  return caption;
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

std::string MessageKindWord(const ResultMessage& message) {
  return message.type == "helpMessage" ? "note" : message.type;
}

std::string MessageWords(const ResultDocument& document, const ResultMessage& message) {
  const FieldNames fieldTitle = [&document](std::size_t index) -> std::optional<std::string> {
    if (index >= document.fields.size()) return std::nullopt;
    return document.fields[index].Title();
  };
  return FillMessage(message.code, message.parameters, message.namedParameters, fieldTitle);
}

}  // namespace npar_host
