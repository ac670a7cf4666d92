#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/names.h"
#include "kit/statistics/normal.h"
#include "kit/summaries/univariate.h"

// The element forms that all tests share. Functions that add to a parent return the new element,
// which belongs to its parent.

/// Written for a value that does not exist.
inline constexpr const char* kMissingText = "__MISSING__";

/// "%.15g" in the C locale.
[[nodiscard]] std::string NumberText(double value);
[[nodiscard]] std::string IntegerText(std::int64_t value);
/// A variable index in decimal; "__MISSING__" for a negative one.
[[nodiscard]] std::string IndexText(std::int32_t variableIndex);
/// The number, or "__MISSING__" for the missing value.
[[nodiscard]] std::string NumberOrMissingText(double value);

/// Items joined with ";".
[[nodiscard]] std::string JoinTexts(const std::vector<std::string>& items);
[[nodiscard]] std::string JoinNumbers(const std::vector<double>& items);
template <std::integral Integer>
[[nodiscard]] std::string JoinIntegers(const std::vector<Integer>& items) {
  std::string text;
  for (const Integer item : items) {
    if (!text.empty()) text += ';';
    text += IntegerText(static_cast<std::int64_t>(item));
  }
  return text;
}

/// "Algorithm" with "name", "type", "classification" and, unless empty, "decision".
[[nodiscard]] std::unique_ptr<XMLElement> CreateAlgorithm(std::string_view name,
                                                          std::string_view type,
                                                          std::string_view classification,
                                                          std::string_view decision);
/// "unknown" on an error, else "reject" when sigLevel is above p, else "retain".
[[nodiscard]] const char* DecisionWord(QDStatus status, double sigLevel, double p);

/// "StructuredTable" with a name.
XMLElement* AddStructuredTable(XMLElement& parent, std::string_view name);
/// "Attribute" with "name" and "value".
void AddAttributeRow(XMLElement& parent, std::string_view name, std::string_view value);
void AddAttributeRow(XMLElement& parent, std::string_view name, double value);
template <std::integral Integer>
void AddAttributeRow(XMLElement& parent, std::string_view name, Integer value) {
  AddAttributeRow(parent, name, std::string_view(IntegerText(static_cast<std::int64_t>(value))));
}
/// One figure of a table: its name and its value. An absent value has no row.
struct FigureRow {
  FigureRow(std::string_view name, std::string text) : name(name), text(std::move(text)) {}
  FigureRow(std::string_view name, double value) : FigureRow(name, NumberText(value)) {}
  template <std::integral Integer>
  FigureRow(std::string_view name, Integer value)
      : FigureRow(name, IntegerText(static_cast<std::int64_t>(value))) {}
  FigureRow(std::string_view name, const std::optional<double>& value) : name(name) {
    if (value) text = NumberText(*value);
  }

  std::string_view name;
  std::optional<std::string> text;
};
/// "StructuredTable" with a name and an "Attribute" for each figure.
XMLElement* AddFigures(XMLElement& parent, std::string_view table,
                       std::initializer_list<FigureRow> rows);
/// "StatisticsResult" of a statistic that is held against the normal distribution: its rows, the
/// two-sided figures, and the exact significance where there is one.
XMLElement* AddNormalStatistics(XMLElement& parent, std::initializer_list<FigureRow> rows,
                                const NormalFigures& figures,
                                std::optional<double> exactSig = std::nullopt);

/// The texts as rows "%0", "%1", ...
void AddParameterRows(XMLElement& parent, const std::vector<std::string>& parameters);

/// "SimpleTable" with its "RowNames" and "ColumnNames"; rows follow.
XMLElement* AddSimpleTable(XMLElement& parent, std::string_view name, std::string_view rowNames,
                           std::string_view columnNames);
/// "Row" with its ";"-joined cells.
void AddRow(XMLElement& simpleTable, std::string_view cells);

/// The table "Interval": a row of counts, a row of values.
void AddIntervalTable(XMLElement& parent, std::string_view counts, std::string_view values);
/// "Interval" of the pairs whose count is above 0.
void AddIntervalTable(XMLElement& parent, const std::vector<HistogramBin>& bins);
/// As AddIntervalTable; nothing where no count is above 0.
void AddIntervalTableUnlessEmpty(XMLElement& parent, const std::vector<HistogramBin>& bins);
/// "Condition" with its key and "%0", "%1", ...
void AddCondition(XMLElement& algorithm, std::string_view key,
                  const std::vector<std::string>& parameters);
/// "ValsNotInTheCategoreis" (hosts read it so) with the texts named by their place; nothing for
/// none.
void AddUnknownValues(XMLElement& parent, const std::vector<std::string>& texts,
                      std::string_view name = "ValsNotInTheCategoreis");
