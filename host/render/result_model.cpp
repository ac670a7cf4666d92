#include "host/render/result_model.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <system_error>

#include "host/data/input_error.h"
#include "host/data/number.h"
#include "host/data/xml_reader.h"

namespace npar_host {
namespace {

std::vector<std::string> Texts(const TextRows::Row& row) { return {row.begin(), row.end()}; }

// Items of a ";"-joined text, as AddCells reads them.
std::vector<std::string> SplitCells(std::string_view text) {
  TextRows rows;
  rows.AddRow();
  AddCells(rows, text);
  return Texts(rows[0]);
}

// A category's value that is text stands as an item of a list would.
std::string CategoryValue(const std::string& text, bool isText) {
  if (!isText || text.find('\\') == std::string::npos) return text;
  const std::vector<std::string> cells = SplitCells(text);
  return cells.size() == 1 ? cells.front() : text;
}

std::vector<std::int32_t> SplitCodes(std::string_view text) {
  std::vector<std::int32_t> codes;
  for (const std::string& cell : SplitCells(text)) {
    std::int32_t code = -1;
    std::from_chars(cell.data(), cell.data() + cell.size(), code);
    codes.push_back(code);
  }
  return codes;
}

std::string_view Name(pugi::xml_node node) { return node.attribute("name").as_string(); }

pugi::xml_node Named(pugi::xml_node parent, const char* element, const char* name) {
  return parent.find_child_by_attribute(element, "name", name);
}

std::string AttributeRow(pugi::xml_node parent, const char* name) {
  return Named(parent, "Attribute", name).attribute("value").as_string();
}

double Number(pugi::xml_node node, const char* attribute, double missing = 0.0) {
  return FigureNumber(node.attribute(attribute).as_string()).value_or(missing);
}

std::vector<ResultStatistic> ReadFigures(pugi::xml_node table, const std::string& group = {}) {
  std::vector<ResultStatistic> figures;
  for (const pugi::xml_node child : table.children()) {
    if (std::strcmp(child.name(), "Attribute") == 0) {
      figures.push_back({group, std::string(Name(child)), child.attribute("value").as_string()});
    } else if (std::strcmp(child.name(), "StructuredTable") == 0) {
      for (auto& figure : ReadFigures(child, std::string(Name(child)))) figures.push_back(figure);
    }
  }
  return figures;
}

ResultTable ReadTable(pugi::xml_node node) {
  ResultTable table;
  table.name = Name(node);
  table.rowNames = SplitCells(node.child("RowNames").text().as_string());
  table.columnNames = SplitCells(node.child("ColumnNames").text().as_string());
  for (const pugi::xml_node row : node.children("Row")) {
    table.rows.AddRow();
    AddCells(table.rows, row.text().as_string());
  }
  return table;
}

// The table "Interval": a row of counts above a row of values.
std::vector<ResultBin> ReadBins(pugi::xml_node parent, Bins wanted) {
  std::vector<ResultBin> bins;
  if (wanted == Bins::LeftOut) return bins;
  const ResultTable table = ReadTable(Named(parent, "SimpleTable", "Interval"));
  if (table.rows.size() != 2) return bins;
  const std::size_t count = std::min(table.rows[0].size(), table.rows[1].size());
  for (std::size_t i = 0; i < count; ++i) {
    bins.push_back({FigureNumber(table.rows[0][i]).value_or(0.0),
                    FigureNumber(table.rows[1][i]).value_or(0.0)});
  }
  return bins;
}

ResultDistribution ReadDistribution(pugi::xml_node table, Bins bins) {
  return {ReadFigures(table), ReadBins(table, bins)};
}

ResultMessage ReadMessage(pugi::xml_node node) {
  ResultMessage message;
  for (const ResultStatistic& row : ReadFigures(node)) {
    if (row.name == "code") {
      message.code = static_cast<std::int32_t>(FigureNumber(row.text).value_or(0.0));
    } else if (row.name == "type") {
      message.type = row.text;
    } else if (row.name.starts_with('%')) {
      message.parameters.push_back(row.text);
    } else if (row.name != "paramNum") {
      message.namedParameters.emplace_back(row.name, row.text);
    }
  }
  return message;
}

ResultGroup ReadGroup(pugi::xml_node node, Bins bins) {
  ResultGroup group;
  group.codes = SplitCodes(AttributeRow(node, "GroupIndex"));
  group.figures = ReadFigures(node);
  std::erase_if(group.figures, [](const auto& figure) { return figure.name == "GroupIndex"; });
  group.bins = ReadBins(node, bins);
  return group;
}

ResultBoxPlot ReadBoxPlot(pugi::xml_node node) {
  ResultBoxPlot plot;
  const auto codes = SplitCodes(AttributeRow(node, "GroupIndex"));
  plot.code = codes.empty() ? -1 : codes.front();
  if (const auto rank = Named(node, "Attribute", "MeanOfRank")) {
    plot.meanRank = rank.attribute("value").as_string();
  }
  const ResultTable box = ReadTable(Named(node, "SimpleTable", "Box"));
  if (!box.rows.empty() && box.rows[0].size() == 5) plot.fiveNumbers = Texts(box.rows[0]);
  const ResultTable outliers = ReadTable(Named(node, "SimpleTable", "Outliers"));
  if (outliers.rows.empty()) return plot;
  for (std::size_t i = 0; i < outliers.rows[0].size(); ++i) {
    const bool hasId = outliers.rows.size() > 1 && i < outliers.rows[1].size();
    const std::string_view id = hasId ? outliers.rows[1][i] : "";
    plot.outliers.push_back({std::string(outliers.rows[0][i]), std::string(id), ""});
  }
  return plot;
}

ResultComparison ReadComparison(pugi::xml_node node, const char* infoName) {
  ResultComparison comparison;
  comparison.present = true;
  const ResultTable info = ReadTable(Named(node, "SimpleTable", infoName));
  if (!info.rows.empty()) {
    for (const std::string_view cell : info.rows[0]) {
      const auto codes = SplitCodes(cell);
      comparison.order.push_back(codes.empty() ? -1 : codes.front());
    }
  }
  if (info.rows.size() > 1) comparison.values = Texts(info.rows[1]);
  comparison.content = ReadTable(Named(node, "SimpleTable", "Content"));
  return comparison;
}

void ReadCondition(pugi::xml_node node, ResultTest& test) {
  for (const ResultStatistic& row : ReadFigures(node)) {
    if (row.name == "ConditionKey") {
      test.conditionKey = row.text;
    } else {
      test.conditionParameters.push_back(row.text);
    }
  }
}

// "Group" or a name such as "Group0" or "VariableInformation2".
bool NamesGroup(std::string_view name) {
  for (const std::string_view prefix : {"Group", "VariableInformation"}) {
    if (name.starts_with(prefix) &&
        name.find_first_not_of("0123456789", prefix.size()) == std::string_view::npos) {
      return true;
    }
  }
  return false;
}

ResultExtended ReadExtended(pugi::xml_node node) {
  ResultExtended extended{ReadFigures(node), {}};
  for (const pugi::xml_node table : node.children("SimpleTable")) {
    extended.tables.push_back(ReadTable(table));
  }
  return extended;
}

void ReadTestTable(pugi::xml_node node, ResultTest& test, Bins bins) {
  const std::string_view name = Name(node);
  if (name == "Condition") {
    ReadCondition(node, test);
  } else if (name == "WarningMessages") {
    for (const pugi::xml_node message : node.children("StructuredTable")) {
      test.messages.push_back(ReadMessage(message));
    }
  } else if (name == "StatisticsResult") {
    test.statistics = ReadFigures(node);
  } else if (name == "ContinuousDistribution") {
    test.differences = ReadDistribution(node, bins);
  } else if (name == "Asymptotic" || name == "ConfidenceInterval") {
    test.intervals.push_back({AttributeRow(node, "computeECIMethod"),
                              AttributeRow(node, "Estimate"), AttributeRow(node, "Lower"),
                              AttributeRow(node, "Upper")});
  } else if (name == "BoxPlotInfo") {
    for (const pugi::xml_node group : node.children("StructuredTable")) {
      test.boxPlots.push_back(ReadBoxPlot(group));
    }
  } else if (name == "PairwiseResult") {
    test.pairwise = ReadComparison(node, "PairwiseInfo");
  } else if (name == "StepwiseResult") {
    test.stepwise = ReadComparison(node, "StepwiseInfo");
  } else if (name == "ValsNotInTheCategoreis") {
    for (const ResultStatistic& row : ReadFigures(node)) test.unknownValues.push_back(row.text);
  } else if (name == "ExtendedFigures") {
    test.extended = ReadExtended(node);
  } else if (NamesGroup(name)) {
    test.groups.push_back(ReadGroup(node, bins));
  } else {
    for (const ResultStatistic& figure : ReadFigures(node)) {
      test.details.push_back({std::string(name), figure.name, figure.text});
    }
    for (const pugi::xml_node table : node.children("SimpleTable")) {
      test.tables.push_back(ReadTable(table));
      test.tables.back().name = name;
    }
  }
}

ResultTest ReadTest(pugi::xml_node node, Bins bins) {
  ResultTest test;
  test.name = Name(node);
  test.type = node.attribute("type").as_string();
  test.classification = node.attribute("classification").as_string();
  test.decision = node.attribute("decision").as_string();
  for (const pugi::xml_node table : node.children("StructuredTable"))
    ReadTestTable(table, test, bins);
  // The one interval of an estimate: the estimate stands among the statistics.
  if (const std::string* estimate = test.Statistic("Estimate")) {
    for (ResultInterval& interval : test.intervals) interval.estimate = *estimate;
  }
  return test;
}

ResultField ReadField(pugi::xml_node node) {
  ResultField field;
  field.name = Name(node);
  field.label = node.attribute("displayName").as_string();
  field.isCategorical = std::strcmp(node.attribute("optype").as_string(), "categorical") == 0;
  field.dataType = node.attribute("dataType").as_string();
  for (const pugi::xml_node value : node.children("Value")) {
    field.categories.push_back(
        {CategoryValue(value.attribute("value").as_string(), field.dataType == "string"),
         value.attribute("displayValue").as_string()});
  }
  return field;
}

void ReadFieldInfos(pugi::xml_node infos, std::vector<ResultField>& fields, Bins bins) {
  for (const pugi::xml_node info : infos.children("FieldInfo")) {
    const std::size_t index = info.attribute("varIndex").as_uint(~0u);
    if (index < fields.size()) {
      fields[index].distribution = ReadDistribution(info.child("StructuredTable"), bins);
    }
  }
}

}  // namespace

const std::string* ResultTest::Statistic(std::string_view name) const {
  for (const ResultStatistic& statistic : statistics) {
    if (statistic.group.empty() && statistic.name == name) return &statistic.text;
  }
  return nullptr;
}

bool ResultTest::Failed() const {
  return std::ranges::any_of(messages, [](const auto& message) { return message.type == "error"; });
}

std::vector<std::size_t> ResultTest::ConditionFields(std::size_t position,
                                                     std::size_t fieldCount) const {
  std::vector<std::size_t> fields;
  if (position >= conditionParameters.size()) return fields;
  for (const std::string& cell : SplitCells(conditionParameters[position])) {
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), index);
    const bool whole = error == std::errc() && end == cell.data() + cell.size();
    if (whole && index < fieldCount) fields.push_back(index);
  }
  return fields;
}

ResultDocument ReadResultDocument(std::string text, std::string_view name, Bins bins) {
  pugi::xml_document xml;
  ReadXml(xml, text, name, pugi::parse_default | pugi::parse_embed_pcdata);
  std::string().swap(text);
  const pugi::xml_node root = xml.child("StatXML");
  const pugi::xml_node output = root.child("Extension").child("NPAROutput");
  if (!output) {
    throw InputError(std::string(name) +
                     ": this XML is no result document: it holds no NPAROutput in a StatXML");
  }
  ResultDocument document;
  document.modelId = root.child("PMMLModel").attribute("modelID").as_string();
  const pugi::xml_node application = output.child("Header").child("Application");
  document.application = Name(application);
  document.applicationVersion = application.attribute("version").as_string();
  const pugi::xml_node counts =
      root.child("DescriptiveModel").child("DescriptiveSummary").child("Counts");
  document.totalCount = Number(counts, "totalCount");
  document.totalFreq = Number(counts, "totalFreq");
  document.droppedCount = Number(counts, "droppedCount");
  document.droppedFreq = Number(counts, "droppedFreq");
  document.badWeightCount = Number(counts, "badWeightCount");
  for (const pugi::xml_node field : output.child("DataDictionary").children("DataField")) {
    document.fields.push_back(ReadField(field));
  }
  const pugi::xml_node tests = output.child("NonParametricTests");
  document.sigLevel = Number(tests, "sigLevel", document.sigLevel);
  document.confidenceLevel = Number(tests, "confidenceLevel", document.confidenceLevel);
  document.listwise = std::strcmp(tests.attribute("missingTreatment").as_string(), "listwise") == 0;
  for (const pugi::xml_node test : tests.children("Algorithm")) {
    document.tests.push_back(ReadTest(test, bins));
  }
  ReadFieldInfos(output.child("FieldInfos"), document.fields, bins);
  return document;
}

void NameCases(ResultDocument& document, const CaseNames& names) {
  for (ResultTest& test : document.tests) {
    for (ResultBoxPlot& plot : test.boxPlots) {
      for (ResultOutlier& outlier : plot.outliers) {
        if (const auto identifier = FigureNumber(outlier.caseId)) {
          outlier.caseName = names(*identifier);
        }
      }
    }
  }
}

std::optional<double> FigureNumber(std::string_view text) {
  double number = 0.0;
  if (!ParseNumber(text, number)) return std::nullopt;
  return number;
}

}  // namespace npar_host
