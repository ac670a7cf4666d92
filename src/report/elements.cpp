#include "report/elements.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace {

void AddTextElement(XMLElement& parent, std::string_view name, std::string_view text) {
  XMLElement* element = parent.AddElement(name);
  if (!text.empty()) element->AddText(text);
}

XMLElement* AddNamedElement(XMLElement& parent, std::string_view name,
                            std::string_view nameAttribute) {
  XMLElement* element = parent.AddElement(name);
  element->AddAttribute("name", nameAttribute);
  return element;
}

void AppendInteger(std::string& out, std::int64_t value) {
  std::array<char, std::numeric_limits<std::int64_t>::digits10 + 2> text;
  out.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
}

}  // namespace

std::string NumberText(double value) { return ReplaceSep(value, "%.15g"); }

std::string IntegerText(std::int64_t value) { return std::to_string(value); }

std::string IndexText(std::int32_t variableIndex) {
  return variableIndex < 0 ? kMissingText : IntegerText(variableIndex);
}

std::string NumberOrMissingText(double value) {
  return value == QDMV::gMissingValue ? kMissingText : NumberText(value);
}

std::string JoinTexts(const std::vector<std::string>& items) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) text += ';';
    text += items[i];
  }
  return text;
}

std::string JoinNumbers(const std::vector<double>& items) {
  std::string text;
  for (const double item : items) {
    if (!text.empty()) text += ';';
    AppendNumber(text, item);
  }
  return text;
}

std::unique_ptr<XMLElement> CreateAlgorithm(std::string_view name, std::string_view type,
                                            std::string_view classification,
                                            std::string_view decision) {
  std::unique_ptr<XMLElement> algorithm(XMLElement::Create("Algorithm"));
  algorithm->AddAttribute("name", name);
  algorithm->AddAttribute("type", type);
  algorithm->AddAttribute("classification", classification);
  if (!decision.empty()) algorithm->AddAttribute("decision", decision);
  return algorithm;
}

const char* DecisionWord(QDStatus status, double sigLevel, double p) {
  if (status.IsError()) return "unknown";
  return sigLevel > p ? "reject" : "retain";
}

XMLElement* AddStructuredTable(XMLElement& parent, std::string_view name) {
  return AddNamedElement(parent, "StructuredTable", name);
}

void AddAttributeRow(XMLElement& parent, std::string_view name, std::string_view value) {
  XMLElement* row = AddNamedElement(parent, "Attribute", name);
  row->AddAttribute("value", value);
}

void AddAttributeRow(XMLElement& parent, std::string_view name, double value) {
  AddNamedElement(parent, "Attribute", name)->AddAttribute("value", value);
}

XMLElement* AddFigures(XMLElement& parent, std::string_view table,
                       std::initializer_list<FigureRow> rows) {
  XMLElement* element = AddStructuredTable(parent, table);
  for (const FigureRow& row : rows) {
    if (row.text) AddAttributeRow(*element, row.name, *row.text);
  }
  return element;
}

XMLElement* AddNormalStatistics(XMLElement& parent, std::initializer_list<FigureRow> rows,
                                const NormalFigures& figures, std::optional<double> exactSig) {
  XMLElement* element = AddFigures(parent, "StatisticsResult", rows);
  AddAttributeRow(*element, "StandardError", figures.standardError);
  AddAttributeRow(*element, "StandardTestStatistic", figures.z);
  AddAttributeRow(*element, "AsymptoticSig2Tailed", figures.sig);
  if (exactSig) AddAttributeRow(*element, "ExactSig2Tailed", *exactSig);
  return element;
}

XMLElement* AddSimpleTable(XMLElement& parent, std::string_view name, std::string_view rowNames,
                           std::string_view columnNames) {
  XMLElement* table = AddNamedElement(parent, "SimpleTable", name);
  AddTextElement(*table, "RowNames", rowNames);
  AddTextElement(*table, "ColumnNames", columnNames);
  return table;
}

void AddRow(XMLElement& simpleTable, std::string_view cells) {
  AddTextElement(simpleTable, "Row", cells);
}

void AddIntervalTable(XMLElement& parent, std::string_view counts, std::string_view values) {
  XMLElement* table = AddSimpleTable(parent, "Interval", "count;value", "");
  AddRow(*table, counts);
  AddRow(*table, values);
}

namespace {

struct IntervalTexts {
  std::string counts;
  std::string values;
};

IntervalTexts TextsOf(const std::vector<HistogramBin>& bins) {
  constexpr std::size_t kUsualFilled = 64;  // of the bins
  constexpr std::size_t kUsualCount = 4;    // characters, with the separator
  constexpr std::size_t kUsualValue = 20;
  IntervalTexts texts;
  const std::size_t filled = std::min(bins.size(), kUsualFilled);
  texts.counts.reserve(filled * kUsualCount);
  texts.values.reserve(filled * kUsualValue);
  for (const HistogramBin& bin : bins) {
    if (bin.Count() <= 0) continue;
    if (!texts.counts.empty()) {
      texts.counts += ';';
      texts.values += ';';
    }
    AppendInteger(texts.counts, bin.Count());
    AppendNumber(texts.values, bin.Mean());
  }
  return texts;
}

}  // namespace

void AddIntervalTable(XMLElement& parent, const std::vector<HistogramBin>& bins) {
  const IntervalTexts texts = TextsOf(bins);
  AddIntervalTable(parent, texts.counts, texts.values);
}

void AddIntervalTableUnlessEmpty(XMLElement& parent, const std::vector<HistogramBin>& bins) {
  const IntervalTexts texts = TextsOf(bins);
  if (!texts.counts.empty()) AddIntervalTable(parent, texts.counts, texts.values);
}

void AddCondition(XMLElement& algorithm, std::string_view key,
                  const std::vector<std::string>& parameters) {
  XMLElement* condition = AddStructuredTable(algorithm, "Condition");
  AddAttributeRow(*condition, "ConditionKey", key);
  AddParameterRows(*condition, parameters);
}

void AddParameterRows(XMLElement& parent, const std::vector<std::string>& parameters) {
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    AddAttributeRow(parent, std::string(1, '%').append(std::to_string(i)), parameters[i]);
  }
}

void AddUnknownValues(XMLElement& parent, const std::vector<std::string>& texts,
                      std::string_view name) {
  if (texts.empty()) return;
  XMLElement* table = AddStructuredTable(parent, name);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    AddAttributeRow(*table, std::to_string(i), texts[i]);
  }
}
