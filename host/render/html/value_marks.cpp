#include "host/render/html/value_marks.h"

#include <algorithm>
#include <cmath>

#include "host/render/extended_figures.h"

namespace npar_host {

std::vector<double> GroupValues(const ResultDocument& document, const ResultTest& test,
                                const std::vector<std::int32_t>& codes) {
  const auto tested = test.ConditionFields(0, document.fields.size());
  const auto groups = test.ConditionFields(1, document.fields.size());
  if (tested.empty() || groups.empty()) return {};
  std::vector<double> values;
  for (const auto& record : CompleteRecords(document, {tested.front(), groups.front()})) {
    const bool isIn = std::ranges::any_of(
        codes, [&record](std::int32_t code) { return record[1] == static_cast<double>(code); });
    if (isIn) values.push_back(record[0]);
  }
  return values;
}

std::vector<double> FieldValues(const ResultDocument& document, const ResultTest& test) {
  std::vector<double> values;
  const auto tested = test.ConditionFields(0, document.fields.size());
  for (const auto& record : CompleteRecords(document, tested)) values.push_back(record.front());
  return values;
}

std::vector<std::vector<double>> CompleteRecords(const ResultDocument& document,
                                                 const std::vector<std::size_t>& fields) {
  std::vector<std::vector<double>> records;
  if (!document.values || fields.empty()) return records;
  const auto& columns = document.values->fields;
  const auto isThere = [&columns](std::size_t field) { return field < columns.size(); };
  if (!std::ranges::all_of(fields, isThere)) return records;
  for (std::size_t i = 0; i < columns[fields.front()].size(); ++i) {
    std::vector<double> record;
    record.reserve(fields.size());
    for (const std::size_t field : fields) {
      record.push_back(i < columns[field].size() ? columns[field][i] : NAN);
    }
    if (std::ranges::all_of(record, [](double value) { return std::isfinite(value); })) {
      records.push_back(std::move(record));
    }
  }
  return records;
}

void DrawValues(Drawing& drawing, std::vector<double> values, const Scale& across, double y,
                double spread) {
  // Multiples of the golden ratio fill an interval evenly, however many there are; neighbours by
  // value are neighbours there, so that equal values lie beside each other.
  constexpr double kGoldenRatio = 0.6180339887498949;
  std::ranges::sort(values);
  Drawing::Points points;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double turn = static_cast<double>(i + 1) * kGoldenRatio;
    points.emplace_back(across(values[i]), y + spread * (2.0 * (turn - std::floor(turn)) - 1.0));
  }
  drawing.Dots(points, "values");
}

std::optional<Quartiles> SampleQuartiles(const ResultTest& test, std::size_t position) {
  const bool areFields = test.classification == "Related_Samples";
  const char* const name = areFields ? "Fields" : "Groups";
  if (!test.extended) return std::nullopt;
  const auto table = std::ranges::find(test.extended->tables, name, &ResultTable::name);
  if (table == test.extended->tables.end()) return std::nullopt;
  const bool hasGroups = position < test.groups.size();
  const ExtendedColumns columns(test, name);
  const auto row = hasGroups ? columns.RowOfGroup(test, position) : std::optional(position);
  const std::vector<std::string> cells = columns.Cells(row);
  Quartiles quartiles;
  const std::array<const char*, 3> names = {"LowerQuartile", "Median", "UpperQuartile"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto column = std::ranges::find(table->columnNames, names[i]);
    if (column == table->columnNames.end()) return std::nullopt;
    const auto figure =
        FigureNumber(cells[static_cast<std::size_t>(column - table->columnNames.begin())]);
    if (!figure || !std::isfinite(*figure)) return std::nullopt;
    quartiles[i] = *figure;
  }
  return quartiles;
}

void DrawBox(Drawing& drawing, const Quartiles& quartiles, const Scale& across, double y,
             double half) {
  const double left = across(quartiles[0]);
  const double median = across(quartiles[1]);
  drawing.Box(left, y - half, across(quartiles[2]) - left, 2.0 * half, "box");
  drawing.Line(median, y - half, median, y + half, "median");
}

}  // namespace npar_host
