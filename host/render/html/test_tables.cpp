#include "host/render/html/test_tables.h"

#include <algorithm>

#include "host/data/number.h"
#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/extended_words.h"
#include "host/render/html/markup.h"
#include "host/render/listed.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

std::string LevelMarkup(std::string_view level) {
  return "<data value=\"" + Escaped(level) + "\">" + Escaped(AttainedText(level)) + "</data>";
}

std::string ShowMarkup(std::string_view name, std::string_view figure) {
  if (IsSignificanceName(name)) return SignificanceMarkup(figure);
  return IsLevelName(name) ? LevelMarkup(figure) : FigureMarkup(figure);
}

// Columns and cells that the extended figures add to a table.
void AddLabels(std::vector<std::string>& columns, const ExtendedColumns& further) {
  for (const std::string& label : further.Labels()) columns.push_back(Escaped(label));
}
void AddFurther(std::vector<std::string>& cells, const ExtendedColumns& further,
                std::optional<std::size_t> row) {
  for (const std::string& figure : further.Cells(row)) cells.push_back(FigureMarkup(figure));
}

std::string LimitsMarkup(const Limits& limits) {
  return "[" + FigureMarkup(limits.lower) + ", " + FigureMarkup(limits.upper) + "]";
}

void AddFigures(HtmlTable& table, const std::vector<ResultStatistic>& figures) {
  std::string group;
  for (const ResultStatistic& figure : figures) {
    const bool isRuns = figure.group == "MinimumRuns" || figure.group == "MaximumRuns";
    if (isRuns && figure.group != group) table.AddSubheading(Escaped(FigureLabel(figure.group)));
    group = figure.group;
    table.AddRow(Escaped(FigureLabel(figure.name)), {ShowMarkup(figure.name, figure.text)});
  }
}

std::vector<std::string> FigureCells(const std::vector<ResultStatistic>& figures) {
  std::vector<std::string> cells;
  cells.reserve(figures.size());
  for (const ResultStatistic& figure : figures) cells.push_back(FigureMarkup(figure.text));
  return cells;
}

std::string OutlierCell(const ResultBoxPlot& box) {
  std::string cell;
  for (const ResultOutlier& outlier : ListedOutliers(box)) {
    if (!cell.empty()) cell += ", ";
    cell += FigureMarkup(outlier.value);
    if (!outlier.Case().empty()) cell += " (case " + Escaped(outlier.Case()) + ")";
  }
  return cell.empty() ? "none" : "<div class=\"list\">" + OutlierCount(box) + cell + "</div>";
}

}  // namespace

std::string FiguresTable(const ResultDocument& document, const ResultTest& test,
                         const std::string& id) {
  HtmlTable table(id, "Statistics");
  if (test.differences) AddFigures(table, test.differences->figures);
  for (const ResultStatistic& detail : test.details) {
    // A cross table's own entries are codes that its labels already tell.
    if (detail.group == "CategoryFieldsComparison") continue;
    table.AddRow(Escaped(FigureLabel(detail.name, detail.group)), {FigureMarkup(detail.text)});
  }
  AddFigures(table, test.statistics);
  if (const auto exact = ExactBeside(test)) {
    table.AddRow(Escaped(ExtendedLabel(exact->name)), {ShowMarkup(exact->name, exact->text)});
  }
  if (const auto effect = FindEffectSize(document, test)) {
    const bool namesSymbol = effect->name.ends_with(" " + effect->symbol);
    table.AddRow(Escaped(effect->name + (namesSymbol ? "" : " " + effect->symbol)),
                 {FigureMarkup(NumberText(effect->value))}, "effect");
    if (const auto limits = EffectLimits(test, *effect)) {
      table.AddRow(PercentText(document.confidenceLevel) + " CI of " + Escaped(effect->symbol) +
                       " (" + Escaped(limits->method) + ")",
                   {LimitsMarkup(*limits)}, "effect");
    }
  }
  return table.IsEmpty() ? "" : table.Markup("figures");
}

std::string IntervalsTable(const ResultDocument& document, const ResultTest& test,
                           const std::string& id) {
  if (test.intervals.empty()) return {};
  HtmlTable table(id, PercentText(document.confidenceLevel) + " confidence intervals");
  const std::string_view attained = ExtendedFigure(test, "AttainedLevel");
  std::vector<std::string> columns{"Method", "Estimate", "Lower limit", "Upper limit"};
  if (!attained.empty()) columns.emplace_back("Level attained");
  table.SetColumns(columns);
  for (const ResultInterval& interval : test.intervals) {
    std::vector<std::string> cells{FigureMarkup(interval.estimate), FigureMarkup(interval.lower),
                                   FigureMarkup(interval.upper)};
    if (!attained.empty()) cells.push_back(LevelMarkup(attained));
    table.AddRow(Escaped(interval.method.empty() ? "Hodges-Lehmann" : FigureLabel(interval.method)),
                 cells);
  }
  return table.Markup(attained.empty() ? "" : "wide");
}

std::string GroupsTable(const ResultDocument& document, const ResultTest& test,
                        const std::string& id) {
  if (test.groups.empty() || test.groups.front().figures.empty()) return {};
  const bool areFields = test.classification == "Related_Samples";
  HtmlTable table(id, areFields ? "Fields" : "Groups");
  std::vector<std::string> columns{areFields ? "Field" : "Group"};
  for (const ResultStatistic& figure : test.groups.front().figures) {
    columns.push_back(Escaped(FigureLabel(figure.name)));
  }
  const ExtendedColumns further = GroupColumns(test);
  AddLabels(columns, further);
  table.SetColumns(columns);
  for (std::size_t i = 0; i < test.groups.size(); ++i) {
    std::vector<std::string> cells = FigureCells(test.groups[i].figures);
    AddFurther(cells, further, further.RowOfGroup(test, i));
    table.AddRow(Escaped(GroupTitle(document, test, test.groups[i])), cells);
  }
  return table.Markup(further.IsEmpty() ? "" : "wide");
}

std::string BoxesTable(const ResultDocument& document, const ResultTest& test,
                       const std::string& id) {
  if (test.boxPlots.empty()) return {};
  const bool hasRanks = test.boxPlots.front().meanRank.has_value();
  HtmlTable table(id, "Groups");
  std::vector<std::string> columns{"Group"};
  const ExtendedColumns further = BoxColumns(test);
  AddLabels(columns, further);
  if (hasRanks) columns.push_back("Mean rank");
  columns.insert(columns.end(), {"Lower whisker", "25\u00a0%", "Median", "75\u00a0%",
                                 "Upper whisker", "Outliers"});
  table.SetColumns(columns);
  for (const ResultBoxPlot& box : test.boxPlots) {
    std::vector<std::string> cells;
    AddFurther(cells, further, further.RowOf(box.code));
    if (hasRanks) cells.push_back(FigureMarkup(box.meanRank.value_or("")));
    for (std::size_t i = 0; i < 5; ++i) {
      cells.push_back(FigureMarkup(box.fiveNumbers.empty() ? "" : box.fiveNumbers[i]));
    }
    cells.push_back(OutlierCell(box));
    table.AddRow(Escaped(SampleTitle(document, test, box.code)), cells);
  }
  return table.Markup("wide");
}

std::string SamplesTable(const ResultDocument& document, const ResultTest& test,
                         const std::string& id) {
  const ExtendedSamplesTable samples = ExtendedSamples(document, test);
  if (samples.rows.empty()) return {};
  HtmlTable table(id, samples.caption);
  table.SetColumns(samples.columns);
  for (const auto& row : samples.rows) {
    std::vector<std::string> cells;
    for (std::size_t i = 1; i < row.size(); ++i) cells.push_back(FigureMarkup(row[i]));
    table.AddRow(Escaped(row.front()), cells);
  }
  return table.Markup();
}

std::string FurtherTable(const ResultDocument& document, const ResultTest& test,
                         const std::string& id) {
  const std::vector<FurtherFigure> figures = FurtherFigures(test);
  HtmlTable table(id, FurtherCaption(document, figures));
  for (const FurtherFigure& figure : figures) {
    table.AddRow(Escaped(figure.label), {FurtherCell(figure, ShowMarkup)});
  }
  if (table.IsEmpty()) return {};
  return "<details class=\"wide\"><summary>Further figures</summary>\n" + table.Markup("figures") +
         "</details>\n";
}

std::string FrequenciesTable(const ResultDocument& document, const ResultTest& test,
                             const ResultTable& table, const std::string& id) {
  if (table.Empty()) return {};
  HtmlTable shown(id, TableCaption(document, test, table));
  std::vector<std::string> columns{""};
  for (std::size_t i = 0; i < ColumnCount(table); ++i) {
    columns.push_back(Escaped(Isolated(ColumnTitle(document, test, table, i))));
  }
  const ExtendedColumns further(test, "Categories", {"Observed", "Expected"});
  AddLabels(columns, further);
  shown.SetColumns(columns);
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    std::vector<std::string> cells;
    for (const std::string_view cell : table.rows[i]) cells.push_back(FigureMarkup(cell));
    AddFurther(cells, further, i);
    shown.AddRow(Escaped(Isolated(RowTitle(document, test, table, i))), cells);
  }
  return shown.Markup();
}

}  // namespace npar_host
