#include "host/render/json.h"

#include <string_view>

#include "host/render/adjustment.h"
#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/headline.h"
#include "host/render/json_extended.h"
#include "host/render/json_values.h"
#include "host/render/json_writer.h"
#include "host/render/reading_notes.h"
#include "host/render/sentence.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr int kFormatVersion = 1;

// Written one by one, as lists of bins are most of a report.
void WriteBins(JsonWriter& out, const std::vector<ResultBin>& bins) {
  out.Key("bins");
  out.OpenArray();
  for (const ResultBin& bin : bins) {
    out.OpenObject();
    out.Member("value", Number(bin.value));
    out.Member("count", Number(bin.count));
    out.Close();
  }
  out.Close();
}

enum class Detail { Whole, WithoutBins };

void WriteDistribution(JsonWriter& out, std::string_view key,
                       const std::optional<ResultDistribution>& distribution, Detail detail) {
  if (!distribution) return out.Member(key, nullptr);
  out.Key(key);
  out.OpenObject();
  out.Member("statistics", Figures(distribution->figures));
  if (detail == Detail::Whole) WriteBins(out, distribution->bins);
  out.Close();
}

void WriteField(JsonWriter& out, const ResultField& field) {
  Json categories = Json::array();
  for (const ResultCategory& category : field.categories) {
    categories.push_back({{"value", category.value}, {"label", TextOrNull(category.label)}});
  }
  out.OpenObject();
  out.Member("name", field.name);
  out.Member("label", TextOrNull(field.label));
  out.Member("type", field.isCategorical ? "categorical" : "continuous");
  out.Member("dataType", field.dataType);
  out.Member("categories", categories);
  WriteDistribution(out, "distribution", field.distribution, Detail::Whole);
  out.Close();
}

Json Trace(const ReportTrace& trace) {
  Json fields = Json::array();
  for (const TracedField& field : trace.fields) {
    fields.push_back(
        {{"name", field.name}, {"measure", field.measure}, {"missing", field.missing}});
  }
  return {{"file", trace.file},
          {"bytes", Cell(trace.bytes)},
          {"changed", TextOrNull(trace.changed)},
          {"command", trace.command},
          {"program", trace.program},
          {"made", trace.made},
          {"fields", fields}};
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

  void WriteTo(JsonWriter& out, Detail detail) const {
    out.OpenObject();
    out.Member("name", test.name);
    out.Member("title", TestTitle(test.name));
    out.Member("kind", Kind());
    out.Member("family", Family(test));
    out.Member("fields", FieldNames());
    const ResultField* group = GroupField(document, test);
    out.Member("groupField", group == nullptr ? Json(nullptr) : Json(group->name));
    out.Member("hypothesis", TextOrNull(Hypothesis(document, test)));
    if (!test.chosenBecause.empty()) out.Member("chosenBecause", test.chosenBecause);
    if (!test.made.empty()) out.Member("made", test.made);
    out.Member("decision", TextOrNull(test.decision));
    out.Member("significance", DecidingFigure());
    out.Member("statistic", HeadFigure());
    out.Member("sentence", Sentence(document, test));
    out.Member("statistics", Figures(test.statistics));
    if (test.adjustedSignificance) {
      out.Member("adjustedSignificance", Number(*test.adjustedSignificance));
    }
    out.Member("effectSize", Effect());
    if (test.extended) out.Member("extended", ExtendedObject(document, test));
    out.Member("intervals", Intervals());
    out.Member("details", Figures(test.details));
    WriteDistribution(out, "differences", test.differences, detail);
    WriteGroups(out, detail);
    out.Member("boxPlots", BoxPlots());
    out.Member("tables", Tables());
    WritePairwise(out);
    out.Member("stepwise", Stepwise());
    out.Member("unknownValues", test.unknownValues);
    out.Member("condition", {{"key", test.conditionKey}, {"parameters", test.conditionParameters}});
    out.Member("messages", Messages());
    out.Member("notes", ReadingNotes(document, test));
    out.Close();
  }

  void WriteFiguresTo(JsonWriter& out) const {
    out.OpenObject();
    out.Member("name", test.name);
    out.Member("kind", Kind());
    out.Member("decision", TextOrNull(test.decision));
    out.Member("significance", DecidingFigure());
    out.Member("statistic", HeadFigure());
    out.Close();
  }

 private:
  [[nodiscard]] const char* Kind() const {
    return test.type == "hypothesis_test" ? "test" : "estimate";
  }

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

  [[nodiscard]] std::string ExactFigure(const Significance& deciding) const {
    if (deciding.isExact) return deciding.figure;
    const auto beside = ExactBeside(test);
    return beside && deciding.sides == 2 ? std::string(beside->text) : std::string();
  }

  [[nodiscard]] Json DecidingFigure() const {
    const auto significance = DecidingSignificance(test);
    if (!significance) return nullptr;
    Json object{{"kind", significance->isExact ? "exact" : "asymptotic"},
                {"sides", significance->sides}};
    AddFigure(object, "value", significance->figure);
    AddFigure(object, "exact", ExactFigure(*significance));
    AddFigure(object, "asymptotic", AsymptoticSignificance(test, *significance));
    return object;
  }

  [[nodiscard]] Json HeadFigure() const {
    const Headline headline = FindHeadline(document, test);
    if (headline.symbol.empty()) return nullptr;
    Json object{{"symbol", headline.symbol}};
    AddFigure(object, "value", headline.statistic);
    AddFigure(object, "degreeOfFreedom", headline.freedom);
    return object;
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

  void WriteGroups(JsonWriter& out, Detail detail) const {
    out.Key("groups");
    out.OpenArray();
    for (const ResultGroup& group : test.groups) {
      Json labels = Json::array();
      for (const std::int32_t code : group.codes) {
        labels.push_back(SampleTitle(document, test, code));
      }
      out.OpenObject();
      out.Member("labels", labels);
      out.Member("codes", group.codes);
      out.Member("statistics", Figures(group.figures));
      if (detail == Detail::Whole) WriteBins(out, group.bins);
      out.Close();
    }
    out.Close();
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
        for (const std::string_view cell : cells) row.push_back(Cell(cell));
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
                            const TextRows::Row& cells) const {
    for (std::size_t i = 2; i < content.columnNames.size(); ++i) {
      AddFigure(object, Key(content.columnNames[i]), i < cells.size() ? cells[i] : "");
    }
  }

  // Pair by pair: some thousand samples have millions.
  void WritePairwise(JsonWriter& out) const {
    if (!test.pairwise.present) return out.Member("pairwise", nullptr);
    out.Key("pairwise");
    out.OpenObject();
    out.Member("samples", Samples(test.pairwise));
    out.Member("judgedBy", TextOrNull(std::string(AdjustmentTitle(test.pairwise.adjustment))));
    const std::vector<double> holm = AdjustedPairs(test.pairwise, Adjustment::Holm);
    const std::vector<double> benjamini =
        AdjustedPairs(test.pairwise, Adjustment::BenjaminiHochberg);
    out.Key("comparisons");
    out.OpenArray();
    const TextRows& rows = test.pairwise.content.rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const TextRows::Row cells = rows[i];
      if (cells.size() < 2) continue;
      Json object{{"first", PositionTitle(document, test, test.pairwise, cells[0])},
                  {"second", PositionTitle(document, test, test.pairwise, cells[1])}};
      AddComparisonFigures(object, test.pairwise.content, cells);
      object["holmSig"] = Number(holm[i]);
      object["benjaminiHochbergSig"] = Number(benjamini[i]);
      out.Value(object);
    }
    out.Close();
    out.Close();
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

void WriteTests(const ResultDocument& document, JsonWriter& out, Detail detail) {
  out.OpenArray();
  for (const ResultTest& test : document.tests) TestObject(document, test).WriteTo(out, detail);
  out.Close();
}

}  // namespace

void RenderJson(const ResultDocument& document, const TextSink& sink) {
  JsonWriter out(sink);
  out.OpenObject();
  out.Member("format", "npar-report");
  out.Member("formatVersion", kFormatVersion);
  out.Member("application",
             {{"name", document.application}, {"version", document.applicationVersion}});
  out.Member("modelId", document.modelId);
  if (document.trace) out.Member("trace", Trace(*document.trace));
  out.Member("records", {{"count", Number(document.totalCount)},
                         {"weight", Number(document.totalFreq)},
                         {"dropped", Number(document.droppedCount)},
                         {"droppedWeight", Number(document.droppedFreq)},
                         {"badWeight", Number(document.badWeightCount)}});
  out.Member("significanceLevel", Number(document.sigLevel));
  out.Member("confidenceLevel", Number(document.confidenceLevel));
  if (document.adjustment != Adjustment::None) {
    out.Member("adjustment", AdjustmentTitle(document.adjustment));
  }
  out.Member("missingTreatment", document.listwise ? "listwise" : "analysis");
  out.Key("fields");
  out.OpenArray();
  for (const ResultField& field : document.fields) WriteField(out, field);
  out.Close();
  out.Key("tests");
  WriteTests(document, out, Detail::Whole);
  out.Close();
  out.Finish();
}

void RenderTestsJson(const ResultDocument& document, const TextSink& sink) {
  JsonWriter out(sink);
  WriteTests(document, out, Detail::WithoutBins);
  out.Finish();
}

void RenderFiguresJson(const ResultDocument& document, const TextSink& sink) {
  JsonWriter out(sink);
  out.OpenArray();
  for (const ResultTest& test : document.tests) TestObject(document, test).WriteFiguresTo(out);
  out.Close();
  out.Finish();
}

}  // namespace npar_host
