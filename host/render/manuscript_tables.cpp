#include "host/render/manuscript_tables.h"

#include "host/data/number.h"
#include "host/render/adjustment.h"
#include "host/render/effect_size.h"
#include "host/render/extended_figures.h"
#include "host/render/headline.h"
#include "host/render/pairs.h"
#include "host/render/significance.h"
#include "host/render/table_words.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

std::string Text(double number) { return FigureText(NumberText(number)); }

std::string IntervalText(const ResultInterval& interval) {
  return FigureText(interval.estimate) + " [" + FigureText(interval.lower) + ", " +
         FigureText(interval.upper) + "]";
}

std::string EffectText(const ResultTest& test, const EffectSize& effect) {
  const auto limits = EffectLimits(test, effect);
  return effect.symbol + " = " + Text(effect.value) +
         (limits ? " [" + FigureText(limits->lower) + ", " + FigureText(limits->upper) + "]" : "");
}

void AddFurther(std::vector<std::string>& row, const ExtendedColumns& further,
                std::optional<std::size_t> from) {
  for (const std::string& cell : further.Cells(from)) row.push_back(FigureText(cell));
}

ManuscriptTable GroupsTable(const ResultDocument& document, const ResultTest& test) {
  ManuscriptTable table{"Groups", {"Group"}, {}};
  if (test.groups.empty()) return table;
  for (const ResultStatistic& figure : test.groups.front().figures) {
    table.columns.push_back(FigureLabel(figure.name));
  }
  const ExtendedColumns further = GroupColumns(test);
  for (const std::string& label : further.Labels()) table.columns.push_back(label);
  if (table.columns.size() == 1) return table;
  for (std::size_t i = 0; i < test.groups.size(); ++i) {
    const ResultGroup& group = test.groups[i];
    table.rows.push_back({GroupTitle(document, test, group)});
    for (const ResultStatistic& figure : group.figures) {
      table.rows.back().push_back(FigureText(figure.text));
    }
    AddFurther(table.rows.back(), further, further.RowOfGroup(test, i));
  }
  return table;
}

ManuscriptTable SamplesTable(const ResultDocument& document, const ResultTest& test) {
  const ExtendedSamplesTable samples = ExtendedSamples(document, test);
  ManuscriptTable table{samples.caption, samples.columns, samples.rows};
  for (auto& row : table.rows) {
    for (std::size_t i = 1; i < row.size(); ++i) row[i] = FigureText(row[i]);
  }
  return table;
}

ManuscriptTable BoxesTable(const ResultDocument& document, const ResultTest& test) {
  constexpr std::size_t kLowerQuartile = 1, kMedian = 2, kUpperQuartile = 3;
  ManuscriptTable table{"Groups", {"Group"}, {}};
  if (test.boxPlots.empty()) return table;
  const bool haveRanks = test.boxPlots.front().meanRank.has_value();
  const ExtendedColumns further = BoxColumns(test);
  for (const std::string& label : further.Labels()) table.columns.push_back(label);
  if (haveRanks) table.columns.emplace_back("Mean rank");
  table.columns.insert(table.columns.end(), {"Median", "25 %", "75 %"});
  for (const ResultBoxPlot& box : test.boxPlots) {
    table.rows.push_back({SampleTitle(document, test, box.code)});
    AddFurther(table.rows.back(), further, further.RowOf(box.code));
    if (haveRanks) table.rows.back().push_back(FigureText(box.meanRank.value_or("")));
    for (const std::size_t i : {kMedian, kLowerQuartile, kUpperQuartile}) {
      table.rows.back().push_back(box.fiveNumbers.empty() ? "" : FigureText(box.fiveNumbers[i]));
    }
  }
  return table;
}

ManuscriptTable IntervalsTable(const ResultDocument& document, const ResultTest& test) {
  const std::string level = PercentText(document.confidenceLevel);
  ManuscriptTable table{level + " confidence intervals", {"Method", "Estimate", "Interval"}, {}};
  for (const ResultInterval& interval : test.intervals) {
    table.rows.push_back(
        {interval.method.empty() ? "Hodges-Lehmann" : FigureLabel(interval.method),
         FigureText(interval.estimate),
         "[" + FigureText(interval.lower) + ", " + FigureText(interval.upper) + "]"});
  }
  return table;
}

ManuscriptTable FrequenciesTable(const ResultDocument& document, const ResultTest& test,
                                 const ResultTable& frequencies) {
  ManuscriptTable table{TableCaption(document, test, frequencies), {""}, {}};
  for (std::size_t i = 0; i < ColumnCount(frequencies); ++i) {
    table.columns.push_back(ColumnTitle(document, test, frequencies, i));
  }
  for (std::size_t i = 0; i < frequencies.rows.size(); ++i) {
    table.rows.push_back({RowTitle(document, test, frequencies, i)});
    for (const std::string_view cell : frequencies.rows[i]) {
      table.rows.back().push_back(FigureText(cell));
    }
  }
  return table;
}

ManuscriptTable PairsTable(const ResultDocument& document, const ResultTest& test) {
  const ResultComparison& comparison = test.pairwise;
  ManuscriptTable table{PairwiseCaption(comparison), {"Samples"}, {}};
  const auto& names = comparison.content.columnNames;
  constexpr std::size_t kPositions = 2;
  for (std::size_t i = kPositions; i < names.size(); ++i) {
    table.columns.push_back(PairLabel(comparison, names[i]));
  }
  for (const SamplePair& pair : ListedPairs(comparison)) {
    table.rows.push_back({SampleTitle(document, test, comparison.order[pair.first]) + " \u2013 " +
                          SampleTitle(document, test, comparison.order[pair.second])});
    for (std::size_t i = kPositions; i < names.size(); ++i) {
      const std::string cell = PairCell(comparison, pair, i);
      table.rows.back().push_back(IsSignificanceName(names[i]) ? SignificanceCell(cell)
                                                               : FigureText(cell));
    }
  }
  return table;
}

}  // namespace

ManuscriptTable TestsTable(const ResultDocument& document) {
  constexpr std::size_t kFields = 1, kDecision = 6;
  const std::string level = PercentText(document.confidenceLevel);
  ManuscriptTable table{
      "Tests",
      {"Test", "Fields", "N", "Statistic", "p", "Effect size [" + level + " CI]", "Decision"},
      {},
      {0, kFields, kDecision}};
  const bool isAdjusted = document.adjustment != Adjustment::None;
  for (const ResultTest& test : document.tests) {
    const Headline headline = FindHeadline(document, test);
    const auto significance = DecidingSignificance(test);
    const auto effect = FindEffectSize(document, test);
    std::string statistic = StatisticText(headline);
    if (statistic.empty() && !test.intervals.empty()) statistic = IntervalText(test.intervals[0]);
    table.rows.push_back({ShortTitle(test), TestedFields(document, test),
                          headline.count ? Text(*headline.count) : "", statistic,
                          significance ? SignificanceCell(significance->figure) : "",
                          effect ? EffectText(test, *effect) : "",
                          test.decision.empty() ? "estimate" : test.decision});
    if (isAdjusted) table.rows.back().push_back(AdjustedCell(test));
  }
  if (isAdjusted) {
    table.columns.push_back("p after " + std::string(AdjustmentTitle(document.adjustment)));
  }
  return table;
}

std::vector<ManuscriptTable> TablesOf(const ResultDocument& document, const ResultTest& test) {
  std::vector<ManuscriptTable> tables = {GroupsTable(document, test), BoxesTable(document, test),
                                         SamplesTable(document, test),
                                         IntervalsTable(document, test)};
  for (const ResultTable& table : test.tables) {
    tables.push_back(FrequenciesTable(document, test, table));
  }
  tables.push_back(PairsTable(document, test));
  std::erase_if(tables, [](const ManuscriptTable& table) { return table.rows.empty(); });
  return tables;
}

}  // namespace npar_host
