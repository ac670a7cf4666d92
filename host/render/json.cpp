#include "host/render/json.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <string_view>

#include "host/render/effect_size.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormatVersion = 1;
constexpr double kLastExactInteger = 9007199254740992.0;  // 2^53

// "TotalN" is "totalN".
std::string Key(std::string_view name) {
  std::string key(name);
  if (!key.empty() && key[0] >= 'A' && key[0] <= 'Z') key[0] = static_cast<char>(key[0] + 32);
  return key;
}

// A whole number is written without a point.
Json Number(double number) {
  if (!std::isfinite(number)) return nullptr;
  if (number == std::trunc(number) && std::abs(number) <= kLastExactInteger) {
    return static_cast<std::int64_t>(number);
  }
  return number;
}

// A cell of a table: a number, null for a missing one, a text for what is no finite number.
Json Cell(const std::string& text) {
  const auto number = FigureNumber(text);
  if (number && std::isfinite(*number)) return Number(*number);
  const std::string shown = FigureText(text);
  return shown.empty() ? Json(nullptr) : Json(shown);
}

void AddFigure(Json& object, const std::string& key, const std::string& text) {
  const Json cell = Cell(text);
  if (cell.is_string()) {
    object[key] = nullptr;
    object[key + "Text"] = cell;
  } else {
    object[key] = cell;
  }
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

Json Figures(const std::vector<ResultStatistic>& figures) {
  Json object = Json::object();
  for (const ResultStatistic& figure : figures) {
    // A cross table's own entries are codes, which its titles tell in words.
    if (figure.group == "CategoryFieldsComparison") continue;
    Json& target = figure.group.empty() ? object : object[Key(figure.group)];
    AddFigure(target, Key(figure.name), figure.text);
  }
  return object;
}

Json Bins(const std::vector<ResultBin>& bins) {
  Json list = Json::array();
  for (const ResultBin& bin : bins) {
    list.push_back({{"value", Number(bin.value)}, {"count", Number(bin.count)}});
  }
  return list;
}

Json Distribution(const std::optional<ResultDistribution>& distribution) {
  if (!distribution) return nullptr;
  return {{"statistics", Figures(distribution->figures)}, {"bins", Bins(distribution->bins)}};
}

Json FieldObject(const ResultField& field) {
  Json categories = Json::array();
  for (const ResultCategory& category : field.categories) {
    categories.push_back({{"value", category.value}, {"label", TextOrNull(category.label)}});
  }
  return {{"name", field.name},
          {"label", TextOrNull(field.label)},
          {"type", field.isCategorical ? "categorical" : "continuous"},
          {"dataType", field.dataType},
          {"categories", categories},
          {"distribution", Distribution(field.distribution)}};
}

const char* Family(const ResultTest& test) {
  if (test.classification == "One_Sample") return "oneSample";
  return test.classification == "Related_Samples" ? "related" : "independent";
}

// What one test or estimate says.
class TestObject {
 public:
  TestObject(const ResultDocument& document, const ResultTest& test)
      : document(document), test(test) {}

  [[nodiscard]] Json Object() const {
    Json object;
    object["name"] = test.name;
    object["title"] = TestTitle(test.name);
    object["kind"] = test.type == "hypothesis_test" ? "test" : "estimate";
    object["family"] = Family(test);
    object["fields"] = FieldNames();
    const ResultField* group = GroupField(document, test);
    object["groupField"] = group == nullptr ? Json(nullptr) : Json(group->name);
    object["hypothesis"] = TextOrNull(Hypothesis(document, test));
    object["decision"] = TextOrNull(test.decision);
    object["statistics"] = Figures(test.statistics);
    object["effectSize"] = Effect();
    object["intervals"] = Intervals();
    object["details"] = Figures(test.details);
    object["differences"] = Distribution(test.differences);
    object["groups"] = Groups();
    object["boxPlots"] = BoxPlots();
    object["tables"] = Tables();
    object["pairwise"] = Pairwise();
    object["stepwise"] = Stepwise();
    object["unknownValues"] = test.unknownValues;
    object["condition"] = {{"key", test.conditionKey}, {"parameters", test.conditionParameters}};
    object["messages"] = Messages();
    return object;
  }

 private:
  // The group field of independent samples has an entry of its own.
  [[nodiscard]] Json FieldNames() const {
    Json names = Json::array();
    const std::size_t positions = test.classification == "Related_Samples" ? 2 : 1;
    for (std::size_t position = 0; position < positions; ++position) {
      for (const std::size_t index : test.ConditionFields(position, document.fields.size())) {
        names.push_back(document.fields[index].name);
      }
    }
    return names;
  }

  [[nodiscard]] Json Effect() const {
    const auto effect = FindEffectSize(document, test);
    if (!effect) return nullptr;
    return {{"name", effect->name}, {"symbol", effect->symbol}, {"value", effect->value}};
  }

  [[nodiscard]] Json Intervals() const {
    Json list = Json::array();
    for (const ResultInterval& interval : test.intervals) {
      Json object{{"method", TextOrNull(interval.method)}};
      AddFigure(object, "estimate", interval.estimate);
      AddFigure(object, "lower", interval.lower);
      AddFigure(object, "upper", interval.upper);
      list.push_back(object);
    }
    return list;
  }

  [[nodiscard]] Json Groups() const {
    Json list = Json::array();
    for (const ResultGroup& group : test.groups) {
      Json labels = Json::array();
      for (const std::int32_t code : group.codes) {
        labels.push_back(SampleTitle(document, test, code));
      }
      list.push_back({{"labels", labels},
                      {"codes", group.codes},
                      {"statistics", Figures(group.figures)},
                      {"bins", Bins(group.bins)}});
    }
    return list;
  }

  [[nodiscard]] Json BoxPlots() const {
    constexpr const char* kFigures[] = {"lowest", "lowerQuartile", "median", "upperQuartile",
                                        "highest"};
    Json list = Json::array();
    for (const ResultBoxPlot& plot : test.boxPlots) {
      Json object{{"label", SampleTitle(document, test, plot.code)}, {"code", plot.code}};
      AddFigure(object, "meanRank", plot.meanRank.value_or(""));
      for (std::size_t i = 0; i < std::size(kFigures); ++i) {
        AddFigure(object, kFigures[i], i < plot.fiveNumbers.size() ? plot.fiveNumbers[i] : "");
      }
      object["outliers"] = Json::array();
      for (const ResultOutlier& outlier : plot.outliers) {
        Json item = Json::object();
        AddFigure(item, "value", outlier.value);
        AddFigure(item, "caseId", outlier.caseId);
        item["case"] = TextOrNull(outlier.Case());
        object["outliers"].push_back(item);
      }
      list.push_back(object);
    }
    return list;
  }

  [[nodiscard]] Json Tables() const {
    Json list = Json::array();
    for (const ResultTable& table : test.tables) {
      Json rows = Json::array();
      Json rowTitles = Json::array();
      Json columnTitles = Json::array();
      for (std::size_t i = 0; i < table.rows.size(); ++i) {
        rowTitles.push_back(RowTitle(document, test, table, i));
      }
      for (std::size_t i = 0; i < ColumnCount(table); ++i) {
        columnTitles.push_back(ColumnTitle(document, test, table, i));
      }
      for (const auto& cells : table.rows) {
        Json row = Json::array();
        for (const std::string& cell : cells) row.push_back(Cell(cell));
        rows.push_back(row);
      }
      list.push_back({{"name", Key(table.name)},
                      {"title", TableCaption(document, test, table)},
                      {"rowTitles", rowTitles},
                      {"columnTitles", columnTitles},
                      {"rows", rows}});
    }
    return list;
  }

  [[nodiscard]] Json Samples(const ResultComparison& comparison) const {
    Json list = Json::array();
    for (std::size_t i = 0; i < comparison.order.size(); ++i) {
      const std::int32_t code = comparison.order[i];
      Json object{{"label", SampleTitle(document, test, code)}, {"code", code}};
      AddFigure(object, "value", i < comparison.values.size() ? comparison.values[i] : "");
      list.push_back(object);
    }
    return list;
  }

  // The cells behind the two positions, under the columns' names.
  void AddComparisonFigures(Json& object, const ResultTable& content,
                            const std::vector<std::string>& cells) const {
    for (std::size_t i = 2; i < content.columnNames.size(); ++i) {
      AddFigure(object, Key(content.columnNames[i]), i < cells.size() ? cells[i] : "");
    }
  }

  [[nodiscard]] Json Pairwise() const {
    if (!test.pairwise.present) return nullptr;
    Json comparisons = Json::array();
    for (const auto& cells : test.pairwise.content.rows) {
      if (cells.size() < 2) continue;
      Json object{{"first", PositionTitle(document, test, test.pairwise, cells[0])},
                  {"second", PositionTitle(document, test, test.pairwise, cells[1])}};
      AddComparisonFigures(object, test.pairwise.content, cells);
      comparisons.push_back(object);
    }
    return {{"samples", Samples(test.pairwise)}, {"comparisons", comparisons}};
  }

  [[nodiscard]] Json Stepwise() const {
    if (!test.stepwise.present) return nullptr;
    Json subsets = Json::array();
    for (const auto& cells : test.stepwise.content.rows) {
      const auto first = cells.size() < 2 ? std::nullopt : FigureNumber(cells[0]);
      const auto last = cells.size() < 2 ? std::nullopt : FigureNumber(cells[1]);
      if (!first || !last || !(*first >= 0.0) || !(*last >= *first)) continue;
      Json object{{"samples", Json::array()}};
      for (auto i = static_cast<std::size_t>(*first);
           i < test.stepwise.order.size() && static_cast<double>(i) <= *last; ++i) {
        object["samples"].push_back(SampleTitle(document, test, test.stepwise.order[i]));
      }
      AddComparisonFigures(object, test.stepwise.content, cells);
      subsets.push_back(object);
    }
    return {{"samples", Samples(test.stepwise)}, {"subsets", subsets}};
  }

  [[nodiscard]] Json Messages() const {
    Json list = Json::array();
    for (const ResultMessage& message : test.messages) {
      list.push_back({{"code", message.code},
                      {"kind", MessageKindWord(message)},
                      {"text", MessageWords(document, test, message)},
                      {"parameters", message.parameters}});
    }
    return list;
  }

  const ResultDocument& document;
  const ResultTest& test;
};

}  // namespace

std::string RenderJson(const ResultDocument& document) {
  Json report;
  report["format"] = "npar-report";
  report["formatVersion"] = kFormatVersion;
  report["application"] = {{"name", document.application},
                           {"version", document.applicationVersion}};
  report["modelId"] = document.modelId;
  report["records"] = {{"count", Number(document.totalCount)},
                       {"weight", Number(document.totalFreq)},
                       {"dropped", Number(document.droppedCount)},
                       {"droppedWeight", Number(document.droppedFreq)},
                       {"badWeight", Number(document.badWeightCount)}};
  report["significanceLevel"] = Number(document.sigLevel);
  report["confidenceLevel"] = Number(document.confidenceLevel);
  report["missingTreatment"] = document.listwise ? "listwise" : "analysis";
  report["fields"] = Json::array();
  for (const ResultField& field : document.fields) report["fields"].push_back(FieldObject(field));
  report["tests"] = Json::array();
  for (const ResultTest& test : document.tests) {
    report["tests"].push_back(TestObject(document, test).Object());
  }
  // A text that is no UTF-8 gets replacement characters.
  return report.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace npar_host
