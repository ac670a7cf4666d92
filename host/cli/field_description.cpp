#include "host/cli/field_description.h"

#include <algorithm>
#include <cmath>

#include "host/data/number.h"
#include "host/request/field_inference.h"
#include "host/request/field_list.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr std::size_t kClasses = 12;      // of a histogram
constexpr std::size_t kMostListed = 100;  // categories
constexpr std::size_t kMostOfTwoClasses = 2;
constexpr std::size_t kMostGroups = 12;  // that a test would be suggested for
constexpr std::size_t kMostCommands = 3;

/// Counts cells by their code in a pool; texts are codes already.
std::vector<std::size_t> CountByCode(const Column& column, NumberPool& pool) {
  std::vector<std::size_t> counts(column.isText ? column.texts.Size() : 0);
  column.ForEachCell([&](double cell) {
    if (column.IsMissing(cell)) return;
    const std::size_t code = column.isText ? static_cast<std::size_t>(cell) : pool.Add(cell);
    if (code >= counts.size()) counts.resize(code + 1);
    ++counts[code];
  });
  return counts;
}

void MeasureRange(const std::vector<std::size_t>& counts, const NumberPool& pool,
                  FieldDescription& field) {
  for (std::size_t code = 0; code < pool.Size(); ++code) {
    const double value = pool[code];
    if (!std::isfinite(value)) continue;
    field.lowest = field.hasRange ? std::min(field.lowest, value) : value;
    field.highest = field.hasRange ? std::max(field.highest, value) : value;
    field.hasRange = true;
  }
  const double width = field.highest / kClasses - field.lowest / kClasses;
  if (!(width > 0.0)) return;
  field.histogram.assign(kClasses, 0);
  for (std::size_t code = 0; code < pool.Size(); ++code) {
    if (!std::isfinite(pool[code])) continue;
    const double place = std::floor((pool[code] - field.lowest) / width);
    const double last = static_cast<double>(kClasses - 1);
    field.histogram[static_cast<std::size_t>(std::clamp(place, 0.0, last))] += counts[code];
  }
}

void ListCategories(const std::vector<std::size_t>& counts, const Column& column,
                    const NumberPool& pool, FieldDescription& field) {
  for (std::size_t code = 0; code < counts.size(); ++code) {
    field.categories.emplace_back(
        column.isText ? std::string(column.texts[code]) : NumberText(pool[code]), counts[code]);
  }
  std::ranges::stable_sort(field.categories,
                           [](const auto& a, const auto& b) { return a.second > b.second; });
  if (field.categories.size() > kMostListed) field.categories.resize(kMostListed);
}

std::string WhyOf(const FieldDescription& field, const Column& column, const CsvReader& reader) {
  const ColumnFindings& found = field.findings;
  if (column.isText) {
    const bool isOdd = found.strays > 0 && found.numbers >= found.strays;
    if (!isOdd && found.numberNotation.empty()) return {};
    std::string why = StrayText(found, reader);
    if (!found.numberNotation.empty()) why += "; these are " + found.numberNotation;
    return why;
  }
  if (!field.IsContinuous()) return "since its cells hold no more than two different numbers";
  if (!found.IsLikeScale()) return {};
  return "whole numbers; --ordinal " + FieldArgument(field.name) + " if it is a scale";
}

FieldDescription DescribeField(const Dataset& data, std::size_t index, const CsvReader& reader) {
  const Column& column = data.columns[index];
  FieldDescription field;
  field.name = column.name;
  field.findings = FindInColumn(data, index, reader);
  NumberPool pool;
  const std::vector<std::size_t> counts = CountByCode(column, pool);
  field.different = counts.size();
  const bool isNominal = column.isText || field.different <= kMostOfTwoClasses;
  field.kind = isNominal ? "nominal" : "continuous";
  field.why = WhyOf(field, column, reader);
  if (!column.isText) MeasureRange(counts, pool, field);
  if (isNominal || field.different <= kMostGroups) ListCategories(counts, column, pool, field);
  if (column.isText) field.nearlyEqual = NearlyEqualTexts(column);
  return field;
}

}  // namespace

std::vector<FieldDescription> DescribeFields(const Dataset& data, const CsvReader& reader) {
  std::vector<FieldDescription> fields;
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    fields.push_back(DescribeField(data, i, reader));
  }
  return fields;
}

std::vector<std::string> SuggestCommands(const std::vector<FieldDescription>& fields,
                                         const std::string& path) {
  std::vector<std::string> measured;
  std::vector<std::string> groups;
  std::vector<std::string> scales;  // measured ones that may name groups too
  for (const FieldDescription& field : fields) {
    if (field.findings.strays > 0 && field.findings.numbers > 0) continue;  // to be mended first
    const bool isGroups = !field.IsContinuous() && field.different >= kMostOfTwoClasses &&
                          field.different <= kMostGroups;
    // Numbers that all differ and count the records up name them.
    const bool isNumbering =
        field.different == field.findings.records &&
        field.highest - field.lowest + 1.0 == static_cast<double>(field.different);
    const bool isScale = field.findings.IsLikeScale() && field.different <= kMostGroups;
    if (isScale) scales.push_back(FieldArgument(field.name));
    if (field.IsContinuous() && !isNumbering) measured.push_back(FieldArgument(field.name));
    if (isGroups) groups.push_back(FieldArgument(field.name));
  }
  const std::string start = "analyse " + ShellWord(path);
  const std::vector<std::string>& by = groups.empty() ? scales : groups;
  std::vector<std::string> commands;
  if (!measured.empty() && !by.empty() && measured.front() != by.front()) {
    commands.push_back(start + " --independent " + measured.front() + " --by " + by.front());
  }
  if (measured.size() > 1) {
    commands.push_back(start + " --related " + measured[0] + "," + measured[1]);
  }
  if (!groups.empty()) commands.push_back(start + " --one-sample " + groups.front());
  const bool isComplete = commands.size() == kMostCommands;
  if (!measured.empty() && !isComplete) {
    commands.push_back(start + " --one-sample " + measured.front());
  }
  return commands;
}

}  // namespace npar_host
